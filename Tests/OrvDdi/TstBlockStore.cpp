#include "OrvDdi/Files/OrvBlockStore.h"
#include "OrvDdi/Files/OrvDataBlockManager.h"
#include "OrvDdi/Files/OrvImageBlocks.h"
#include "OrvDdi/Image/OrvImageSet.h"

#include <QtCore/QDir>
#include <QtCore/QDirIterator>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <random>
#include <thread>

#include <sys/resource.h>

namespace {

constexpr OrvPixelFormat HalfColor{GL_HALF_FLOAT, OrvPixelFormat::Rgba, OrvPixelFormat::Linear};

QByteArray noise(int Size, unsigned Seed)
{
    std::minstd_rand Random(Seed);
    QByteArray Bytes(Size, Qt::Uninitialized);
    std::generate(Bytes.begin(), Bytes.end(), [&] { return char(Random() >> 8); });
    return Bytes;
}

/// The stored bytes of a region.
QByteArray bytes(OrvImageSet& Images, const QRect& Region)
{
    QByteArray Bytes(Region.width() * Region.height() * Images.format().bytesPerPixel(), '\0');
    Images.buffer().read(Region, Images.format(), Bytes.data());
    return Bytes;
}

/// Values that every depth can hold, one seed another picture.
void paint(OrvImageSet& Images, const QRect& Region, unsigned Seed)
{
    const OrvPixelFormat Plain{GL_FLOAT, Images.format().Kind, Images.format().Curve};
    std::minstd_rand Random(Seed);
    std::vector<float> Values(size_t(Region.width() * Region.height() * Plain.componentCount()));
    std::generate(Values.begin(), Values.end(), [&] { return float(Random() % 256) / 255.0f; });
    Images.buffer().write(Region, Plain, Values.data());
    Images.pixelsWritten(Region);
}

} // namespace

/// Data blocks on the disk and the image sets that are kept in them.
class TstBlockStore : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_pFolder = std::make_unique<QTemporaryDir>();
        m_pStore = std::make_unique<OrvBlockStore>(m_pFolder->filePath("blocks"));
        m_Error.clear();
    }

    void contentsComeBackUnderTheirKey()
    {
        for (const QByteArray& Raw :
            {QByteArray(""), QByteArray("a"), QByteArray(1 << 20, 'x'), noise(1 << 20, 1)}) {
            const QByteArray Key = m_pStore->put(Raw, m_Error);
            QVERIFY2(OrvBlockStore::isKey(Key), qPrintable(m_Error));
            QVERIFY(m_pStore->contains(Key));
            QCOMPARE(m_pStore->put(Raw, m_Error), Key);
            const QByteArray Back = OrvBlockStore(m_pStore->directory()).get(Key, m_Error);
            QVERIFY(!Back.isNull());
            QCOMPARE(Back, Raw);
        }
        QCOMPARE(fileCount(), 4);
        QVERIFY(
            QFileInfo(m_pStore->blockPath(m_pStore->put(QByteArray(1 << 20, 'x'), m_Error))).size() < 4096);
        QVERIFY2(m_pStore->sync(m_Error), qPrintable(m_Error));
    }

    void keysAreHexadecimalDigests()
    {
        QVERIFY(OrvBlockStore::isKey(QByteArray(64, 'a')));
        for (const QByteArray& Wrong : {QByteArray(), QByteArray(63, 'a'), QByteArray(64, 'A'),
                 QByteArray(64, 'g'), "../" + QByteArray(61, 'a')}) {
            QVERIFY(!OrvBlockStore::isKey(Wrong));
            QVERIFY(!m_pStore->contains(Wrong));
            QVERIFY(m_pStore->get(Wrong, m_Error).isNull());
        }
    }

    void damagedBlocksAreNamed_data()
    {
        QTest::addColumn<int>(
            "Length"); // how much is left; -1: all, with one byte changed; -2: nothing, no file
        QTest::addColumn<int>("Position");
        QTest::newRow("missing") << -2 << 0;
        QTest::newRow("empty") << 0 << 0;
        QTest::newRow("half a header") << 10 << 0;
        QTest::newRow("cut short") << 3000 << 0;
        QTest::newRow("other mark") << -1 << 0;
        QTest::newRow("newer version") << -1 << 4;
        QTest::newRow("giant size") << -1 << 15;
        QTest::newRow("other contents") << -1 << 4000;
    }
    void damagedBlocksAreNamed()
    {
        QFETCH(int, Length);
        QFETCH(int, Position);
        const QByteArray Raw = noise(8000, 2), Key = m_pStore->put(Raw, m_Error);
        const QString Path = m_pStore->blockPath(Key);
        QFile File(Path);
        if (Length == -2) {
            QVERIFY(File.remove());
        } else if (Length >= 0) {
            QVERIFY(File.resize(Length));
        } else {
            QVERIFY(File.open(QIODevice::ReadWrite));
            QByteArray Bytes = File.readAll();
            Bytes[Position] = char(Bytes[Position] ^ 0x55);
            File.seek(0);
            File.write(Bytes);
            File.close();
        }
        QVERIFY(m_pStore->get(Key, m_Error).isNull());
        QVERIFY2(m_Error.contains(Path), qPrintable(m_Error));
        // What can be seen from outside is written again; a flipped byte inside only a reader finds.
        QCOMPARE(m_pStore->contains(Key), Position == 4000);
        if (Position != 4000) {
            QCOMPARE(m_pStore->put(Raw, m_Error), Key);
            QCOMPARE(m_pStore->get(Key, m_Error), Raw);
        }
    }

    void onlyUnneededBlocksGo()
    {
        const QByteArray Kept = m_pStore->put("kept", m_Error), Old = m_pStore->put("old", m_Error);
        QFile Partial(m_pStore->blockPath(Old) + ".7-1.part"), Foreign(m_pStore->directory() + "/README");
        QVERIFY(Partial.open(QIODevice::WriteOnly) && Foreign.open(QIODevice::WriteOnly));
        QCOMPARE(m_pStore->removeUnreferenced({Kept}), 2);
        QVERIFY(m_pStore->contains(Kept) && !m_pStore->contains(Old));
        QVERIFY(Foreign.exists() && !Partial.exists());
    }

    void threadsPutTheSameBlock()
    {
        std::vector<std::thread> Threads;
        std::atomic<int> Good{0};
        for (int Number = 0; Number < 4; ++Number) {
            Threads.emplace_back([&] {
                for (unsigned Seed = 1; Seed <= 50; ++Seed) {
                    QString Error;
                    const QByteArray Raw = noise(5000, Seed);
                    Good += m_pStore->get(m_pStore->put(Raw, Error), Error) == Raw;
                }
            });
        }
        for (std::thread& Thread : Threads)
            Thread.join();
        QCOMPARE(Good.load(), 200);
        QCOMPARE(fileCount(), 50);
    }

    void unwritableFolderIsNamed()
    {
        QFile InTheWay(m_pFolder->filePath("file"));
        QVERIFY(InTheWay.open(QIODevice::WriteOnly));
        OrvBlockStore Store(InTheWay.fileName());
        QVERIFY(Store.put("x", m_Error).isEmpty());
        QVERIFY2(m_Error.contains(InTheWay.fileName()), qPrintable(m_Error));
        QVERIFY2(m_Error.contains(QString::fromLocal8Bit(strerror(ENOTDIR))), qPrintable(m_Error));
    }

    void aWriteThatEndsHalfwaySaysWhy()
    {
        rlimit Usual;
        getrlimit(RLIMIT_FSIZE, &Usual);
        const auto pUsualHandler = std::signal(SIGXFSZ, SIG_IGN);
        const rlimit Small{4096, Usual.rlim_max};
        setrlimit(RLIMIT_FSIZE, &Small);
        const QByteArray Key = m_pStore->put(noise(20000, 1), m_Error);
        setrlimit(RLIMIT_FSIZE, &Usual);
        std::signal(SIGXFSZ, pUsualHandler);
        QVERIFY(Key.isEmpty());
        QVERIFY2(m_Error.contains(QString::fromLocal8Bit(strerror(EFBIG))), qPrintable(m_Error));
        QVERIFY(!QDirIterator(m_pFolder->path(), QDir::Files, QDirIterator::Subdirectories).hasNext());
    }

    void imageSetsComeBack_data()
    {
        QTest::addColumn<uint>("Depth");
        QTest::addColumn<bool>("Scalar");
        for (const GLenum Depth : {GL_UNSIGNED_BYTE, GL_HALF_FLOAT, GL_FLOAT}) {
            for (const bool Scalar : {false, true})
                QTest::addRow("%x %s", Depth, Scalar ? "scalar" : "colour") << uint(Depth) << Scalar;
        }
    }
    void imageSetsComeBack()
    {
        QFETCH(uint, Depth);
        QFETCH(bool, Scalar);
        const OrvPixelFormat Format{
            Depth, Scalar ? OrvPixelFormat::Scalar : OrvPixelFormat::Rgba, OrvPixelFormat::Linear};
        // Edges that are no multiple of a square's, and two tiles.
        const OrvUdimLayout Layout({700, 520}, {1001, 1002});
        OrvImageSet Images(Layout, Format, OrvColor::white());
        paint(Images, QRect(600, 100, 300, 300), 3);
        QJsonObject Description;
        QVERIFY2(OrvImageBlocks::store(Images, *m_pStore, Description, {}, m_Error), qPrintable(m_Error));
        // The painted part lies in two squares, the rest is one colour.
        QCOMPARE(OrvImageBlocks::blockKeys(Description).size(), 1 + 0 + 0);
        QCOMPARE(fileCount(), OrvImageBlocks::blockKeys(Description).size());

        OrvImageSet Back(Layout, Format, OrvColor::white());
        QVERIFY2(OrvImageBlocks::load(Description, *m_pStore, Back, m_Error), qPrintable(m_Error));
        QCOMPARE(bytes(Back, Layout.extent()), bytes(Images, Layout.extent()));
        QJsonObject Again;
        QVERIFY(OrvImageBlocks::store(Back, *m_pStore, Again, {}, m_Error));
        QCOMPARE(Again, Description);
    }

    void onlyChangesAreStored()
    {
        const OrvUdimLayout Layout({2048, 1024});
        OrvImageSet Images(Layout, HalfColor, OrvColor::clear());
        QJsonObject Description;
        QVERIFY(OrvImageBlocks::store(Images, *m_pStore, Description, {}, m_Error));
        QVERIFY(OrvImageBlocks::blockKeys(Description).isEmpty());
        paint(Images, Layout.extent(), 4);
        int Total = 0;
        const OrvProgress Counting = [&](int, int All) { return (Total = All) > 0; };
        QVERIFY(OrvImageBlocks::store(Images, *m_pStore, Description, Counting, m_Error));
        QCOMPARE(Total, 8);
        paint(Images, QRect(10, 10, 4, 4), 5);
        const QJsonObject Before = Description;
        QVERIFY(OrvImageBlocks::store(Images, *m_pStore, Description, Counting, m_Error));
        QCOMPARE(Total, 1);
        QCOMPARE(
            OrvImageBlocks::blockKeys(Description).subtract(OrvImageBlocks::blockKeys(Before)).size(), 1);
        // Another store lacks everything; one that lost a block gets it again.
        OrvBlockStore Other(m_pFolder->filePath("other"));
        QVERIFY(OrvImageBlocks::store(Images, Other, Description, Counting, m_Error));
        QCOMPARE(Total, 8);
        QVERIFY(QFile::remove(Other.blockPath(*OrvImageBlocks::blockKeys(Description).begin())));
        QVERIFY(OrvImageBlocks::store(Images, Other, Description, Counting, m_Error));
        QCOMPARE(Total, 1);
    }

    void failureKeepsTheImages()
    {
        const OrvUdimLayout Layout({1024, 1024});
        OrvImageSet Images(Layout, HalfColor, OrvColor::clear()),
            Target(Layout, HalfColor, OrvColor::clear());
        paint(Images, Layout.extent(), 6);
        paint(Target, Layout.extent(), 7);
        const QByteArray Old = bytes(Target, Layout.extent());
        const OrvProgress Cancel = [](int Done, int) { return Done < 2; };
        QJsonObject Description;
        QVERIFY(!OrvImageBlocks::store(Images, *m_pStore, Description, Cancel, m_Error));
        QVERIFY(m_Error.contains("cancelled"));
        // What was stored until then stays stored: the next attempt goes on from there.
        QVERIFY(Description.isEmpty() && m_pStore->contains(Images.blockKey(0)));
        QVERIFY(OrvImageBlocks::store(Images, *m_pStore, Description, {}, m_Error));

        QVERIFY(!OrvImageBlocks::load(Description, *m_pStore, Target, m_Error, Cancel));
        const QByteArray Lost = *OrvImageBlocks::blockKeys(Description).begin();
        QVERIFY(QFile::remove(m_pStore->blockPath(Lost)));
        QVERIFY(!OrvImageBlocks::load(Description, *m_pStore, Target, m_Error));
        QVERIFY2(m_Error.contains(m_pStore->blockPath(Lost)), qPrintable(m_Error));
        for (const char* pJson :
            {"{}", R"({"edge":512,"squares":[]})", R"({"edge":256,"squares":["","","",""]})",
                R"({"edge":512,"squares":["=zz","=00","",""]})", R"({"edge":512,"squares":[1,2,null,{}]})"}) {
            const QJsonObject Damaged = QJsonDocument::fromJson(pJson).object();
            QVERIFY(!OrvImageBlocks::load(Damaged, *m_pStore, Target, m_Error));
        }
        QCOMPARE(bytes(Target, Layout.extent()), Old);
    }

    void cacheLiesBelowTheFirstRoot()
    {
        OrvDataBlockManager& Manager = OrvDataBlockManager::instance();
        QFile InTheWay(m_pFolder->filePath("file"));
        QVERIFY(InTheWay.open(QIODevice::WriteOnly));
        Manager.setCacheRoots(
            {InTheWay.fileName(), m_pFolder->filePath("cache/a"), m_pFolder->filePath("b")});
        QCOMPARE(
            Manager.cacheRoots(), QStringList({m_pFolder->filePath("cache/a"), m_pFolder->filePath("b")}));
        Manager.setSubCache("../My: Project?");
        QVERIFY(QFileInfo(Manager.subCachePath()).isDir());
        QCOMPARE(QFileInfo(Manager.subCachePath()).absolutePath(), m_pFolder->filePath("cache/a"));
        Manager.setSubCache(QString());
        QVERIFY(Manager.subCachePath().isEmpty());
        Manager.setCacheRoots({InTheWay.fileName()});
        QVERIFY(Manager.cacheRoots().isEmpty());
        Manager.setCacheRoots({});
    }

private:
    int fileCount() const
    {
        int Count = 0;
        for (QDirIterator Files(m_pStore->directory(), QDir::Files, QDirIterator::Subdirectories);
             Files.hasNext(); Files.next())
            ++Count;
        return Count;
    }

    std::unique_ptr<QTemporaryDir> m_pFolder;
    std::unique_ptr<OrvBlockStore> m_pStore;
    QString m_Error;
};

QTEST_GUILESS_MAIN(TstBlockStore)
#include "TstBlockStore.moc"

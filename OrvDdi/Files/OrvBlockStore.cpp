#include "OrvDdi/Files/OrvBlockStore.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QDirIterator>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QtEndian>

#include <openssl/evp.h>
#include <zstd.h>

#include <atomic>
#include <filesystem>

#include <fcntl.h>
#include <unistd.h>

namespace {

/// What a block file begins with; numbers are little-endian. The compressed contents follow.
struct BlockHeader {
    char Mark[4];
    quint8 Version;
    quint8 Codec;
    quint8 Unused[2];
    quint64_le RawSize;
    quint64_le StoredSize;
};
static_assert(sizeof(BlockHeader) == 24, "the header is part of the file format");

constexpr char BlockMark[4] = {'O', 'r', 'v', 'B'};
constexpr quint8 BlockVersion = 1;
constexpr quint8 CodecZstd = 1;
constexpr int CompressionLevel = 1;
constexpr quint64 MaximumRawSize = quint64(1) << 30;
constexpr int KeyLength = 64;
const QLatin1String PartialSuffix(".part");
/// From so many files on, one request for the whole file system is cheaper than one per file.
constexpr int FilesWorthOneSync = 16;

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvBlockStore", pText);
}

/// Empty when the header belongs to a complete block file of the given length; else what is wrong.
QString headerTrouble(const BlockHeader& Header, qint64 BytesRead, qint64 FileSize)
{
    if (BytesRead != qint64(sizeof(BlockHeader)))
        return tr("it is cut short");
    if (qstrncmp(Header.Mark, BlockMark, sizeof(BlockMark)) != 0)
        return tr("it is no data block");
    if (Header.Version != BlockVersion || Header.Codec != CodecZstd)
        return tr("it was written by another version (format %1)").arg(Header.Version);
    if (Header.RawSize > MaximumRawSize)
        return tr("its header is damaged");
    if (quint64(FileSize) != Header.StoredSize + sizeof(BlockHeader))
        return tr("it is cut short");
    return {};
}

bool syncDescriptor(const QString& Path, int (*pSync)(int))
{
    const int Descriptor = ::open(QFile::encodeName(Path).constData(), O_RDONLY | O_CLOEXEC);
    if (Descriptor < 0)
        return false;
    const bool Done = pSync(Descriptor) == 0;
    const int Reason = errno;
    ::close(Descriptor);
    errno = Reason; // the caller tells it
    return Done;
}

/// A disk that fills up takes a part of what it is given without complaint; only the next write says why.
bool writeAll(QFile& File, const QByteArray& Contents)
{
    for (qint64 Written = 0; Written < Contents.size();) {
        const qint64 Taken = File.write(Contents.constData() + Written, Contents.size() - Written);
        if (Taken <= 0)
            return false;
        Written += Taken;
    }
    return true;
}

} // namespace

OrvBlockStore::OrvBlockStore(const QString& Directory)
    : m_Directory(QDir::cleanPath(Directory))
{
}

QByteArray OrvBlockStore::keyOf(const QByteArray& Raw)
{
    // Qt's own takes six times as long, and hashing would be half of opening a project.
    QByteArray Digest(KeyLength / 2, Qt::Uninitialized);
    EVP_Digest(Raw.constData(), size_t(Raw.size()), reinterpret_cast<unsigned char*>(Digest.data()), nullptr,
        EVP_sha256(), nullptr);
    return Digest.toHex();
}

bool OrvBlockStore::isKey(const QByteArray& Key)
{
    return Key.size() == KeyLength && std::all_of(Key.begin(), Key.end(), [](char One) {
        return (One >= '0' && One <= '9') || (One >= 'a' && One <= 'f');
    });
}

QSet<QByteArray> OrvBlockStore::keysIn(const QByteArray& Text)
{
    QSet<QByteArray> Keys;
    int Quote = Text.indexOf('"');
    while (Quote >= 0) {
        const int Next = Text.indexOf('"', Quote + 1);
        if (Next - Quote == KeyLength + 1) {
            const QByteArray Quoted = Text.mid(Quote + 1, KeyLength);
            if (isKey(Quoted))
                Keys.insert(Quoted);
        }
        Quote = Next;
    }
    return Keys;
}

bool OrvBlockStore::syncFolder(const QString& Path)
{
    return syncDescriptor(Path, &::fsync);
}

QString OrvBlockStore::blockPath(const QByteArray& Key) const
{
    return m_Directory + QLatin1Char('/') + QLatin1String(Key.left(2)) + QLatin1Char('/')
        + QLatin1String(Key.mid(2));
}

bool OrvBlockStore::contains(const QByteArray& Key) const
{
    if (!isKey(Key))
        return false;
    QFile File(blockPath(Key));
    if (!File.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return false;
    BlockHeader Header;
    const qint64 Read = File.read(reinterpret_cast<char*>(&Header), sizeof(Header));
    return headerTrouble(Header, Read, File.size()).isEmpty();
}

QByteArray OrvBlockStore::put(const QByteArray& Raw, QString& Error)
{
    if (quint64(Raw.size()) > MaximumRawSize) {
        Error = tr("A data block cannot hold more than 1 GiB");
        return {};
    }
    const QByteArray Key = keyOf(Raw);
    if (contains(Key))
        return Key;
    const QString Path = blockPath(Key);
    if (!writeBlock(Raw, Path, Error))
        return {};
    const QMutexLocker Locker(&m_Mutex);
    m_Unsynced.append(Path);
    return Key;
}

bool OrvBlockStore::makeFolder(const QString& Path, QString& Error)
{
    std::error_code Trouble;
    std::filesystem::create_directories(QFile::encodeName(Path).constData(), Trouble);
    if (Trouble)
        Error = tr("The folder '%1' cannot be made: %2")
                    .arg(Path, QString::fromLocal8Bit(Trouble.message().c_str()));
    return !Trouble;
}

bool OrvBlockStore::writeBlock(const QByteArray& Raw, const QString& Path, QString& Error)
{
    const QString Folder = QFileInfo(Path).path();
    if (!makeFolder(Folder, Error))
        return false;
    QByteArray Contents(int(sizeof(BlockHeader) + ZSTD_compressBound(size_t(Raw.size()))), Qt::Uninitialized);
    const size_t Stored = ZSTD_compress(Contents.data() + sizeof(BlockHeader),
        size_t(Contents.size()) - sizeof(BlockHeader), Raw.constData(), size_t(Raw.size()), CompressionLevel);
    if (ZSTD_isError(Stored)) {
        Error = tr("The data block '%1' cannot be compressed: %2")
                    .arg(Path, QLatin1String(ZSTD_getErrorName(Stored)));
        return false;
    }
    BlockHeader Header{};
    std::copy_n(BlockMark, sizeof(BlockMark), Header.Mark);
    Header.Version = BlockVersion;
    Header.Codec = CodecZstd;
    Header.RawSize = quint64(Raw.size());
    Header.StoredSize = quint64(Stored);
    std::copy_n(reinterpret_cast<const char*>(&Header), sizeof(Header), Contents.data());
    Contents.truncate(int(sizeof(Header) + Stored));

    static std::atomic<unsigned> Counter{0};
    QFile Partial(QStringLiteral("%1.%2-%3%4")
                      .arg(Path)
                      .arg(QCoreApplication::applicationPid())
                      .arg(++Counter)
                      .arg(PartialSuffix));
    std::error_code Trouble;
    const bool Written
        = Partial.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && writeAll(Partial, Contents);
    const QString Reason = Partial.errorString();
    Partial.close();
    if (Written)
        std::filesystem::rename(
            QFile::encodeName(Partial.fileName()).constData(), QFile::encodeName(Path).constData(), Trouble);
    if (!Written || Trouble) {
        Error = tr("The data block '%1' cannot be written: %2")
                    .arg(Path, Written ? QString::fromLocal8Bit(Trouble.message().c_str()) : Reason);
        Partial.remove();
        return false;
    }
    return true;
}

QByteArray OrvBlockStore::get(const QByteArray& Key, QString& Error) const
{
    if (!isKey(Key)) {
        Error = tr("'%1' names no data block").arg(QString::fromLatin1(Key.left(KeyLength)));
        return {};
    }
    const auto damaged = [&](const QString& Reason) {
        Error = tr("The data block '%1' cannot be read: %2").arg(blockPath(Key), Reason);
        return QByteArray();
    };
    QFile File(blockPath(Key));
    if (!File.exists())
        return damaged(tr("it is missing"));
    if (!File.open(QIODevice::ReadOnly))
        return damaged(File.errorString());
    BlockHeader Header;
    const qint64 Read = File.read(reinterpret_cast<char*>(&Header), sizeof(Header));
    const QString Trouble = headerTrouble(Header, Read, File.size());
    if (!Trouble.isEmpty())
        return damaged(Trouble);
    const QByteArray Stored = File.readAll();
    QByteArray Raw(int(Header.RawSize), Qt::Uninitialized);
    const size_t Size
        = ZSTD_decompress(Raw.data(), size_t(Raw.size()), Stored.constData(), size_t(Stored.size()));
    if (ZSTD_isError(Size) || Size != size_t(Raw.size()) || keyOf(Raw) != Key)
        return damaged(tr("its contents are damaged"));
    return Raw;
}

bool OrvBlockStore::sync(QString& Error)
{
    QStringList Paths;
    {
        const QMutexLocker Locker(&m_Mutex);
        Paths.swap(m_Unsynced);
    }
    if (Paths.isEmpty())
        return true;
    bool Done = true;
    if (Paths.size() >= FilesWorthOneSync) {
        Done = syncDescriptor(m_Directory, &::syncfs);
    } else {
        QSet<QString> Folders{m_Directory};
        for (const QString& Path : qAsConst(Paths)) {
            Done = syncDescriptor(Path, &::fsync) && Done;
            Folders.insert(QFileInfo(Path).path());
        }
        for (const QString& Folder : qAsConst(Folders))
            Done = syncDescriptor(Folder, &::fsync) && Done;
    }
    if (!Done) {
        Error = tr("The data blocks in '%1' cannot be brought to the disk: %2")
                    .arg(m_Directory, QString::fromLocal8Bit(strerror(errno)));
        const QMutexLocker Locker(&m_Mutex);
        m_Unsynced += Paths;
    }
    return Done;
}

int OrvBlockStore::removeUnreferenced(const QSet<QByteArray>& Keys)
{
    int Removed = 0;
    QDirIterator Files(m_Directory, QDir::Files, QDirIterator::Subdirectories);
    while (Files.hasNext()) {
        const QString Path = Files.next();
        const QByteArray Key = (Files.fileInfo().dir().dirName() + Files.fileName()).toLatin1();
        // Files that are neither blocks nor leftovers are somebody else's.
        const bool Superfluous = isKey(Key) ? !Keys.contains(Key) : Path.endsWith(PartialSuffix);
        if (Superfluous && QFile::remove(Path))
            ++Removed;
    }
    return Removed;
}

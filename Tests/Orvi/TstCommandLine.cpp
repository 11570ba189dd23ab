#include "Tests/Orvi/OrvTestDocument.h"

#include "Orvi/OrvBatchExport.h"
#include "Orvi/OrvCommandLine.h"

#include <QtTest/QtTest>

/// What users type, and what becomes of it.
class TstCommandLine : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void arguments_data()
    {
        QTest::addColumn<QStringList>("Arguments");
        QTest::addColumn<int>("Mode");
        QTest::addColumn<QString>("Project");
        QTest::addColumn<QStringList>("Images");
        const auto row = [](const char* pName, const QStringList& Arguments, int Mode,
                             const QString& Project = {}, const QStringList& Images = {}) {
            QTest::newRow(pName) << Arguments << Mode << Project << Images;
        };
        using Line = OrvCommandLine;
        row("nothing", {}, Line::Interactive);
        row("project", {"a/b.orvi"}, Line::Interactive, "a/b.orvi");
        row("project as the shell completes it", {"b.ORVI/"}, Line::Interactive, "b.ORVI/");
        row("images", {"x.png", "y.1001.exr"}, Line::Interactive, {}, {"x.png", "y.1001.exr"});
        row("file that looks like an option", {"--", "--help"}, Line::Interactive, {}, {"--help"});
        row("two projects", {"a.orvi", "b.orvi"}, Line::Invalid, "a.orvi");
        row("project and image", {"a.orvi", "x.png"}, Line::Invalid, "a.orvi", {"x.png"});
        row("export", {"--export", "Color", "c.png", "p.orvi"}, Line::Export, "p.orvi");
        row("export, option last", {"Color", "c.png", "p.orvi", "--export"}, Line::Export, "p.orvi");
        row("export of too little", {"--export", "Color", "c.png"}, Line::Invalid);
        row("export of no project", {"--export", "Color", "c.png", "p.png"}, Line::Invalid, "p.png");
        row("sample", {"--sample"}, Line::Sample);
        row("sample with file", {"--sample", "x.png"}, Line::Invalid);
        row("tour", {"--tour", "pictures"}, Line::Tour);
        row("tour of images", {"--tour", "pictures", "a.png", "b.png"}, Line::Tour, {}, {"a.png", "b.png"});
        row("tour of two projects", {"--tour", "pictures", "a.orvi", "b.orvi"}, Line::Invalid, "a.orvi");
        row("tour to nowhere", {"--tour"}, Line::Invalid);
        row("help beats all", {"--tour", "--nonsense", "-h"}, Line::Help);
        row("version", {"--version"}, Line::Version);
        row("unknown option", {"--exprot"}, Line::Invalid);
        row("options that exclude each other", {"--sample", "--tour", "d"}, Line::Invalid);
    }
    void arguments()
    {
        QFETCH(QStringList, Arguments);
        QFETCH(int, Mode);
        QFETCH(QString, Project);
        QFETCH(QStringList, Images);
        const OrvCommandLine Line = OrvCommandLine::parse(Arguments);
        QCOMPARE(int(Line.RequestedMode), Mode);
        QCOMPARE(Line.Project, Project);
        QCOMPARE(Line.Images, Images);
        QCOMPARE(Line.Error.isEmpty(), Mode != OrvCommandLine::Invalid);
    }

    void exportsWithoutAWindow()
    {
        const QString Project = saveProject();
        const QString File = m_Document.filePath(QStringLiteral("out.png"));
        QCOMPARE(runExport(QStringLiteral("Color"), File, Project), int(OrvCommandLine::Success));
        const QImage Written(File);
        QCOMPARE(Written.size(), QSize(32, 16));
        QCOMPARE(Written.pixelColor(5, 5), QColor(Qt::red));
        // By the object's name as well.
        QCOMPARE(
            runExport(QStringLiteral("Object/Color"), m_Document.filePath(QStringLiteral("b.tif")), Project),
            int(OrvCommandLine::Success));
        QVERIFY(!OrvProjectManager::instance().currentProject());
    }

    void channelsOfOneNameAreToldApartByTheirObjects()
    {
        m_Document.newPaintLayer(m_Document.newChannel(QSize(32, 16)), OrvColor(1.0f, 0.0f, 0.0f));
        OrvProject* pProject = OrvProjectManager::instance().currentProject();
        const auto addBlue = [&](OrvGeoEntity* pEntity, const QString& Name) {
            OrvShaderInput* pBlue = OrvShaderInputUtils::create(
                pEntity->shaderNetwork(), Name, QSize(32, 16), GL_UNSIGNED_BYTE);
            m_Document.newPaintLayer(pBlue, OrvColor(0.0f, 0.0f, 1.0f));
        };
        OrvGeoEntity* pBody = pProject->addGeoEntity(QStringLiteral("Body"));
        addBlue(pBody, QStringLiteral("Color"));
        addBlue(pBody, QStringLiteral("Bump"));
        addBlue(pBody, QStringLiteral("Body/Color")); // in the way of nobody
        const QString Project = m_Document.filePath(QStringLiteral("two.orvi"));
        const QString File = m_Document.filePath(QStringLiteral("two.png"));
        QString Error;
        QVERIFY(OrvProjectManager::instance().saveProjectAs(Project, Error));

        QCOMPARE(runExport(QStringLiteral("Color"), File, Project), int(OrvCommandLine::Failure));
        QVERIFY(!QFile::exists(File));
        for (const auto& [Channel, Color] :
            {std::make_pair("Object/Color", Qt::red), std::make_pair("Body/Color", Qt::blue),
                std::make_pair("Bump", Qt::blue), std::make_pair("Body/Body/Color", Qt::blue)}) {
            QCOMPARE(runExport(QLatin1String(Channel), File, Project), int(OrvCommandLine::Success));
            QCOMPARE(QImage(File).pixelColor(5, 5), QColor(Color));
        }
    }

    void exportFailuresAreExitCodesAndWriteNothing()
    {
        const QString Project = saveProject();
        const auto exported = [this](const char* pChannel, const char* pFile, const QString& From) {
            return runExport(QLatin1String(pChannel), m_Document.filePath(QLatin1String(pFile)), From);
        };
        const int Failure = OrvCommandLine::Failure;
        QCOMPARE(exported("Colour", "never.png", Project), Failure);
        QCOMPARE(exported("Color", "never.png", m_Document.filePath(QStringLiteral("no.orvi"))), Failure);
        QCOMPARE(exported("Color", "never.bmpx", Project), Failure);
        QCOMPARE(exported("Color", "no/dir/never.png", Project), Failure);
        QVERIFY(!QFile::exists(m_Document.filePath(QStringLiteral("never.png"))));
    }

private:
    QString saveProject() const
    {
        m_Document.newPaintLayer(m_Document.newChannel(QSize(32, 16)), OrvColor(1.0f, 0.0f, 0.0f));
        const QString Path = m_Document.filePath(QStringLiteral("p.orvi"));
        QString Error;
        if (!OrvProjectManager::instance().saveProjectAs(Path, Error))
            qWarning("%s", qPrintable(Error));
        OrvProjectManager::instance().closeProject();
        return Path;
    }
    static int runExport(const QString& Channel, const QString& File, const QString& Project)
    {
        return OrvBatchExport::run(OrvCommandLine::parse({"--export", Channel, File, Project}));
    }

    OrvTestDocument m_Document;
};

QTEST_GUILESS_MAIN(TstCommandLine)
#include "TstCommandLine.moc"

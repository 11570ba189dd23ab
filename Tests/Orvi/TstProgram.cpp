#include "Tests/Orvi/OrvTestAnswers.h"
#include "Tests/Orvi/OrvTestDocument.h"

#include "Orvi/OrvCanvas.h"
#include "Orvi/OrvCommandLine.h"
#include "Orvi/OrvProgram.h"

#include "OrvCore/Object/OrvSettings.h"
#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvCoreModules/Window/OrvApplication.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvCoreModules/Window/OrvPalette.h"
#include "OrvCoreModules/Window/OrvPaletteManager.h"

#include <QtCore/QMimeData>
#include <QtCore/QUrl>
#include <QtGui/QDropEvent>
#include <QtTest/QtTest>
#include <QtWidgets/QMenuBar>

namespace {

/// Notes when a widget is painted for the first time.
class FirstPaint : public QObject {
public:
    explicit FirstPaint(QWidget* pWidget) { pWidget->installEventFilter(this); }
    bool happened() const { return m_Happened; }
    bool eventFilter(QObject*, QEvent* pEvent) override
    {
        m_Happened |= pEvent->type() == QEvent::Paint;
        return false;
    }

private:
    bool m_Happened = false;
};

} // namespace

/// The whole program, plug-ins included, from start to end.
class TstProgram : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { OrvApplication::appInstance().setPopupsAllowed(false); }

    void startsWithItsPalettes()
    {
        QElapsedTimer Age;
        Age.start();
        m_pProgram = std::make_unique<OrvProgram>();
        OrvPalette* pHistory = OrvPaletteManager::find(QStringLiteral("History"));
        OrvPalette* pLayers = OrvPaletteManager::find(QStringLiteral("Layers"));
        QVERIFY(pHistory);
        QWidget* pWatched = pLayers ? static_cast<QWidget*>(pLayers) : m_pProgram->canvas();
        const FirstPaint Painted(pWatched);
        m_pProgram->start(OrvCommandLine());
        QTRY_VERIFY(Painted.happened());
        qInfo("painted after %lld ms", static_cast<long long>(Age.elapsed()));
        QVERIFY(!OrvProjectManager::instance().currentProject());
        QVERIFY(OrvApplication::isInitialized());
    }

    void settingsThatAreNotKeptAreTold()
    {
        QCOMPARE(OrvSettings::trouble(), QString());
        const QByteArray File = qgetenv("ORV_SETTINGS");
        const QTemporaryDir Folder;
        qputenv("ORV_SETTINGS", Folder.path().toLocal8Bit());
        const QString Trouble = OrvSettings::trouble();
        qputenv("ORV_SETTINGS", File);
        QVERIFY2(Trouble.contains(Folder.path()), qPrintable(Trouble));
    }

    void menusStandInOrderAndHaveTheirCommands()
    {
        QStringList Titles;
        for (const QAction* pAction : OrvMainWindow::instance().menuBar()->actions())
            Titles.append(QString(pAction->text()).remove(QLatin1Char('&')));
        QVERIFY2(Titles.startsWith(QStringLiteral("File")), qPrintable(Titles.join(QLatin1Char(' '))));
        QCOMPARE(Titles.last(), QStringLiteral("Help"));
        for (const char* pKey : {"/Orvi/File/Save Project", "/Orvi/Edit/Undo", "/Orvi/View/Fit",
                 "/Orvi/Brush/Erase", "/Orvi/Select/Invert", "/Orvi/Channels/Images/All Channels",
                 "/Orvi/Layers/Images/Current Layer"})
            QVERIFY2(OrvActionTreeManager::instance().hasAction(QString::fromLatin1(pKey)), pKey);
        // Without a project there is nothing to save.
        QVERIFY(!OrvActionTreeManager::instance().findAction("/Orvi/File/Save Project")->isEnabled());
    }

    void imagesFromTheCommandLineBecomeAProject()
    {
        OrvCommandLine Line;
        for (const char* pName : {"paint.png", "bump.png"}) {
            QImage Image(40, 40, QImage::Format_RGB888);
            Image.fill(Qt::green);
            Line.Images.append(m_Document.filePath(QString::fromLatin1(pName)));
            QVERIFY(Image.save(Line.Images.last()));
        }
        Line.Images.append(m_Document.filePath(QStringLiteral("missing.png")));
        m_pProgram->start(Line);
        QTRY_COMPARE(channels().size(), 2);
        QCOMPARE(OrvShaderInputManager::instance().currentShaderInput()->name(), QStringLiteral("paint"));
        QTRY_VERIFY(m_pProgram->canvas()->isSettled());
        QVERIFY(OrvActionTreeManager::instance().findAction("/Orvi/File/Save Project")->isEnabled());
    }

    void menuEntriesThatAskSaySo()
    {
        const auto text = [](const char* pKey) {
            return OrvActionTreeManager::instance().findAction(QString::fromLatin1(pKey))->text();
        };
        for (const char* pKey : {"/Orvi/File/Open Project", "/Orvi/File/Export Channel",
                 "/Orvi/File/Export All Channels", "/Orvi/Layers/Images/Current Layer"})
            QVERIFY2(text(pKey).endsWith(QStringLiteral("…")), pKey);
        QVERIFY(!text("/Orvi/File/Save Project").endsWith(QStringLiteral("…")));
    }

    void whatIsNotThereLeavesTheOpenProjectAlone()
    {
        const QString Missing = m_Document.filePath(QStringLiteral("missing.orvi"));
        OrvCommandLine Line;
        Line.Project = Missing;
        const QStringList Told = answering(QStringLiteral("OK"), [&] {
            m_pProgram->start(Line);
            QTest::qWait(500);
        });
        QCOMPARE(Told.size(), 1);
        QVERIFY2(Told.first().contains(Missing) && Told.first().contains(QStringLiteral("does not exist")),
            qPrintable(Told.first()));
        QCOMPARE(channels().size(), 2);
    }

    void filesDroppedOnTheWindowOpen()
    {
        QString Error;
        const QString Project = m_Document.filePath(QStringLiteral("dropped.orvi"));
        QVERIFY(OrvProjectManager::instance().saveProjectAs(Project, Error));
        OrvProjectManager::instance().closeProject();
        drop({Project});
        QTRY_VERIFY(OrvProjectManager::instance().currentProject());
        QCOMPARE(OrvProjectManager::instance().currentProject()->path(), Project);
        drop({m_Document.filePath(QStringLiteral("paint.png"))});
        QTRY_COMPARE(channels().size(), 3);
        drop({QStringLiteral("/nowhere/notes.txt")});
        QApplication::processEvents();
        QCOMPARE(channels().size(), 3);
    }

    void endsWhileThePictureIsComputed()
    {
        OrvShaderInput* pChannel = m_Document.newChannel(QSize(2048, 2048));
        m_Document.newPaintLayer(pChannel, OrvColor::white());
        QApplication::processEvents();
        m_pProgram.reset();
        QVERIFY(!OrvProjectManager::instance().currentProject());
    }

private:
    static QList<OrvShaderInput*> channels()
    {
        const OrvProject* pProject = OrvProjectManager::instance().currentProject();
        return pProject ? OrvShaderInputManager::instance().getShaderInputsFromNetwork(
                   pProject->currentGeoEntity()->shaderNetwork())
                        : QList<OrvShaderInput*>();
    }
    static void drop(const QStringList& Paths)
    {
        QMimeData Data;
        QList<QUrl> Urls;
        for (const QString& Path : Paths)
            Urls.append(QUrl::fromLocalFile(Path));
        Data.setUrls(Urls);
        QDragEnterEvent Enter(QPoint(5, 5), Qt::CopyAction, &Data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&OrvMainWindow::instance(), &Enter);
        QDropEvent Drop(QPointF(5, 5), Qt::CopyAction, &Data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&OrvMainWindow::instance(), &Drop);
    }

    OrvTestDocument m_Document;
    std::unique_ptr<OrvProgram> m_pProgram;
};

QTEST_MAIN(TstProgram)
#include "TstProgram.moc"

#include "Tests/Orvi/OrvTestAnswers.h"
#include "Tests/Orvi/OrvTestDocument.h"

#include "Orvi/OrvAutosave.h"
#include "Orvi/OrvCanvas.h"
#include "Orvi/OrvCanvasTools.h"
#include "Orvi/OrvEditCommands.h"
#include "Orvi/OrvHistoryModel.h"
#include "Orvi/OrvProjectCommands.h"

#include "OrvCore/Project/OrvProjectFile.h"
#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvCoreModules/Window/OrvApplication.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvCoreModules/Window/OrvStatusManager.h"

#include "OrvDdi/Files/OrvDataBlockManager.h"

#include <QtCore/QDirIterator>
#include <QtTest/QtTest>
#include <QtWidgets/QAction>

/// Projects as a whole: title, recent ones, the copy that survives a crash, and the history.
class TstProjectCommands : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        OrvApplication::appInstance().setPopupsAllowed(false);
        OrvDataBlockManager::instance().setCacheRoots({m_Document.filePath(QStringLiteral("cache"))});
    }
    void cleanup() { OrvProjectManager::instance().closeProject(); }

    void titleAndRecentProjectsFollow()
    {
        OrvProjectCommands Commands;
        OrvMainWindow& Window = OrvMainWindow::instance();
        Commands.makeNew(QStringLiteral("Untitled"));
        OrvShaderInput* pChannel = m_Document.newChannel(QSize(16, 16));
        QVERIFY(Window.isWindowModified());
        const QString First = save(QStringLiteral("first.orvi")),
                      Second = save(QStringLiteral("second.orvi"));
        QVERIFY(!Window.isWindowModified());
        QVERIFY(Window.windowTitle().startsWith(QStringLiteral("second")));
        pChannel->node()->setName(QStringLiteral("Other"));
        QVERIFY(Window.isWindowModified());
        OrvUndoManager::instance().undo();
        QVERIFY(!Window.isWindowModified());

        QVERIFY(Commands.open(First));
        QVERIFY(Commands.open(Second));
        QVERIFY(Commands.open(First));
        QCOMPARE(OrvRecentProjects::paths(), QStringList({First, Second}));
        // What cannot be opened leaves the open project alone and is no recent one.
        QVERIFY(!Commands.open(m_Document.filePath(QStringLiteral("missing.orvi"))));
        QCOMPARE(OrvProjectManager::instance().currentProject()->path(), First);
        QCOMPARE(OrvRecentProjects::paths().size(), 2);
    }

    void aCopySurvivesACrashAndNothingElse()
    {
        OrvProjectCommands Commands;
        OrvAutosave Autosave;
        OrvShaderInput* pChannel = m_Document.newChannel(QSize(16, 16));
        m_Document.newPaintLayer(pChannel, OrvColor(0.0f, 1.0f, 0.0f));
        QVERIFY(Autosave.saveNow());
        // While its program runs, a copy is nobody else's.
        QVERIFY(OrvAutosave::leftBehind().isEmpty());
        save(QStringLiteral("saved.orvi"));
        QVERIFY(!Autosave.saveNow());

        pChannel->node()->setName(QStringLiteral("Lost"));
        QVERIFY(Autosave.saveNow());
        const QString Directory = OrvDataBlockManager::subCachePath();
        const QString Aside = Directory + QStringLiteral("-crashed");
        QProcess::execute(QStringLiteral("cp"), {QStringLiteral("-r"), Directory, Aside});
        QFile::remove(Aside + QStringLiteral("/Autosave.lock"));
        OrvProjectManager::instance().closeProject();

        const QList<OrvAutosave::Copy> Copies = OrvAutosave::leftBehind();
        QCOMPARE(Copies.size(), 1);
        QCOMPARE(Copies.first().ProjectName, QStringLiteral("saved"));
        QString Error;

        // Who opens the project is asked about its younger copy, and may leave both alone.
        const QString Saved = m_Document.filePath(QStringLiteral("saved.orvi"));
        const auto openSaved = [&] { QVERIFY(!Commands.open(Saved)); };
        QCOMPARE(answering(QStringLiteral("Cancel"), openSaved).size(), 1);
        QVERIFY(!OrvProjectManager::instance().currentProject());
        const auto offer = [&] { QVERIFY(!Commands.offerRecovery()); };
        QCOMPARE(answering(QStringLiteral("Later"), offer).size(), 1);
        QVERIFY(!Commands.offerRecovery(Saved));
        QCOMPARE(OrvAutosave::leftBehind().size(), 1);

        const QString Folder = m_Document.filePath(QStringLiteral("saved recovered.orvi"));
        QVERIFY(Commands.recover(Copies.first()));
        QCOMPARE(OrvProjectManager::instance().currentProject()->path(), Folder);
        // The user is told where it went, and finds it again.
        QVERIFY(OrvStatusManager::instance().text().contains(Folder));
        QCOMPARE(OrvRecentProjects::paths().first(), Folder);
        QVERIFY(OrvMainWindow::instance().windowTitle().startsWith(QStringLiteral("saved recovered")));
        QCOMPARE(OrvShaderInputManager::instance().currentShaderInput()->name(), QStringLiteral("Lost"));
        QVERIFY(OrvAutosave::leftBehind().isEmpty());
        OrvProjectManager::instance().closeProject();
        QVERIFY(OrvProjectManager::instance().openProject(Folder, Error));
    }

    void savingDoesNotWaitForACostlyPicture()
    {
        OrvCanvasTools Tools;
        OrvCanvas Canvas(&Tools);
        Canvas.resize(600, 600);
        Canvas.show();
        OrvProjectCommands Commands(Canvas.renderer());
        OrvAutosave Autosave(Canvas.renderer());
        OrvShaderInput* pChannel = m_Document.newChannel(QSize(2048, 2048));
        OrvLayer* pLayer = m_Document.newPaintLayer(pChannel, OrvColor::white());
        for (int Edge = 1000; Edge > 0; Edge -= 50) {
            const QRect Square(0, 0, Edge, Edge);
            pLayer->paintImageSet()->buffer().fill(OrvColor(Edge % 7 / 7.0f, 0.5f, 0.1f), Square);
            pLayer->paintImageSet()->pixelsWritten(Square);
        }
        for (int Blur = 0; Blur < 6; ++Blur)
            pChannel->createAdjustmentLayer(
                QStringLiteral("Filter/Blur/Gaussian Blur"), OrvTestDocument::LayerFlags);
        Canvas.showActualSize();
        QTRY_VERIFY(!Canvas.renderer()->isIdle());

        // The window's own events go on while the copy is waited for and written. The picture becomes
        // outdated again and again, so that it is never done before.
        const QString Manifest = OrvDataBlockManager::subCachePath() + QStringLiteral("/Autosave/")
            + OrvProjectFile::ManifestName;
        QElapsedTimer SinceTick;
        SinceTick.start();
        qint64 Longest = 0;
        QTimer Ticks;
        connect(&Ticks, &QTimer::timeout, &Canvas, [&] {
            Longest = std::max(Longest, SinceTick.restart());
            if (Canvas.renderer()->isIdle())
                pLayer->paintImageSet()->pixelsWritten(pLayer->paintImageSet()->extent());
        });
        Ticks.start(10);
        Autosave.saveWhenIdle();
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(Manifest), 60000);
        QTRY_VERIFY(!Autosave.isWaiting());
        qInfo("longest wait %lld ms", static_cast<long long>(Longest));
        // One part of a picture may take seconds on a busy machine; without the pause it is all of them.
        QVERIFY2(Longest < 30000, qPrintable(QString::number(Longest)));

        // Touching the window puts the copy off.
        pLayer->setName(QStringLiteral("Touched"));
        QVERIFY(QFile::remove(Manifest));
        Autosave.saveWhenIdle();
        for (int Touch = 0; Touch < 12; ++Touch) {
            QTest::qWait(200);
            QTest::keyClick(&Canvas, Qt::Key_Shift);
        }
        QVERIFY(!QFileInfo::exists(Manifest));

        // Saving comes to its end as well, and the picture goes on afterwards.
        Ticks.stop();
        const QString Path = m_Document.filePath(QStringLiteral("costly.orvi"));
        OrvProjectManager::instance().currentProject()->setPath(Path);
        QVERIFY(Commands.saveProject());
        QVERIFY(!OrvProjectManager::instance().isModified());
        int Pieces = 0;
        connect(Canvas.renderer(), &OrvCanvasRenderer::pieceReady, &Canvas, [&Pieces] { ++Pieces; });
        pLayer->paintImageSet()->pixelsWritten(pLayer->paintImageSet()->extent());
        QTRY_VERIFY_WITH_TIMEOUT(Pieces > 0, 60000);
    }

    void aVeryLargeImageIsSavedInSlices()
    {
        const QSize Size(8192, 8192);
        OrvLayer* pLayer = m_Document.newPaintLayer(m_Document.newChannel(Size));
        OrvImageSet* pImages = pLayer->paintImageSet();
        for (int Square = 0; Square < pImages->blockCount(); ++Square) {
            const QPoint Corner = pImages->blockRect(Square).topLeft();
            pImages->buffer().fill(
                OrvColor(Square % 16 / 16.0f, Square / 256.0f, 0.5f), QRect(Corner, QSize(300, 300)));
        }
        pImages->pixelsWritten(pImages->extent());

        const QString Copy = OrvDataBlockManager::subCachePath() + QStringLiteral("/Autosave");
        const QString Manifest = Copy + QLatin1Char('/') + OrvProjectFile::ManifestName;
        const auto blockCount = [&Copy] {
            int Count = 0;
            QDirIterator Files(Copy + QStringLiteral("/blocks"), QDir::Files, QDirIterator::Subdirectories);
            for (; Files.hasNext(); Files.next())
                ++Count;
            return Count;
        };
        OrvAutosave Autosave;
        Autosave.setSliceLength(1);
        QSet<int> Seen;
        QTimer Ticks;
        connect(&Ticks, &QTimer::timeout, this, [&] { Seen.insert(blockCount()); });
        Ticks.start(5);
        Autosave.saveWhenIdle();
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(Manifest) && !Autosave.isWaiting(), 120000);
        // The window lives between any two slices, and each goes on where the last one ended.
        QVERIFY2(Seen.size() >= 3, qPrintable(QString::number(Seen.size())));
        QCOMPARE(blockCount(), pImages->blockCount());
    }

    void menusNameWhatTheyTakeBackAndTheHistoryGoesThere()
    {
        const OrvEditCommands Commands;
        OrvHistoryModel History;
        OrvShaderInput* pChannel = m_Document.newChannel(QSize(16, 16));
        const int Before = History.presentRow();
        QAction* pUndo = OrvActionTreeManager::instance().findAction(QStringLiteral("/Orvi/Edit/Undo"));
        QAction* pRedo = OrvActionTreeManager::instance().findAction(QStringLiteral("/Orvi/Edit/Redo"));
        QVERIFY(pUndo && pRedo && !pRedo->isEnabled());
        for (const char* pName : {"A", "B", "C"})
            pChannel->node()->setName(QString::fromLatin1(pName));
        QVERIFY(pUndo->text().size() > 5);
        QCOMPARE(History.rowCount(), Before + 4);
        History.goTo(Before + 1);
        QCOMPARE(pChannel->name(), QStringLiteral("A"));
        pUndo->trigger();
        QVERIFY(pRedo->isEnabled());
        // Redo has two common keys.
        QAction* pOther
            = OrvActionTreeManager::instance().findAction(QStringLiteral("/Orvi/Edit/Redo (Other Key)"));
        QVERIFY(pOther);
        QCOMPARE(pOther->shortcut(), QKeySequence(Qt::CTRL + Qt::Key_Y));
        pOther->trigger();
        QCOMPARE(pChannel->name(), QStringLiteral("A"));
        pUndo->trigger();
        History.goTo(History.rowCount() - 1);
        QCOMPARE(pChannel->name(), QStringLiteral("C"));
        History.goTo(Before);
        QCOMPARE(pChannel->name(), QStringLiteral("Color"));
        const QModelIndex Undone = History.index(Before + 2);
        QVERIFY(History.data(Undone, Qt::ForegroundRole).isValid());
        QVERIFY(!History.data(History.index(Before), Qt::ForegroundRole).isValid());
    }

private:
    QString save(const QString& Name) const
    {
        const QString Path = m_Document.filePath(Name);
        QString Error;
        if (!OrvProjectManager::instance().saveProjectAs(Path, Error))
            qWarning("%s", qPrintable(Error));
        return Path;
    }

    OrvTestDocument m_Document;
};

QTEST_MAIN(TstProjectCommands)
#include "TstProjectCommands.moc"

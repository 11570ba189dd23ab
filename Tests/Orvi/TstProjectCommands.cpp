#include "Tests/Orvi/OrvTestDocument.h"

#include "Orvi/OrvAutosave.h"
#include "Orvi/OrvEditCommands.h"
#include "Orvi/OrvHistoryModel.h"
#include "Orvi/OrvProjectCommands.h"

#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvCoreModules/Window/OrvApplication.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"

#include "OrvDdi/Files/OrvDataBlockManager.h"

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
        const QString Folder = OrvAutosave::recover(Copies.first(), Error);
        QVERIFY2(!Folder.isEmpty(), qPrintable(Error));
        QCOMPARE(Folder, m_Document.filePath(QStringLiteral("saved recovered.orvi")));
        QCOMPARE(OrvShaderInputManager::instance().currentShaderInput()->name(), QStringLiteral("Lost"));
        QVERIFY(OrvAutosave::leftBehind().isEmpty());
        OrvProjectManager::instance().closeProject();
        QVERIFY(OrvProjectManager::instance().openProject(Folder, Error));
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

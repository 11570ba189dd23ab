#include "Orvi/OrvEditCommands.h"

#include "Orvi/OrvDialogAction.h"

#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvCoreModules/Menus/OrvAction.h"
#include "OrvCoreModules/Menus/OrvActionCreator.h"
#include "OrvCoreModules/Menus/OrvShortcutEditor.h"
#include "OrvCoreModules/Menus/OrvShortcutManager.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"

#include <QtWidgets/QUndoStack>

OrvEditCommands::OrvEditCommands(QObject* pParent)
    : QObject(pParent)
{
    const QString Path = QStringLiteral("/Orvi/Edit");
    OrvShortcutManager& Shortcuts = OrvShortcutManager::instance();
    Shortcuts.setDefaultShortcut(Path + QStringLiteral("/") + tr("Undo"), QKeySequence::Undo);
    Shortcuts.setDefaultShortcut(
        Path + QStringLiteral("/") + tr("Redo"), QKeySequence(Qt::CTRL + Qt::SHIFT + Qt::Key_Z));
    OrvActionCreator Creator(Path, this, QStringLiteral("MainWindow/&Edit"), QString());
    m_pUndo = Creator.createAndAddToMenu(
        tr("Undo"), QStringLiteral("Undo.png"), SLOT(undo()), QVariant(), QString());
    m_pRedo = Creator.createAndAddToMenu(
        tr("Redo"), QStringLiteral("Redo.png"), SLOT(redo()), QVariant(), QString());
    Creator.addMenuSeparator();
    OrvDialogAction::mark(Creator.createAndAddToMenu(
        tr("Keyboard Shortcuts"), QString(), SLOT(editShortcuts()), QVariant(), QString()));
    // Its other key is as common; an action of its own, so that it can be bound to something else.
    Shortcuts.setDefaultShortcut(
        Path + QStringLiteral("/") + tr("Redo (Other Key)"), QKeySequence(Qt::CTRL + Qt::Key_Y));
    Creator.setMenuPath(QString());
    Creator.create(tr("Redo (Other Key)"), QString(), SLOT(redo()), QVariant(), QString());

    const QUndoStack* pStack = OrvUndoManager::instance().stack();
    connect(pStack, &QUndoStack::indexChanged, this, &OrvEditCommands::updateTexts);
    updateTexts();
}

void OrvEditCommands::undo()
{
    OrvUndoManager::instance().undo();
}

void OrvEditCommands::redo()
{
    OrvUndoManager::instance().redo();
}

void OrvEditCommands::editShortcuts()
{
    OrvShortcutEditor Editor(&OrvMainWindow::instance());
    Editor.exec();
}

void OrvEditCommands::updateTexts()
{
    const QUndoStack* pStack = OrvUndoManager::instance().stack();
    const auto name = [](const QString& Command, const QString& Step) {
        return Step.isEmpty() ? Command
                              : QStringLiteral("%1 %2").arg(Command, Step).replace('&', QLatin1String("&&"));
    };
    m_pUndo->setText(name(tr("Undo"), pStack->undoText()));
    m_pUndo->setEnabled(pStack->canUndo());
    m_pRedo->setText(name(tr("Redo"), pStack->redoText()));
    m_pRedo->setEnabled(pStack->canRedo());
}

#include "moc_OrvEditCommands.cpp"

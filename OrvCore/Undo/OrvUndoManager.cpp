#include "OrvCore/Undo/OrvUndoManager.h"

#include <QtCore/QScopedValueRollback>
#include <QtWidgets/QUndoStack>

namespace {

/// What a closed macro becomes in the history: its commands have run already, so the first redo does nothing.
class RecordedMacro : public QUndoCommand {
public:
    RecordedMacro(const QString& Text, std::vector<std::unique_ptr<QUndoCommand>> Commands)
        : QUndoCommand(Text)
        , m_Commands(std::move(Commands))
    {
    }

    void redo() override
    {
        if (std::exchange(m_JustRecorded, false))
            return;
        for (const auto& pCommand : m_Commands)
            pCommand->redo();
    }

    void undo() override
    {
        for (auto Command = m_Commands.rbegin(); Command != m_Commands.rend(); ++Command)
            (*Command)->undo();
    }

private:
    std::vector<std::unique_ptr<QUndoCommand>> m_Commands;
    bool m_JustRecorded = true;
};

} // namespace

OrvUndoManager& OrvUndoManager::instance()
{
    static OrvUndoManager Manager;
    return Manager;
}

OrvUndoManager::OrvUndoManager()
    : m_pStack(new QUndoStack(this))
{
    m_pStack->setUndoLimit(1000);
}

void OrvUndoManager::addUndo(QUndoCommand* pCommand)
{
    std::unique_ptr<QUndoCommand> pOwned(pCommand);
    if (!pOwned || m_Restoring || m_Unrecorded > 0)
        return;
    open(pOwned->text());
    m_Macro.push_back(std::move(pOwned));
    close();
}

void OrvUndoManager::perform(std::unique_ptr<QUndoCommand> pCommand)
{
    if (m_Restoring || m_Unrecorded > 0) {
        pCommand->redo();
        return;
    }
    open(pCommand->text());
    QUndoCommand* pRunning = pCommand.get();
    m_Macro.push_back(std::move(pCommand));
    pRunning->redo();
    close();
}

void OrvUndoManager::restore(const std::function<void()>& Step)
{
    {
        const QScopedValueRollback<bool> Restoring(m_Restoring, true);
        Step();
    }
    if (m_Depth == 0)
        Q_EMIT editFinished();
}

void OrvUndoManager::undo()
{
    // A gesture that holds a macro open must end first.
    if (m_Depth == 0 && !m_Restoring && m_pStack->canUndo())
        restore([this] { m_pStack->undo(); });
}

void OrvUndoManager::redo()
{
    if (m_Depth == 0 && !m_Restoring && m_pStack->canRedo())
        restore([this] { m_pStack->redo(); });
}

void OrvUndoManager::clear()
{
    m_pStack->clear();
}

void OrvUndoManager::open(const QString& Text)
{
    if (m_Depth++ == 0)
        m_MacroText = Text;
}

void OrvUndoManager::close()
{
    if (--m_Depth > 0)
        return;
    if (!m_Macro.empty()) {
        auto Commands = std::move(m_Macro);
        m_Macro.clear();
        m_pStack->push(new RecordedMacro(m_MacroText, std::move(Commands)));
    }
    if (!m_Restoring)
        Q_EMIT editFinished();
}

void OrvUndoManager::cancelTo(std::size_t Count)
{
    restore([this, Count] {
        while (m_Macro.size() > Count) {
            const std::unique_ptr<QUndoCommand> pLast = std::move(m_Macro.back());
            m_Macro.pop_back();
            pLast->undo();
        }
    });
}

OrvUndoManager::AutoMacro::AutoMacro(const QString& Text)
    : m_FirstCommand(instance().m_Macro.size())
{
    instance().open(Text);
}

OrvUndoManager::AutoMacro::~AutoMacro()
{
    instance().close();
}

void OrvUndoManager::AutoMacro::cancel()
{
    instance().cancelTo(m_FirstCommand);
}

OrvUndoManager::NoRecording::~NoRecording()
{
    OrvUndoManager& Manager = instance();
    if (--Manager.m_Unrecorded == 0 && Manager.m_Depth == 0 && !Manager.m_Restoring)
        Q_EMIT Manager.editFinished();
}

#include "moc_OrvUndoManager.cpp"

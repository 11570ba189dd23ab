#pragma once

#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QObject>

#include <functional>
#include <memory>
#include <vector>

class QUndoCommand;
class QUndoStack;

/// The undo history of the open project. Primitive edits are performed through it; larger operations open an
/// AutoMacro and become one entry. A macro reaches the history only when it closes, so that a cancelled one leaves
/// the history, redo entries included, as it was.
class ORVCORE_EXPORT OrvUndoManager : public QObject {
    Q_OBJECT

public:
    static OrvUndoManager& instance();

    /// Read access for menus and the history palette; edits go through the operations below.
    QUndoStack* stack() const { return m_pStack; }

    /// Records a command without running it. Dropped while an undo or redo runs.
    void addUndo(QUndoCommand* pCommand);
    /// Runs the command's redo() and records it. While an undo or redo runs, or recording is off, it only runs.
    void perform(std::unique_ptr<QUndoCommand> pCommand);

    void undo();
    void redo();
    void clear();
    bool isInMacro() const { return m_Depth > 0; }
    /// An undo, a redo or a cancellation is taking place.
    bool isRestoring() const { return m_Restoring; }

    class AutoMacro;
    class NoRecording;

Q_SIGNALS:
    /// After the outermost macro, single edit, undo or redo: the document is whole again.
    void editFinished();

private:
    OrvUndoManager();
    void open(const QString& Text);
    void close();
    void cancelTo(std::size_t Count);
    void restore(const std::function<void()>& Step);

    QUndoStack* m_pStack;
    QString m_MacroText;
    std::vector<std::unique_ptr<QUndoCommand>> m_Macro;
    int m_Depth = 0;
    int m_Unrecorded = 0;
    bool m_Restoring = false;
};

/// A named macro that is open for its lifetime. Macros nest: an inner one becomes part of the outer, whose name is
/// shown. One that recorded nothing leaves no entry.
class ORVCORE_EXPORT OrvUndoManager::AutoMacro {
public:
    explicit AutoMacro(const QString& Text);
    ~AutoMacro();
    AutoMacro(const AutoMacro&) = delete;
    AutoMacro& operator=(const AutoMacro&) = delete;

    /// Takes back everything done since this macro opened, inner macros included.
    void cancel();

private:
    std::size_t m_FirstCommand;
};

/// Edits within its lifetime run without being recorded: building a document that has no history yet.
class ORVCORE_EXPORT OrvUndoManager::NoRecording {
public:
    NoRecording() { ++OrvUndoManager::instance().m_Unrecorded; }
    ~NoRecording();
    NoRecording(const NoRecording&) = delete;
    NoRecording& operator=(const NoRecording&) = delete;
};

#pragma once

#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QPointer>
#include <QtCore/QVariantList>
#include <QtWidgets/QUndoCommand>

/// Calls a method of an object by its signature on every undo and redo. It holds the target weakly: once the object
/// is gone nothing happens. Recording it runs nothing.
class ORVCORE_EXPORT OrvCallMethodUndo : public QUndoCommand {
public:
    /// The method is a normalised signature, "requestRefresh()"; the arguments are passed in its parameters' types,
    /// ten at most. A merge identifier of -1 never merges.
    OrvCallMethodUndo(QObject* pTarget, const QByteArray& Method, const QVariantList& UndoArguments,
        const QVariantList& RedoArguments, int MergeIdentifier, const QString& Text);

    void undo() override;
    void redo() override;
    int id() const override { return m_MergeIdentifier; }

private:
    void call(QVariantList Arguments) const;

    QPointer<QObject> m_pTarget;
    QByteArray m_Method;
    QVariantList m_UndoArguments, m_RedoArguments;
    int m_MergeIdentifier;
};

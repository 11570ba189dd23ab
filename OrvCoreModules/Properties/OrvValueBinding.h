#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtCore/QObject>
#include <QtCore/QVariant>

/// One value of an object of the document, as an editor sees it: read it, follow it, edit it undoably. The
/// editor's widget owns it. It survives the object, which it never owns, and then neither yields nor writes
/// anything.
class ORVCOREMODULES_EXPORT OrvValueBinding : public QObject {
    Q_OBJECT

public:
    ~OrvValueBinding() override;

    /// Invalid once the object is gone.
    virtual QVariant value() const = 0;
    virtual bool isWritable() const = 0;

    /// Outside a gesture this is one undo step of its own.
    void edit(const QVariant& Value);
    /// Everything edited in between becomes one undo step, a value that comes back to where it began none.
    virtual void beginGesture();
    virtual void finishGesture();

Q_SIGNALS:
    void valueChanged();
    /// Whether it can be edited changed, or the object died.
    void writableChanged();

protected:
    explicit OrvValueBinding(const QString& UndoText, QObject* pParent);
    /// Called inside an undo macro, or while nothing is recorded.
    virtual void write(const QVariant& Value) = 0;
    /// What the undo history calls the edit that sets the value.
    virtual QString undoText(const QVariant& Value) const;

private:
    void record(const QVariant& Value);

    QString m_UndoText;
    QVariant m_ValueBefore;
    bool m_InGesture = false;
};

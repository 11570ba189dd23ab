#pragma once

#include "OrvCoreModules/Menus/OrvAction.h"

#include <QtCore/QPointer>

/// A menu or tool-bar entry that stands for the action registered at a path, now or later. It looks like that
/// action and triggers it; while there is none it is invisible. The action belongs to whoever registered it.
class ORVCOREMODULES_EXPORT OrvLateBindAction : public OrvAction {
    Q_OBJECT

public:
    explicit OrvLateBindAction(const QString& ActionPath, QObject* pParent = nullptr);

    QString actionPath() const { return m_ActionPath; }
    /// The action that the entry stands for, or null.
    QAction* parentAction() const { return m_ParentAction; }

private Q_SLOTS:
    void onActionRegistered(const QString& Path, QAction* pAction);
    void onActionUnregistered(const QString& Path);
    void onShownShortcutChanged(const QString& Path);
    void resemble();
    void onTriggered();

private:
    void bind(QAction* pAction);

    QString m_ActionPath;
    QPointer<QAction> m_ParentAction;
};

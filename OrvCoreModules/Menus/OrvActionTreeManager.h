#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtCore/QHash>
#include <QtCore/QObject>
#include <QtCore/QStringList>

class QAction;

/// All actions of the program by path ("/Orvi/Layers/Cut"), and named sets of them that are enabled together.
/// Actions belong to whoever made them and leave the tree when they die.
class ORVCOREMODULES_EXPORT OrvActionTreeManager : public QObject {
    Q_OBJECT

public:
    static OrvActionTreeManager& instance();

    /// The key is path, separator and the action's text. A key that is taken is reported and keeps its
    /// action.
    void registerAction(const QString& Path, QAction* pAction);
    void unregisterAction(QAction* pAction);

    /// Null when there is none; a leading separator may be left out.
    QAction* findAction(const QString& Key) const;
    bool hasAction(const QString& Key) const { return findAction(Key) != nullptr; }
    /// The key of an action, or nothing.
    QString actionKey(const QAction* pAction) const;
    /// All keys at and below a path, in the order of registration.
    QStringList actionKeys(const QString& Path = QString()) const;

    /// An action that enters a set takes on the state that the set was given last.
    void addToActionSet(const QString& SetName, QAction* pAction);
    void setActionSetEnabled(const QString& SetName, bool Enabled);
    QList<QAction*> actionSet(const QString& SetName) const;

    /// One leading separator, none doubled, none at the end.
    static QString cleanPath(const QString& Path);

Q_SIGNALS:
    void actionRegistered(QString Key, QAction* pAction);
    /// The action may be dying already.
    void actionUnregistered(QString Key);

private Q_SLOTS:
    void onActionDestroyed(QObject* pAction);

private:
    struct ActionSet {
        QList<QAction*> Actions;
        bool Enabled = true;
    };

    OrvActionTreeManager() = default;
    void watch(QAction* pAction);
    void forget(QObject* pAction);

    QHash<QString, QAction*> m_Actions;
    QHash<const QObject*, QString> m_Keys;
    QStringList m_Order;
    QHash<QString, ActionSet> m_ActionSets;
};

#pragma once

#include <QtCore/QHash>
#include <QtCore/QStringList>

class QAction;
class QIcon;
class QMenu;
class QObject;
class QVariant;

/// Fills a menu with entries by "/"-separated paths, whose parts before the last become nested sub-menus. It
/// keeps nothing: the table of sub-menus, by path, is the caller's and may have entries already.
class OrvNodeMenuBuilder {
public:
    OrvNodeMenuBuilder(QMenu* pRoot, QHash<QString, QMenu*>& Menus, QObject* pReceiver, const char* pSlot);

    /// The sub-menu at that path, the root menu for an empty one.
    QMenu* menu(const QStringList& Path);
    /// An entry that carries the data and is connected to the receiver.
    QAction* addAction(
        const QStringList& MenuPath, const QString& Text, const QIcon& Icon, const QVariant& Data);
    /// One entry per node type whose menu path begins with one of the groups; it carries the type's key.
    void addNodeTypes(const QStringList& Groups);

private:
    QMenu* m_pRoot;
    QHash<QString, QMenu*>& m_Menus;
    QObject* m_pReceiver;
    const char* m_pSlot;
};

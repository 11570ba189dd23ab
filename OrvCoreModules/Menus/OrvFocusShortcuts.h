#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtCore/QObject>
#include <QtCore/QVector>

class QKeyEvent;
class QKeySequence;
class QShortcut;
class QWidget;

/// The keys of one widget, which owns this: users can list and rebind them like all others. While the widget
/// has the keyboard they win over the same keys of the whole window, which Qt alone would call ambiguous.
class ORVCOREMODULES_EXPORT OrvFocusShortcuts : public QObject {
    Q_OBJECT

public:
    explicit OrvFocusShortcuts(QWidget* pWidget);

    /// Listed in the widget's group under the slot's name; see OrvShortcutManager::createShortcut().
    void add(const QKeySequence& Keys, const char* pSlot, QObject* pReceiver);

    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
    QShortcut* matching(const QKeyEvent* pEvent) const;

    QWidget* m_pWidget;
    QVector<QShortcut*> m_Shortcuts; ///< the widget's; they only hold the keys
};

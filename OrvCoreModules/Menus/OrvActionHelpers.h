#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtGui/QKeySequence>

class QAction;
class QObject;
class QShortcut;
class QWidget;

/// Short ways to actions, menus and shortcuts by path. A path that nobody knows is ignored: the part of the
/// program that makes it may be absent.
class ORVCOREMODULES_EXPORT OrvActionHelpers {
public:
    /// Works while the widget or one of its children has the focus; the user can rebind it. The slot is
    /// written with SLOT(). Belongs to the widget.
    static QShortcut* createAndRegisterShortcut(
        QWidget* pWidget, const QKeySequence& Sequence, const char* pSlot, QObject* pReceiver);

    /// Why it is disabled is its tool tip, which goes when it is enabled; without a reason the tip stays as
    /// it is.
    static void setActionEnabled(const QString& Key, bool Enabled, const QString& Reason = QString());
    static void setMenuEnabled(const QString& MenuPath, bool Enabled, const QString& Reason = QString());
    /// The entries of one menu without its sub-menus and separators, late-bound ones as they are.
    static QList<QAction*> getMenuActions(const QString& MenuPath);
};

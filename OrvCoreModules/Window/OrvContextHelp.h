#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtCore/QString>

class QPoint;
class QWidget;

/// The short help texts behind the question marks, by key: registered by whoever knows the matter, else read
/// from the help directory's file of that name.
class ORVCOREMODULES_EXPORT OrvContextHelp {
public:
    static void registerText(const QString& Key, const QString& RichText);
    /// Empty when nobody wrote one.
    static QString text(const QString& Key);
    /// False when there is nothing to show.
    static bool show(const QString& Key, const QPoint& GlobalPosition, QWidget* pWidget);
};

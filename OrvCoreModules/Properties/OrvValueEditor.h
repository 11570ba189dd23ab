#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include "OrvDdi/Engine/OrvOperationRegistry.h"

#include <QtCore/QString>

class OrvValueBinding;
class QFormLayout;
class QVariant;
class QWidget;

/// Makes the widget that edits one value, by the kind that its description says. The widget owns the binding,
/// stays in step with it in both directions, and greys out while the value cannot be written.
namespace OrvValueEditor {

/// A description for a value of which nothing but its name and present value is known.
ORVCOREMODULES_EXPORT OrvOperationParameter describe(const QString& Name, const QVariant& Value);
/// Whether there is an editor, or at least a text, for such a value.
ORVCOREMODULES_EXPORT bool canShow(const QVariant& Value);
/// "imageSetSize" and "blendMode" read "Image Set Size" and "Blend Mode".
ORVCOREMODULES_EXPORT QString labelFromName(const QString& Name);

ORVCOREMODULES_EXPORT QWidget* create(
    OrvValueBinding* pBinding, const OrvOperationParameter& Description, bool ReadOnly, QWidget* pParent);
/// A row with the label; its menu goes back to the default where the description has one.
ORVCOREMODULES_EXPORT QWidget* addRow(
    QFormLayout* pForm, OrvValueBinding* pBinding, const OrvOperationParameter& Description, bool ReadOnly);

} // namespace OrvValueEditor

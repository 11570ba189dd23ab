#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtCore/QString>

class OrvAttributeBinding;
class OrvSerializableObject;
struct OrvOperationParameter;
class QVariant;
class QWidget;

/// Makes small editors of single user attributes, for tool rows outside the property area. Each stays in step
/// with the attribute; each edit, a whole drag too, is one undo step.
class ORVCOREMODULES_EXPORT OrvUserAttributeControletManager {
public:
    enum StyleFlag { Compact = 1, NoLabel = 16 };

    /// Null when the object has no such attribute. Widths in pixels; the parent owns the result.
    static QWidget* create(const QString& AttributeName, OrvSerializableObject* pObject, QWidget* pParent,
        int LabelWidth, int Spacing, int MinimumEditorWidth, int MaximumEditorWidth, int Style);
    /// The same for a binding that does more than edit the one attribute; the result owns it.
    static QWidget* createBound(const QString& AttributeName, OrvAttributeBinding* pBinding, QWidget* pParent,
        int LabelWidth, int Spacing, int MinimumEditorWidth, int MaximumEditorWidth, int Style);

    /// What an attribute of that name means where the name says more than the value: blend modes, amounts.
    static OrvOperationParameter describe(const QString& AttributeName, const QVariant& Value);
};

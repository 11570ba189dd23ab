#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtCore/QString>

#include <functional>

class OrvSnBaseNode;
struct QMetaObject;
class QWidget;

/// Which property editor a node has: a table from node class to factory, asked from the node's own class
/// upwards. The last answer, for any node, shows its name and its visible user attributes.
class ORVCOREMODULES_EXPORT OrvNodePropertyEditors {
public:
    using Factory
        = std::function<QWidget*(OrvSnBaseNode* pNode, const QString& Title, int Options, QWidget* pParent)>;

    /// Replaces the factory of the class.
    static void enter(const QMetaObject& NodeClass, const Factory& Make);

    /// Options are those of OrvNodePropertyEditor. Null only for a null node; an empty title gives no
    /// heading. The editor's object name is the node's name with "/Node" after it.
    static QWidget* create(OrvSnBaseNode* pNode, const QString& Title, int Options, QWidget* pParent);
};

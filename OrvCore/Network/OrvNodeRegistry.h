#pragma once

#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QFlags>
#include <QtCore/QHash>
#include <QtCore/QPair>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <functional>
#include <memory>

class OrvSnBaseNode;

/// Makes nodes from the names of their types. Every operation of the image engine that can be a layer has the
/// type name "Operation/" + the operation's name; the types of Orvi itself, shaders among them, are entered
/// at start-up.
class ORVCORE_EXPORT OrvNodeRegistry {
public:
    static OrvNodeRegistry& instance();

    using Factory = std::function<std::unique_ptr<OrvSnBaseNode>()>;
    /// Menus are told of what is entered after the start (OrvShaderNetworkManager).
    void enter(const QString& TypeName, Factory Make);

    /// A shader stands alone, fed by channels, and can be a layer of a material stack too; or it is made of
    /// such stacks.
    enum ShaderUse { StandaloneShader = 1, LayeredShader = 2 };
    Q_DECLARE_FLAGS(ShaderUses, ShaderUse)
    void enterShader(const QString& TypeName, ShaderUses Uses, Factory Make);
    /// In the order in which they were entered.
    QStringList shaderTypes(ShaderUse Use) const;

    /// Null for an unknown type.
    std::unique_ptr<OrvSnBaseNode> create(const QString& TypeName) const;
    /// A procedural or adjustment node of a layer node type, null for an unknown menu path.
    std::unique_ptr<OrvSnBaseNode> createFromMenuPath(const QString& MenuPath) const;

private:
    OrvNodeRegistry();
    QHash<QString, Factory> m_Factories;
    QVector<QPair<QString, ShaderUses>> m_Shaders;
    bool m_IsComplete = false; ///< but for what others enter
};

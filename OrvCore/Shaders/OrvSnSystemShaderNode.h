#pragma once

#include "OrvCore/Network/OrvSnBaseNode.h"

/// A shader that follows what is current in its network instead of having inputs. Its tag says what it shows;
/// the network holds one of each kind beside its nodes, where neither the undo history nor the project file
/// sees them.
class ORVCORE_EXPORT OrvSnSystemShaderNode : public OrvSnBaseNode {
    Q_OBJECT

public:
    explicit OrvSnSystemShaderNode(const QString& Tag);

    QString typeName() const override { return QStringLiteral("SystemShader"); }
    QString typeLabel() const override;
    /// What it shows, by its tag.
    const QString& kind() const { return m_Kind; }

    /// The tags of all kinds, in list order.
    static const QStringList& kinds();

private:
    QString m_Kind;
};

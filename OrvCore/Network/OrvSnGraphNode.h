#pragma once

#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Network/OrvSnNames.h"

/// Holds a network of its own; its result is that of the node that feeds the nested output node.
class ORVCORE_EXPORT OrvSnGraphNode : public OrvSnBaseNode {
    Q_OBJECT

public:
    OrvSnGraphNode();
    QString typeName() const override { return QStringLiteral("Graph"); }
    QString typeLabel() const override;
    OrvShaderNetwork* nestedNetwork() const override { return m_pNested; }
    OrvSnBaseNode* outputNode() const;

    void describe(OrvNodeDescription& Description) const override;
    void adopt(const OrvNodeDescription& Description) override;

protected:
    bool isEvaluationAlias() const override { return true; }
    OrvSnBaseNode* evaluationAlias() const override { return outputNode(); }

private:
    OrvShaderNetwork* m_pNested;
};

#pragma once

#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Network/OrvSnNames.h"

/// Inside a graph node: what feeds it is the graph's result.
class ORVCORE_EXPORT OrvSnGraphOutputNode : public OrvSnBaseNode {
    Q_OBJECT

public:
    OrvSnGraphOutputNode();
    QString typeName() const override { return QStringLiteral("GraphOutput"); }
    QString typeLabel() const override;

protected:
    bool isEvaluationAlias() const override { return true; }
    OrvSnBaseNode* evaluationAlias() const override { return inputNode(OrvSnNames::Input); }
};

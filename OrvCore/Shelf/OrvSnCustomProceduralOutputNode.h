#pragma once

#include "OrvCore/Network/OrvSnGraphOutputNode.h"

/// The result of a custom procedural, cropped to the extent of the node around it. It lives and dies with the
/// network inside that node.
class OrvSnCustomProceduralOutputNode : public OrvSnGraphOutputNode {
    Q_OBJECT

public:
    QString typeName() const override { return QStringLiteral("CustomProceduralOutput"); }

protected:
    bool isEvaluationAlias() const override { return false; }
    std::unique_ptr<OrvEngineNode> createEngineNode() const override;
    void updateEngineNode(OrvEngineNode& Node) const override;
};

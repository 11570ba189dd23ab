#pragma once

#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Network/OrvSnNames.h"

/// The end of a chain: nothing, or, inside a group in pass-through mode, what lies below the group.
class ORVCORE_EXPORT OrvSnBottomTransparencyNode : public OrvSnBaseNode {
    Q_OBJECT

public:
    OrvSnBottomTransparencyNode();
    QString typeName() const override { return QStringLiteral("BottomTransparency"); }
    QString typeLabel() const override;

protected:
    bool isEvaluationAlias() const override { return true; }
    OrvSnBaseNode* evaluationAlias() const override;
};

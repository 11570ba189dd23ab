#pragma once

#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Network/OrvSnNames.h"

/// Passes its input on unchanged; the two ends of an adjustment stack, told apart by their tags.
class ORVCORE_EXPORT OrvSnPassNode : public OrvSnBaseNode {
    Q_OBJECT

public:
    explicit OrvSnPassNode(const QStringList& Tags = {});
    QString typeName() const override { return QStringLiteral("Pass"); }
    QString typeLabel() const override;

protected:
    bool isEvaluationAlias() const override { return true; }
    OrvSnBaseNode* evaluationAlias() const override;
};

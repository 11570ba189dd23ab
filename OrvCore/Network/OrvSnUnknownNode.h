#pragma once

#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Network/OrvSnNames.h"

#include <QtCore/QJsonObject>

/// Stands in for a node whose type this version does not know; it passes its first input on and is stored back
/// exactly as it was read, but for what feeds it.
class ORVCORE_EXPORT OrvSnUnknownNode : public OrvSnBaseNode {
    Q_OBJECT

public:
    explicit OrvSnUnknownNode(const QJsonObject& Stored, const QStringList& InputNames);
    ~OrvSnUnknownNode() override;
    QString typeName() const override;
    QString typeLabel() const override;
    void describe(OrvNodeDescription& Description) const override;

protected:
    bool isEvaluationAlias() const override { return true; }
    OrvSnBaseNode* evaluationAlias() const override { return preferredInputNode(); }

private:
    std::unique_ptr<QJsonObject> m_pStored;
};

#pragma once

#include "OrvCoreModules/Properties/OrvAttributeBinding.h"

#include <QtCore/QVector>

class OrvLayer;
class OrvLayerStack;
class OrvSnBaseNode;

/// Blend mode or amount of the layer that a blend row shows; its editor owns it. What is edited there is
/// written to all layers that are selected together with that one, as far as they allow it, in the same undo
/// step.
class OrvLayerBlendBinding : public OrvAttributeBinding {
    Q_OBJECT

public:
    OrvLayerBlendBinding(OrvSnBaseNode* pBlendNode, const QString& AttributeName, OrvLayer* pLayer,
        const OrvLayerStack* pLayerStack);
    ~OrvLayerBlendBinding() override;

    void beginGesture() override;
    void finishGesture() override;

protected:
    void write(const QVariant& Value) override;
    QString undoText(const QVariant& Value) const override;

private:
    struct NodeValue {
        QPointer<OrvSnBaseNode> pNode;
        QVariant Value;
    };
    QVector<NodeValue> others() const;

    QString m_AttributeName;
    QPointer<OrvLayer> m_Layer;
    QPointer<const OrvLayerStack> m_LayerStack;
    bool m_FollowsGesture = false;
    QVariant m_Start;
    QVector<NodeValue> m_OthersAtStart;
};

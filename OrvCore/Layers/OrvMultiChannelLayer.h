#pragma once

#include "OrvCore/Layers/OrvLayer.h"

class OrvSnMultiChannelMergeNode;

/// A layer that stands in several channels of a shader, as it is in one of them: there is one object per
/// channel. Blending and content are this channel's own, all else is answered from the node that the streams
/// share; see OrvLayer::commonNode().
class ORVCORE_EXPORT OrvMultiChannelLayer : public OrvLayer {
    Q_OBJECT

public:
    OrvSnMultiChannelMergeNode* multiChannelNode() const;
    QString streamName() const;
    /// It carries a material, not a group.
    bool isMaterialLayer() const;
    /// For a stream given by its name, that of a channel; the layer's own when it is empty.
    bool isBlendingAmountModifiable(const QString& ShortName) const;
    using OrvLayer::isBlendingAmountModifiable;
    /// The layer in its other channels.
    QList<OrvLayer*> siblings() const;

private:
    friend class OrvLayerManager;
    using OrvLayer::OrvLayer;
};

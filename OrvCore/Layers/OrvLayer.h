#pragma once

#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QString>

class OrvColor;
class OrvImageSet;
class OrvLayerStack;
class OrvShaderInput;
class OrvSnBaseNode;
class OrvSnMergeNode;
class QColor;

/// One layer: the view on a merge node, its blend node, one object per merge node while that lives. It stores
/// nothing of the document but whether it is selected; every question is answered from the graph, every edit
/// is made on it, each as one undo step.
class ORVCORE_EXPORT OrvLayer : public QObject {
    Q_OBJECT

public:
    enum MaskType { EmptyMask = 0, FilledMask = 1 };

    ~OrvLayer() override;

    QString name() const;
    void setName(const QString& Name);
    /// "Channel/Group/Layer", with the object's name before it where asked.
    QString path(bool WithEntity = false) const;
    /// The tag colour, invalid without a tag.
    QColor color() const;
    void setColor(const QColor& Color);

    /// The merge node, null once that is gone.
    OrvSnMergeNode* blendNode() const { return m_pBlendNode; }
    /// The content that feeds "Over", below the adjustment stack where there is one.
    OrvSnBaseNode* contentNode() const;
    OrvSnBaseNode* overNode() const;
    OrvSnBaseNode* maskNode() const;
    OrvImageSet* paintImageSet() const;
    OrvImageSet* maskImageSet() const;
    OrvSnBaseNode* paintNode() const;
    /// The image node of a mask that can be painted on.
    OrvSnBaseNode* maskPaintNode() const;
    OrvSnBaseNode* adjustmentNode() const;
    OrvSnBaseNode* secondaryAdjustmentNode() const;
    OrvSnBaseNode* graphNode() const;
    OrvSnBaseNode* proceduralNode() const;
    OrvSnBaseNode* customProceduralNode() const { return nullptr; }
    OrvSnBaseNode* shaderNode() const;
    OrvSnBaseNode* maskCustomProceduralNode() const { return nullptr; }
    OrvSnBaseNode* bakePointNode() const { return nullptr; }

    bool isPaintableLayer() const { return paintNode() != nullptr; }
    bool isAdjustmentLayer() const { return adjustmentNode() != nullptr; }
    bool isProceduralLayer() const { return proceduralNode() != nullptr; }
    bool isCustomProceduralLayer() const { return customProceduralNode() != nullptr; }
    bool isGraphLayer() const { return graphNode() != nullptr; }
    bool isShaderLayer() const { return shaderNode() != nullptr; }
    bool isBakePointLayer() const { return bakePointNode() != nullptr; }
    virtual bool isGroupLayer() const;
    bool hasSecondaryAdjustment() const { return secondaryAdjustmentNode() != nullptr; }
    bool canHaveAdjustmentStack() const;

    bool isVisible() const;
    void setVisible(bool Visible);
    bool isVisibilityChangeable() const;
    bool isLocked() const;
    void setLocked(bool Locked);
    bool isDownstreamLocked() const;
    void unlockLockedAncestorLayers();
    /// No lock or cache on the layer, around it, or on a layer that shares its content.
    bool isModifiable() const;
    bool isBlendingModifiable() const;
    bool isBlendingAmountModifiable() const;
    bool isMoveable() const;
    /// Whether the layer, or another one with its content, may stand just above the target: nothing is locked
    /// there, no cycle would come of it, and the stack takes this kind of layer.
    bool canBePlacedAt(const OrvSnBaseNode* pTarget, const OrvLayerStack* pStack) const;

    bool isSelected() const { return m_Selected; }
    void setSelected(bool Selected, bool Notify = true);
    bool isCurrent() const;
    /// Makes the layer its network's current one; the second flag makes its stack and channel current too and
    /// selects it alone.
    void makeCurrent(bool Undoable, bool WithStack);

    bool hasMask() const;
    bool hasMaskImageSet() const;
    bool hasMaskStack() const;
    OrvLayerStack* maskStack() const;
    bool isMaskEnabled() const;
    Q_INVOKABLE void setMaskEnabled(bool Enabled);
    bool isMaskProcedural() const { return false; }
    bool hasMaskCustomProcedural() const { return maskCustomProceduralNode() != nullptr; }
    /// Nothing happens when there is a mask already.
    bool addMaskImageSet(MaskType Type, const OrvColor& Fill);
    bool addMaskImageSet(int Type, const OrvColor& Fill) { return addMaskImageSet(MaskType(Type), Fill); }
    Q_INVOKABLE void addMaskImageSet();
    Q_INVOKABLE void addMaskImageSetAndFillBlack();
    /// The old mask becomes the stack's first layer. Null when there is no mask image to convert or no change
    /// is allowed.
    Q_INVOKABLE OrvLayerStack* convertMaskToMaskStack();
    Q_INVOKABLE void deleteMask();
    void makeMaskComponentCurrent();

    bool hasAdjustmentStack() const;
    OrvLayerStack* adjustmentStack() const;
    OrvSnBaseNode* adjustmentStackBottomNode() const;
    bool isAdjustmentStackEnabled() const;
    void setAdjustmentStackEnabled(bool Enabled);
    Q_INVOKABLE void enableAdjustmentStack() { setAdjustmentStackEnabled(true); }
    Q_INVOKABLE void disableAdjustmentStack() { setAdjustmentStackEnabled(false); }
    /// Makes the adjustment stack if there is none. The new layer, or null.
    Q_INVOKABLE OrvLayer* addLayerAdjustmentLayerFromKey(const QString& Key, const QString& Name = QString());
    Q_INVOKABLE void removeLayerAdjustment();
    /// Of an adjustment layer: a second operation that follows the first.
    Q_INVOKABLE void addSecondaryAdjustmentLayerFromKey(const QString& Key);
    Q_INVOKABLE void removeSecondaryAdjustmentLayer();

    bool isPaintComponentShared() const;
    bool isMaskComponentShared() const;
    bool isDownstreamShared() const;
    bool isShared() const { return isPaintComponentShared() || isMaskComponentShared(); }
    bool isSharedShaderInput() const { return sharedShaderInput() != nullptr; }
    OrvShaderInput* sharedShaderInput() const;
    bool isTaggedForCrossChannelSharing() const;
    /// The other layers whose paint or mask content is this one's.
    QList<OrvLayer*> getOtherSharers() const;
    /// Sharers of the shared group around this layer.
    QList<OrvLayer*> downstreamSharer() const;
    /// A layer above the target that shares this one's content and mask; null when it cannot stand there.
    OrvLayer* addSharedLayerAfter(OrvSnBaseNode* pTarget, const QString& StreamName, bool Undoable);
    /// Content and mask of its own instead of shared ones.
    Q_INVOKABLE void unshareLayer();

    bool hasLayerCache() const { return isLayerCached(); }
    bool isLayerCached() const;
    void uncacheLayer();
    bool hasCacheUpToHere() const { return isCachedUpToHere(); }
    bool isCachedUpToHere() const;
    bool isDownstreamCached() const;
    bool hasMissingGeoChannels() const { return false; }

    /// Relative cost of evaluating the layer, 0 cheap to 1 (and beyond) dear; see OrvLayerCost.
    double cost() const;
    QString costDescription() const;

    /// The group layer whose stack holds this layer, or null at the top of a channel, mask or adjustment
    /// stack.
    OrvLayer* parentGroup() const;
    /// The stacks in which the layer stands.
    QList<OrvLayerStack*> stacks() const;

Q_SIGNALS:
    void nameChanged(QString Name);
    void enabledAsBoolChanged(bool Enabled);
    void colorChanged(QColor Color);
    /// Also after a mask was added, converted or removed.
    void maskEnabledChanged(bool Enabled);
    /// Also after the adjustment stack was added or removed.
    void adjustmentEnabledChanged(bool Enabled);
    void bakePointStateChanged();
    void missingGeoChannelsRefreshed(QString Channels);
    void proceduralTypeChanged(int Type);
    void cacheStateChanged();
    void selectedChanged(bool Selected, OrvLayer* pLayer);
    /// The managers' signals of the same names, for this layer alone.
    void layerStateRefreshed(OrvLayer* pLayer);
    void nodeEnabledChanged(OrvSnBaseNode* pNode, int Enabled);

protected:
    explicit OrvLayer(OrvSnMergeNode* pBlendNode);

private:
    friend class OrvLayerManager;

    OrvSnMergeNode* m_pBlendNode;
    bool m_Selected = false;
};

Q_DECLARE_METATYPE(OrvLayer*)

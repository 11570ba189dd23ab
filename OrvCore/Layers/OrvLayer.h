#pragma once

#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QString>

class OrvColor;
class OrvImageBuffer;
class OrvImageSet;
class OrvLayerStack;
class OrvShaderInput;
class OrvSnBakePointNode;
class OrvSnBaseNode;
class OrvSnCustomProceduralNode;
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
    /// The node that holds name, lock, visibility, colour and mask: the merge node, or what a layer that stands
    /// in several channels has in common.
    OrvSnBaseNode* commonNode() const;
    bool isMultiChannelLayer() const;
    /// This layer, and itself in the other channels in which it stands.
    QList<OrvLayer*> inAllChannels() const;
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
    OrvSnCustomProceduralNode* customProceduralNode() const;
    OrvSnBaseNode* shaderNode() const;
    OrvSnCustomProceduralNode* maskCustomProceduralNode() const;
    OrvSnBakePointNode* bakePointNode() const;

    bool isPaintableLayer() const { return paintNode() != nullptr; }
    bool isAdjustmentLayer() const { return adjustmentNode() != nullptr; }
    bool isProceduralLayer() const { return proceduralNode() != nullptr; }
    bool isCustomProceduralLayer() const;
    bool isGraphLayer() const { return graphNode() != nullptr; }
    bool isShaderLayer() const { return shaderNode() != nullptr; }
    bool isBakePointLayer() const;
    virtual bool isGroupLayer() const;
    bool hasSecondaryAdjustment() const { return secondaryAdjustmentNode() != nullptr; }
    bool canHaveAdjustmentStack() const;

    bool isVisible() const;
    void setVisible(bool Visible);
    /// Visible as a whole, and not hidden in this channel alone.
    bool isVisibleHere() const;
    /// In this channel alone, for a layer that stands in several; one that is hidden as a whole is shown as a whole.
    void setVisibleHere(bool Visible);
    bool isVisibilityChangeable() const;
    bool isLocked() const;
    void setLocked(bool Locked);
    bool isDownstreamLocked() const;
    void unlockLockedAncestorLayers();
    /// No lock or cache on the layer, in any of its channels, around it, or on a layer that shares its content.
    bool isModifiable() const;
    bool isBlendingModifiable() const;
    bool isBlendingAmountModifiable() const;
    bool isMoveable() const;
    /// Whether the layer, or another one with its content, may stand just above the target: nothing is locked
    /// there, no cycle would come of it, and the stack takes this kind of layer.
    bool canBePlacedAt(const OrvSnBaseNode* pTarget, const OrvLayerStack* pStack) const
    {
        return placementObstacle(pTarget, pStack).isEmpty();
    }
    /// Why it may not, for the user; empty when it may.
    QString placementObstacle(const OrvSnBaseNode* pTarget, const OrvLayerStack* pStack) const;

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
    /// Neither painted nor a stack: an operation that makes pixels feeds the mask.
    bool isMaskProcedural() const;
    bool hasMaskCustomProcedural() const;
    /// A custom procedural, a file or an entry of the shelf, becomes the mask of a layer that has none.
    /// False, with the reason, when that cannot be.
    bool addMaskCustomProcedural(const QString& PathOrKey, QString& Error);
    /// Nothing happens when there is a mask already.
    bool addMaskImageSet(MaskType Type, const OrvColor& Fill);
    bool addMaskImageSet(int Type, const OrvColor& Fill) { return addMaskImageSet(MaskType(Type), Fill); }
    Q_INVOKABLE void addMaskImageSet();
    Q_INVOKABLE void addMaskImageSetAndFillBlack();
    /// The mask shows what the content covers; the content stays as it is.
    Q_INVOKABLE bool addMaskImageSetFromAlpha();
    /// The mask shows what is selected, or a group of selections that the user picks; see
    /// OrvSelectionProvider.
    Q_INVOKABLE bool addMaskImageSetFromSelection();
    Q_INVOKABLE bool addMaskImageSetFromSelectionGroupViaGUI();
    /// Masks of every kind go over the clipboard, between projects too. Pasting replaces the mask that is
    /// there.
    Q_INVOKABLE bool cutMaskToClipboard();
    Q_INVOKABLE bool copyMaskToClipboard();
    Q_INVOKABLE bool pasteMaskFromClipboard();
    /// The old mask becomes the stack's first layer. Null when there is no mask to convert or no change is
    /// allowed.
    Q_INVOKABLE OrvLayerStack* convertMaskToMaskStack();
    /// A stack or a procedural mask becomes an image that can be painted on.
    Q_INVOKABLE bool convertMaskToImageSet();
    /// Of a paintable layer: the mask goes into the alpha of the paint, whether it is enabled or not. An
    /// adjustment stack that is shown goes into the paint with it, for it has seen the paint without the
    /// mask.
    Q_INVOKABLE bool applyMask();
    Q_INVOKABLE void deleteMask();
    void makeMaskComponentCurrent();
    /// Another depth for a mask image, a GL depth code.
    bool convertMask(unsigned Depth);
    /// Another edge length for the mask's images, or for those of the paint; -1 halves it, -2 doubles it.
    /// Images have one frame, and all tiles of a set are of one size.
    bool resizeMaskImageSets(int Frame, int Size, bool AllImages, bool Undoable);
    bool resizeImageSets(int Frame, int Size, bool AllImages, bool Undoable);

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
    /// Of a paintable layer: the adjustments go into the paint as they are shown.
    Q_INVOKABLE bool convertAdjustmentStackToImageSet();
    /// A procedural or a graph becomes an image that can be painted on, for all layers that share it.
    Q_INVOKABLE bool convertPayloadToImageSet();
    /// Of an adjustment layer: a second operation that follows the first.
    Q_INVOKABLE void addSecondaryAdjustmentLayerFromKey(const QString& Key);
    Q_INVOKABLE void removeSecondaryAdjustmentLayer();

    bool isPaintComponentShared() const;
    bool isMaskComponentShared() const;
    bool isDownstreamShared() const;
    bool isShared() const { return isPaintComponentShared() || isMaskComponentShared(); }
    bool isSharedShaderInput() const { return sharedShaderInput() != nullptr; }
    OrvShaderInput* sharedShaderInput() const;
    /// A shader layer whose shader is listed, or shown by other layers too.
    bool isSharedShader() const;
    /// The layer goes, and its shader stands alone from then on. Its node, or null when the layer shows none,
    /// shares it or cannot be edited.
    OrvSnBaseNode* convertShaderLayerToShader();
    bool isTaggedForCrossChannelSharing() const;
    /// The other layers whose paint or mask content is this one's.
    QList<OrvLayer*> getOtherSharers() const;
    /// Sharers of the shared group around this layer.
    QList<OrvLayer*> downstreamSharer() const;
    /// A layer above the target that shares this one's content and mask; null when it cannot stand there.
    OrvLayer* addSharedLayerAfter(OrvSnBaseNode* pTarget, const QString& StreamName, bool Undoable);
    /// As OrvLayerStack::shareLayersAsChannel(), for this layer alone.
    OrvShaderInput* shareLayerAsChannel();
    /// Content and mask of its own instead of shared ones.
    Q_INVOKABLE void unshareLayer();

    bool hasLayerCache() const { return isLayerCached(); }
    bool isLayerCached() const;
    /// Keeps what the layer holds, content and mask, so that nothing in it is computed again; nothing in it
    /// can be edited meanwhile.
    bool cacheLayer();
    void uncacheLayer();
    bool hasCacheUpToHere() const { return isCachedUpToHere(); }
    bool isCachedUpToHere() const;
    bool canCacheUpToHere() const;
    /// Keeps the picture of this layer and all below it in its stack.
    Q_INVOKABLE bool cacheUpToHere();
    Q_INVOKABLE void uncacheUpToHere();
    bool isDownstreamCached() const;

    /// Of a bake point layer: takes what lies below as it is now, or goes back to showing it live.
    Q_INVOKABLE bool bake();
    Q_INVOKABLE bool unbake();
    /// The names of the geometry channels that content or mask need and nothing provides.
    QStringList missingGeoChannels() const;
    bool hasMissingGeoChannels() const { return !missingGeoChannels().isEmpty(); }

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

    /// False, with a word to the user, for a layer that cannot be edited.
    bool checkModifiable() const;
    bool refuse(const QString& Reason) const;
    bool checkTakesMask() const;
    /// A painted mask in one undo step, of one colour where there are no pixels.
    bool addMask(const QString& MacroText, const OrvColor& Fill, const OrvImageBuffer& Pixels);
    /// Null takes the mask away. False, with nothing changed, when the other one would show itself.
    bool replaceMask(OrvSnBaseNode* pMask);
    /// Other paint, of this layer alone, and no adjustment stack above it any more.
    void replacePaint(const OrvImageBuffer& Pixels);
    bool resize(OrvSnBaseNode* pImages, int Size, const QString& MacroText);

    OrvSnMergeNode* m_pBlendNode;
    bool m_Selected = false;
};

Q_DECLARE_METATYPE(OrvLayer*)

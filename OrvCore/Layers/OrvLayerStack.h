#pragma once

#include "OrvCore/Layers/OrvLayerCreateFlags.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QObject>
#include <QtCore/QPointer>

#include <functional>

class OrvColor;
class OrvImageSet;
class OrvLayer;
class OrvLayerShader;
class OrvShaderInput;
class OrvShaderNetwork;
class OrvSnMergeNode;

/// A stack of layers: the view on what is fed into one named input of one node, down to a bottom node. Kinds:
/// channel (OrvShaderInput), mask stack, adjustment stack, the inside of a group. It stores nothing of the
/// document; the list of its layers is derived from the graph and dropped whenever a connection changes.
/// OrvLayerManager owns it.
class ORVCORE_EXPORT OrvLayerStack : public QObject {
    Q_OBJECT

public:
    /// A layer stands in one channel or in several; without the last flag it is left out when it is hidden.
    enum RetrieveFlag { OrdinaryLayers = 1, MultiChannelLayers = 2, DisabledLayers = 4, AllLayers = 7 };
    /// Locked: a lock or cache forbids changing the images. Shared: another channel shows them too.
    enum ImageSetStatus { FreeImageSets, LockedImageSets, SharedImageSets };

    ~OrvLayerStack() override;

    /// The stack fed into that input, or null when the input carries none. The same object for the same pair
    /// as long as it lives, whatever feeds the input meanwhile.
    static OrvLayerStack* getLayerStack(OrvSnBaseNode* pNode, const QString& InputName);

    OrvSnBaseNode* node() const { return m_pNode; }
    QString targetInputName() const { return m_InputName; }
    OrvSnBaseNode* topNode() const;
    /// The node below the last layer, or null when the chain ends in nothing.
    OrvSnBaseNode* bottomNode() const;
    virtual QString name() const;
    OrvShaderNetwork* network() const;
    bool isAdjustmentStack() const;
    bool isMaskStack() const;
    bool isGroupStack() const;
    /// Its layers are shaders and groups of such: the stack of a material channel, or of a group in one.
    bool holdsShaders() const;
    /// A mask stack, or a stack inside one: its layers are data, whatever the channel holds.
    bool isWithinMask() const;
    bool isEmpty() const;

    /// Layers of the top level, topmost first.
    QList<OrvLayer*> layerList(int RetrieveFlags = AllLayers) const;
    /// The images of paint and masks on all levels; those that are locked and shared count as locked.
    QMap<ImageSetStatus, QList<OrvImageSet*>> allImageSetsByStatus() const;
    /// Layers of all levels, groups before what they hold.
    QList<OrvLayer*> allLayers() const;
    QList<OrvLayer*> selectedLayers() const;
    /// Of layers on any level, those that no other one of them holds; in the stack's order.
    QList<OrvLayer*> outermost(const QList<OrvLayer*>& Layers) const;
    /// The channels that contain the stack; itself, when it is one.
    QList<OrvShaderInput*> parentShaderInputs() const;
    /// The channel whose size, depth and colour space new layers take: the first of parentShaderInputs(), or
    /// null.
    OrvShaderInput* ownerShaderInput() const;
    /// The shader's input that the channel around the stack feeds; empty while it feeds none.
    QString currentStream() const;
    /// The stream that a merge node serves; empty for the plain one.
    QString currentStreamName(const OrvSnBaseNode* pMergeNode = nullptr) const;
    /// Where a new layer goes: the node above which it is put; null when no change is allowed there, for the
    /// reason that the text is set to. Gives a chain that ends in nothing its bottom.
    OrvSnBaseNode* placeFor(OrvLayerCreateFlags Flags, const OrvLayer* pBelow, QString* pObstacle = nullptr);
    /// Selection and current layer after layers were made; the first becomes current.
    void present(const QList<OrvLayer*>& Layers, OrvLayerCreateFlags Flags);

    // Creation. Null when the place does not allow it (locked, cached) or, where the operation can fail
    // otherwise, with a text. Each is one undo step named after what it does.
    OrvLayer* createPaintableLayer(
        OrvLayerCreateFlags Flags, OrvLayer* pBelow, const QString& Name, const OrvColor& Fill);
    OrvLayer* createPaintableLayer(const OrvColor& Fill, OrvLayerCreateFlags Flags,
        OrvLayer* pBelow = nullptr, const QString& Name = QString());
    OrvLayer* createAdjustmentLayer(const QString& Key, OrvLayerCreateFlags Flags, OrvLayer* pBelow = nullptr,
        const QString& Name = QString());
    OrvLayer* createProceduralLayer(const QString& Key, OrvLayerCreateFlags Flags, OrvLayer* pBelow = nullptr,
        const QString& Name = QString());
    /// A layer that shows the shader, in a material channel's stack only. A listed shader stays listed: the
    /// layer shares it. Null also when the shader is fed by what it would stand in.
    OrvLayer* createShaderLayer(OrvLayerShader* pShader, OrvLayerCreateFlags Flags,
        OrvLayer* pBelow = nullptr, const QString& Name = QString());
    /// From a file, or an entry of the shelf, above a node of this stack or of a group in it; without a node
    /// the flags choose the place.
    OrvLayer* createCustomProceduralLayer(
        const QString& PathOrKey, OrvSnBaseNode* pTarget, OrvLayerCreateFlags Flags, QString& Error);
    OrvLayer* createGraphLayer(
        OrvLayerCreateFlags Flags, OrvLayer* pBelow = nullptr, const QString& Name = QString());
    /// Groups the layers given, or the selected ones; null without a text: nothing to group.
    OrvLayer* groupLayers(QString& Error, OrvLayerCreateFlags Flags, const QList<OrvLayer*>& Layers = {},
        OrvLayer* pBelow = nullptr, const QString& Name = QString());
    QList<OrvLayer*> pasteFromClipboard(OrvLayerCreateFlags Flags, QString& Error);
    QList<OrvLayer*> duplicateLayers();

    Q_INVOKABLE OrvLayer* createGroupLayer(OrvLayerCreateFlags Flags);
    /// It shows what lies below until that is baked.
    Q_INVOKABLE OrvLayer* createBakePointLayer(OrvLayerCreateFlags Flags);
    /// An empty list means the selected layers.
    Q_INVOKABLE void deleteLayers(const QList<OrvLayer*>& Layers = {});
    Q_INVOKABLE OrvLayer* mergeLayers(OrvLayerCreateFlags Flags = 30);
    Q_INVOKABLE void ungroupLayers();
    /// The selected layers; see OrvLayer::cacheLayer().
    Q_INVOKABLE void cacheLayers();
    Q_INVOKABLE void uncacheLayers();
    Q_INVOKABLE void copyToClipboard();
    Q_INVOKABLE void cutToClipboard();
    /// A second layer above the given one that shares its content and mask. Null for an adjustment layer,
    /// whose content depends on where it stands.
    OrvLayer* shareLayer(OrvLayer* pLayer, OrvLayerCreateFlags Flags);
    /// A new channel, stored as the one around this stack, whose layers share content and mask of the given
    /// ones; adjustments, which depend on their place, are copied. Null when that is not possible.
    OrvShaderInput* shareLayersAsChannel(const QList<OrvLayer*>& Layers);

    /// Whether layers may be added, removed or moved here: no lock and no cache forbids it.
    bool isStructureModifiable() const;

    /// Part of an edit that took layers away, undoable: whoever listens is told of those that are gone.
    static void tellRemoved(const QList<OrvLayer*>& Layers);
    /// Part of such an edit: another layer becomes current in place of one of these.
    void leaveCurrentLayer(const QList<OrvLayer*>& Leaving);
    /// Some of the layers look different without what lies below them.
    static bool dependsOnWhatIsBelow(const QList<OrvLayer*>& Layers);

protected:
    OrvLayerStack(OrvSnBaseNode* pNode, const QString& InputName);

private:
    friend class OrvLayerManager;

    struct Chain {
        quint64 Revision = 0;
        QList<OrvLayer*> Layers;
        QPointer<OrvSnBaseNode> pBottom;
    };
    const Chain& chain() const;

    using ContentFactory = std::function<OrvSnBaseNode*(OrvSnBaseNode* pTarget, const QString& Name)>;
    /// What stands against it is told (OrvLayerManager::refused), or handed to a caller who tells it.
    OrvLayer* addLayer(const QString& MacroText, OrvLayerCreateFlags Flags, OrvLayer* pBelow,
        const QString& Name, const QString& DefaultName, const ContentFactory& MakeContent,
        QString* pError = nullptr);
    OrvLayer* addOperationLayer(const QString& MacroText, const QString& Key, bool Procedural,
        OrvLayerCreateFlags Flags, OrvLayer* pBelow, const QString& Name);
    /// Puts layers of one group, topmost first, into a new group above the target. Null when that would close
    /// a cycle.
    OrvSnMergeNode* gather(const QList<OrvLayer*>& Layers, OrvSnBaseNode* pTarget, const QString& Name);
    bool canBeGathered(const QList<OrvLayer*>& Layers, QString& Error) const;
    /// Puts the layers of a group in its place, in this channel, topmost first. False for a cycle.
    static bool freeLayersOf(const OrvLayer* pGroup, QList<OrvLayer*>& Freed);
    /// The layer to be current when these go.
    OrvLayer* survivorOf(const QList<OrvLayer*>& Layers) const;

    QPointer<OrvSnBaseNode> m_pNode;
    QString m_InputName;
    mutable Chain m_Chain;
};

Q_DECLARE_METATYPE(OrvLayerStack*)

#pragma once

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Network/OrvNodeNames.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QHash>
#include <QtCore/QObject>
#include <QtCore/QPair>
#include <QtCore/QPointer>
#include <QtCore/QSet>

#include <memory>

class OrvLayerNotices;
class OrvShaderNetwork;
class OrvSnMergeNode;

/// Makes and keeps the layer and stack objects that show the graph, and knows what is current: the layer of
/// each network and channel, the stack, the component that is painted on. Palettes listen to it; what they
/// hear of single layers comes from OrvLayerNotices.
class ORVCORE_EXPORT OrvLayerManager : public QObject {
    Q_OBJECT

public:
    static OrvLayerManager& instance();

    /// The current layer of a network; null: of the current network.
    OrvLayer* currentLayer(OrvShaderNetwork* pNetwork = nullptr) const;
    /// The layer becomes its channel's current one too, and the current component follows: what can be
    /// painted on is the layer's paint, else its mask. Undoable only where that is said.
    void setCurrentLayer(OrvShaderNetwork* pNetwork, OrvLayer* pLayer, bool Undoable = false);
    OrvLayerStack* currentLayerStack() const { return m_pCurrentStack; }
    void setCurrentLayerStack(OrvLayerStack* pStack);
    /// The current stack when the network was left last, while there is one; else null.
    OrvLayerStack* stackLeftIn(const OrvShaderNetwork* pNetwork) const;
    /// The image node that is painted on, or null. Changing it is an undo step when a macro is open.
    OrvSnBaseNode* currentComponent() const { return m_pCurrentComponent; }
    void setCurrentComponent(OrvSnBaseNode* pNode);

    /// The layer of a merge node, null for another node. The object is made if there is none and that is
    /// asked.
    OrvLayer* getLayer(OrvSnBaseNode* pNode, bool Create = true);
    OrvLayerStack* getLayerStack(OrvSnBaseNode* pNode, const QString& InputName);

    bool inBatchLayerStateRefresh() const;
    /// The layers that are shown by a merge node, or by what several of them have in common; those that were
    /// made.
    static QList<OrvLayer*> layersOf(OrvSnBaseNode* pNode);
    /// A name that no layer of the network has: the given one, or the same with a number.
    QString uniqueLayerName(const OrvShaderNetwork* pNetwork, const QString& Base) const
    {
        return m_Names.unique(pNetwork, Base);
    }

    /// A blend node outside every network, for blend controls without a layer.
    OrvSnBaseNode* dummyBlendNode();

Q_SIGNALS:
    void currentLayerChanged(OrvLayer* pLayer);
    void currentLayerStackChanged(OrvLayerStack* pStack);
    void currentComponentChanged(OrvSnBaseNode* pNew, OrvSnBaseNode* pOld);
    void layerStateRefreshed(OrvLayer* pLayer);
    void batchLayerStatesRefreshed();
    void layersRemoved(const QSet<OrvLayer*>& Layers);
    /// Content or order of some stacks changed; at the end of an edit.
    void structureRefreshed();
    /// Why an operation on layers that somebody asked for was not done; for a status line.
    void refused(QString Reason);

private Q_SLOTS:
    void onNodeRegistered(OrvShaderNetwork* pNetwork, OrvSnBaseNode* pNode);
    void onNodeDeregistered(OrvShaderNetwork* pNetwork, OrvSnBaseNode* pNode);
    void onCurrentNetworkChanged(OrvShaderNetwork* pNew, OrvShaderNetwork* pOld);
    void onEditFinished();

private:
    friend class OrvCurrentComponentEdit;

    OrvLayerManager();
    ~OrvLayerManager() override;
    void applyCurrentComponent(OrvSnBaseNode* pNode);
    void noteStructureChange() { m_StructureChanged = true; }
    void dropStacksOf(const OrvSnBaseNode* pNode);
    void dropStacksThatNoLongerHold();
    void drop(OrvLayerStack* pStack);
    static bool carriesStack(const OrvSnBaseNode* pNode, const QString& InputName);

    using StackKey = QPair<const OrvSnBaseNode*, QString>;
    QHash<StackKey, OrvLayerStack*> m_Stacks;
    QHash<const OrvShaderNetwork*, QPointer<OrvLayer>> m_CurrentLayers;
    QPointer<OrvLayerStack> m_pCurrentStack;
    QPointer<OrvSnBaseNode> m_pCurrentComponent;
    /// What was current in a network when another became the current one.
    struct LeftBehind {
        QPointer<OrvLayerStack> pStack;
        QPointer<OrvSnBaseNode> pComponent;
    };
    QHash<const OrvShaderNetwork*, LeftBehind> m_Left;
    OrvNodeNames m_Names;
    std::unique_ptr<OrvLayerNotices> m_pNotices;
    OrvSnMergeNode* m_pDummyBlendNode = nullptr;
    bool m_StructureChanged = false;
};

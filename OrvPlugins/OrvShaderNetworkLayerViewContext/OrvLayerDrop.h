#pragma once

#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDropResult.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QVector>

#include <functional>

class OrvLayer;
class OrvLayerStack;
class OrvSnBaseNode;

/// What dropping layers, channels, shaders or masks on a layer stack comes to: made for one drop, asked first
/// whether it would be refused, then carried out. It knows nothing of views; trees and buttons find out where
/// the drop lands.
class OrvLayerDrop {
    Q_DECLARE_TR_FUNCTIONS(OrvLayerDrop)

public:
    /// The nodes come to stand just above the target, in its stack: none for a mask that will be a stack
    /// first. Those dragged out of a stack keep the order in which it shows them, and what a dragged group
    /// holds stays inside it.
    OrvLayerDrop(const QVector<OrvSnBaseNode*>& Nodes, Qt::DropAction Action,
        const OrvLayerStack* pSourceStack, OrvSnBaseNode* pTarget, OrvLayerStack* pStack);

    /// Done when nothing is known to stand against it (OrvLayerDropCheck).
    OrvLayerDropResult check() const;
    /// Belongs into a macro that is cancelled unless all is done; see inUndoStep().
    OrvLayerDropResult carryOut();

    /// Does the work as one undo step, and takes it back and tells the user when it fails.
    static bool inUndoStep(const std::function<OrvLayerDropResult()>& Work);

private:
    bool isInPlace() const;

    /// Many at once, which is much faster than one after the other.
    OrvLayerDropResult moveLayers(const QVector<OrvSnBaseNode*>& Nodes);
    OrvLayerDropResult dropNode(OrvSnBaseNode* pNode);
    OrvLayerDropResult dropLayer(OrvLayer* pLayer);
    OrvLayerDropResult dropChannel(OrvSnBaseNode* pNode);
    OrvLayerDropResult dropShader(OrvSnBaseNode* pNode);
    OrvLayerDropResult dropMask(OrvSnBaseNode* pNode);
    OrvLayerDropResult shareMask(const OrvSnBaseNode* pNode);
    /// A new layer above the target that shows the node.
    bool addLayer(OrvSnBaseNode* pContent, const QString& Name);
    QString streamName() const;

    QVector<OrvSnBaseNode*> m_Nodes;
    Qt::DropAction m_Action;
    OrvSnBaseNode* m_pTarget;
    OrvLayerStack* m_pStack;
};

#pragma once

#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDropResult.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QVector>

class OrvLayer;
class OrvLayerStack;
class OrvSnBaseNode;

/// What stands against a drop of layers, channels, shaders or masks on a layer stack, as far as it can be
/// told without a change. A drop makes one for each time that it is asked; it changes nothing.
class OrvLayerDropCheck {
    Q_DECLARE_TR_FUNCTIONS(OrvLayerDrop)

public:
    OrvLayerDropCheck(const QVector<OrvSnBaseNode*>& Nodes, Qt::DropAction Action, OrvSnBaseNode* pTarget,
        OrvLayerStack* pStack);

    /// Done when nothing is known to stand against it.
    OrvLayerDropResult result() const;

    // Refusals that the drop itself can run into, too. They are told in these words alone, in every language.
    static OrvLayerDropResult cyclicLayer(const QString& Name);
    static OrvLayerDropResult cyclicChannel(const QString& Name);
    static OrvLayerDropResult unusableShader(const QString& Name);

private:
    OrvLayerDropResult checkNetwork(OrvSnBaseNode* pNode) const;
    OrvLayerDropResult checkNode(OrvSnBaseNode* pNode) const;
    OrvLayerDropResult checkLayer(OrvLayer* pLayer) const;
    /// Of a layer without shading results.
    OrvLayerDropResult checkPlainCopy(const OrvLayer* pLayer) const;
    OrvLayerDropResult checkChannel(OrvSnBaseNode* pNode) const;
    OrvLayerDropResult checkShader(const OrvSnBaseNode* pNode) const;
    OrvLayerDropResult checkMask(const OrvSnBaseNode* pNode) const;
    OrvLayerDropResult checkMoves() const;

    QVector<OrvSnBaseNode*> m_Nodes;
    Qt::DropAction m_Action;
    OrvSnBaseNode* m_pTarget;
    OrvLayerStack* m_pStack;
    bool m_WithinMaterial; ///< all channels around the target hold shading results
};

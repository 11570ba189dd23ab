#include "OrvCore/Channels/OrvChannelFlattening.h"

#include "OrvCore/Channels/OrvChannelSpace.h"
#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvSnShaderInputNode.h"
#include "OrvCore/Layers/OrvChainEditing.h"
#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Layers/OrvEditObstacle.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerRendering.h"
#include "OrvCore/Network/OrvSnBottomTransparencyNode.h"
#include "OrvCore/Network/OrvSnChannelInputNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include "OrvDdi/Image/OrvColor.h"

#include <QtCore/QCoreApplication>

#include <algorithm>

namespace {

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvChannelFlattening", pText);
}

OrvChannelFlattening::Question& question()
{
    static OrvChannelFlattening::Question Installed;
    return Installed;
}

bool refuse(const QString& Reason)
{
    Q_EMIT OrvLayerManager::instance().refused(Reason);
    return false;
}

/// What the user is to know of; empty when nothing is lost but the layers' independence.
QString warning(const QString& Name, const QList<OrvLayer*>& Layers)
{
    const bool Hidden = std::any_of(
        Layers.begin(), Layers.end(), [](const OrvLayer* pLayer) { return !pLayer->isVisible(); });
    QStringList Obstacles;
    for (const OrvLayer* pLayer : Layers)
        Obstacles.append(OrvEditObstacle::ofSharers(pLayer));
    const QString Kept = OrvEditObstacle::several(Obstacles);
    QStringList Warnings;
    if (Hidden)
        Warnings.append(tr("'%1' contains hidden layers, which will be lost.").arg(Name));
    if (!Kept.isEmpty())
        Warnings.append(tr("'%1' contains layers that are kept from being edited: %2.").arg(Name, Kept));
    return Warnings.join(QLatin1Char('\n'));
}

OrvSnBaseNode* bottomOf(OrvShaderInput* pChannel)
{
    // A chain may also end in something that has pixels; they are in the new layer.
    OrvSnBaseNode* pBottom = pChannel->bottomNode();
    if (qobject_cast<OrvSnBottomTransparencyNode*>(pBottom))
        return pBottom;
    return OrvChainEditing::addNode(pChannel->network(),
        std::unique_ptr<OrvSnBaseNode>(std::make_unique<OrvSnBottomTransparencyNode>()), QString(),
        pChannel->node(), -2, 0);
}

} // namespace

void OrvChannelFlattening::setQuestion(const Question& Ask)
{
    question() = Ask;
}

bool OrvChannelFlattening::flatten(OrvShaderInput* pChannel)
{
    if (!pChannel || !pChannel->network())
        return false;
    const QString Name = pChannel->name();
    if (!pChannel->isModifiable())
        return refuse(OrvEditObstacle::of(pChannel));
    if (pChannel->isMaterialStack())
        return refuse(tr("'%1' holds materials, which are more than paint").arg(Name));
    if (pChannel->containsMultiChannelLayerOfShaderModel(nullptr))
        return refuse(tr("'%1' contains multi-channel layers; convert them to standard layers first").arg(Name));
    const QList<OrvLayer*> Layers = pChannel->allLayers();
    if (Layers.isEmpty())
        return refuse(tr("'%1' has no layers").arg(Name));
    const QString Warning = warning(Name, Layers);
    if (!Warning.isEmpty() && !(question() && question()(tr("Flatten Channel"), Warning)))
        return false;

    OrvSnBaseNode* pNode = pChannel->node();
    const OrvUdimLayout Layout = pChannel->layout();
    const OrvPixelFormat Format = pChannel->paintFormat();
    const OrvImageBuffer Pixels = OrvLayerRendering::renderInput(
        pNode, OrvSnNames::Input, Layout, Format, OrvChannelSpace::storedIn(pChannel));
    if (Pixels.isNull())
        return false;

    const OrvUndoManager::AutoMacro Macro(tr("Flatten Channel : %1").arg(pChannel->path()));
    OrvShaderNetwork* pNetwork = pChannel->network();
    OrvSnBaseNode* pFormerTop = pChannel->topNode();
    OrvSnBaseNode* pBottom = bottomOf(pChannel);
    OrvSnMergeNode* pMerge
        = OrvChainEditing::addNode(pNetwork, std::make_unique<OrvSnMergeNode>(), Name, pNode, -1, 0);
    OrvSnBaseNode* pPaint = OrvChainEditing::addImageNode(
        pNetwork, Layout, Format, OrvColor::clear(), Name, pMerge, 0, 1, Pixels);
    pMerge->connectInput(OrvSnNames::Over, pPaint);
    pMerge->connectInput(OrvSnNames::Base, pBottom);

    OrvLayerManager& Manager = OrvLayerManager::instance();
    // It may also stand in the mask of one of the layers.
    const OrvLayer* pCurrent = Manager.currentLayer(pNetwork);
    const bool HeldCurrent = pCurrent && OrvChainTargets::channel(pCurrent->blendNode()) == pNode;
    pNode->connectInput(OrvSnNames::Input, pMerge);
    OrvLayer* pLayer = Manager.getLayer(pMerge, true);
    if (HeldCurrent)
        Manager.setCurrentLayer(pNetwork, pLayer, true);
    OrvChainEditing::removeUnused(pFormerTop);
    OrvLayerStack::tellRemoved(Layers);
    return true;
}

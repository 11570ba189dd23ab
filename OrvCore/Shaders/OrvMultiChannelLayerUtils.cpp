#include "OrvCore/Shaders/OrvMultiChannelLayerUtils.h"

#include "OrvCore/Channels/OrvImageSettings.h"
#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Channels/OrvSnShaderInputNode.h"
#include "OrvCore/Layers/OrvChainEditing.h"
#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Layers/OrvEditObstacle.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvStreamPlaces.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnBottomTransparencyNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Network/OrvSnMultiChannelMergeNode.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCore/Shaders/OrvShadingModel.h"
#include "OrvCore/Shelf/OrvMaterialDescription.h"
#include "OrvCore/Shelf/OrvMaterialStreams.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include <QtCore/QCoreApplication>

namespace {

constexpr int CreationFlags = OrvLayerAboveCurrent | OrvLayerMakeCurrent | OrvLayerSelectAlone;

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvMultiChannelLayerUtils", pText);
}

OrvMultiChannelLayerUtils::ShaderChooser& shaderChooser()
{
    static OrvMultiChannelLayerUtils::ShaderChooser Chooser;
    return Chooser;
}

struct Stream {
    QString Name;
    OrvShaderInput* pChannel = nullptr;
};

/// The channels that feed wanted inputs of the shader, each as the first one that it feeds.
template <class Predicate>
QVector<Stream> streamsOf(const OrvLayerShader& Shader, Predicate IsWanted)
{
    QVector<Stream> Streams;
    for (const QString& Name : Shader.inputNames()) {
        OrvShaderInput* pChannel = Shader.inputShaderInput(Name);
        const bool Known = std::any_of(Streams.begin(), Streams.end(),
            [pChannel](const Stream& One) { return One.pChannel == pChannel; });
        if (pChannel && !Known && IsWanted(Name))
            Streams.append({Name, pChannel});
    }
    return Streams;
}

/// What a new layer is to be.
struct Plan {
    QString Name, Tag;
    QVector<Stream> Streams;
    /// A node without a network, or null with a reason.
    std::function<std::unique_ptr<OrvSnBaseNode>(const Stream& Stream, QString& Error)> MakeContent;
};

/// One that stands in the stack which the user sees, when there is one.
OrvLayer* shownOne(const QVector<OrvSnMergeNode*>& Merges, const OrvShaderInput* pShownChannel)
{
    OrvLayerManager& Manager = OrvLayerManager::instance();
    for (OrvSnMergeNode* pMerge : Merges) {
        if (pShownChannel && OrvChainTargets::channel(pMerge) == pShownChannel->node())
            return Manager.getLayer(pMerge, true);
    }
    return Manager.getLayer(Merges.first(), true);
}

/// Null, with the obstacle, where no layer may be put.
OrvSnBaseNode* placeOf(
    const Stream& Stream, const OrvShaderInput* pPlaceChannel, OrvSnBaseNode* pPlace, QString& Obstacle)
{
    if (Stream.pChannel != pPlaceChannel)
        return OrvStreamPlaces::alike(pPlace, Stream.pChannel, &Obstacle);
    Obstacle = OrvEditObstacle::at(pPlace);
    return Obstacle.isEmpty() ? pPlace : nullptr;
}

/// Within the caller's macro.
QVector<OrvSnMergeNode*> makeStreams(
    const Plan& Plan, OrvSnMultiChannelMergeNode* pCommon, OrvSnBaseNode* pPlace, QString& Error)
{
    OrvShaderNetwork* pNetwork = pCommon->network();
    const OrvShaderInput* pPlaceChannel
        = OrvShaderInputUtils::getShaderInput(OrvChainTargets::channel(pPlace));
    QVector<OrvSnMergeNode*> Merges;
    for (const Stream& One : Plan.Streams) {
        QString Obstacle;
        OrvSnBaseNode* pThere = placeOf(One, pPlaceChannel, pPlace, Obstacle);
        if (!pThere) {
            Error = tr("No layer can be added to '%1': %2").arg(One.pChannel->name(), Obstacle);
            return {};
        }
        std::unique_ptr<OrvSnBaseNode> pMade = Plan.MakeContent(One, Error);
        if (!pMade)
            return {};
        const QString ContentName = pMade->name();
        OrvSnBaseNode* pContent
            = OrvChainEditing::addNode<OrvSnBaseNode>(pNetwork, std::move(pMade), ContentName, pThere, 1, 1);
        OrvSnMergeNode* pMerge
            = OrvChainEditing::addNode(pNetwork, std::make_unique<OrvSnMergeNode>(), One.Name, pThere, 1, 0);
        if (!pCommon->adopt(pMerge, One.Name) || !pMerge->connectInput(OrvSnNames::Over, pContent)
            || !OrvChainEditing::insertAbove(pMerge, pThere)) {
            Error = tr("No layer can be added to '%1'").arg(One.pChannel->name());
            return {};
        }
        Merges.append(pMerge);
    }
    return Merges;
}

OrvLayer* createLayer(const Plan& Plan, const OrvLayerShader& Shader, OrvSnBaseNode* pTarget,
    const QString& MacroText, QString& Error)
{
    OrvShaderNetwork* pNetwork = Shader.node()->network();
    OrvUndoManager::AutoMacro Macro(MacroText);
    OrvShaderInput* pShown = OrvShaderInputManager::instance().currentShaderInput(pNetwork);
    const auto isPlace = [pShown](const Stream& One) { return One.pChannel == pShown; };
    OrvSnBaseNode* pPlace = pTarget;
    // A mask has no place for it.
    if (pTarget && OrvChainTargets::isWithinMask(OrvChainTargets::of(pTarget).Targets.value(0)))
        pPlace = nullptr;
    if (!pPlace && std::any_of(Plan.Streams.begin(), Plan.Streams.end(), isPlace))
        pPlace = pShown->placeFor(CreationFlags, nullptr);
    auto pNode = std::make_unique<OrvSnMultiChannelMergeNode>(Shader.shaderModel()->key());
    pNode->addTag(Plan.Tag);
    OrvSnMultiChannelMergeNode* pCommon = OrvChainEditing::addNode(pNetwork, std::move(pNode),
        OrvLayerManager::instance().uniqueLayerName(pNetwork, Plan.Name), pPlace, 2, -1);
    const QVector<OrvSnMergeNode*> Merges = makeStreams(Plan, pCommon, pPlace, Error);
    if (Merges.isEmpty()) {
        Macro.cancel();
        return nullptr;
    }
    OrvLayer* pLayer = shownOne(Merges, pShown);
    const QList<OrvLayerStack*> Stacks = pLayer->stacks();
    if (!Stacks.isEmpty())
        Stacks.first()->present({pLayer}, CreationFlags);
    return pLayer;
}

/// The macro of creation needs a shader that is still there, of a known model.
bool checkShader(const OrvLayerShader* pShader, QString& Error)
{
    Error.clear();
    if (pShader && pShader->node() && pShader->node()->network() && pShader->shaderModel())
        return true;
    OrvDebug("OrvMultiChannelLayerUtils", __LINE__, QStringLiteral("pShader is NULL"), false, false);
    Error = tr("There is no shader whose channels the layer could stand in");
    return false;
}

} // namespace

namespace OrvMultiChannelLayerUtils {

bool DownstreamShaders::visit(OrvSnBaseNode* pNode)
{
    if (pNode->hasTag(OrvSnNames::ShaderTag))
        m_ShaderNodes.append(pNode);
    return true;
}

QList<OrvLayerShader*> shadersForMultiChannelLayers(const OrvLayerStack* pStack)
{
    QList<OrvLayerShader*> Shaders;
    OrvShaderInput* pOwner = pStack ? pStack->ownerShaderInput() : nullptr;
    if (!pOwner)
        return Shaders;
    DownstreamShaders Found;
    OrvShaderNetworkUtils::OrvNodeWalker::walk(pOwner->node(), Found);
    const QList<OrvLayerShader*> OfUser
        = OrvLayerShaderManager::instance().getUserLayerShaders(pStack->network());
    for (OrvLayerShader* pShader : OfUser) {
        if (Found.shaderNodes().contains(pShader->node()) && pShader->shaderModel())
            Shaders.append(pShader);
    }
    return Shaders;
}

void setShaderChooser(const ShaderChooser& Chooser)
{
    shaderChooser() = Chooser;
}

OrvLayerShader* shaderForMultiChannelLayerCreationWithUserInput(const OrvLayerStack* pStack)
{
    const QList<OrvLayerShader*> Shaders
        = shadersForMultiChannelLayers(pStack ? pStack : OrvLayerManager::instance().currentLayerStack());
    if (Shaders.size() > 1 && shaderChooser())
        return shaderChooser()(Shaders);
    return Shaders.isEmpty() ? nullptr : Shaders.first();
}

OrvLayer* createMaterialLayer(
    const QString& Path, const OrvLayerShader* pShader, OrvSnBaseNode* pTarget, QString& Error)
{
    OrvMaterialDescription Material;
    if (!checkShader(pShader, Error) || !OrvMaterialDescription::read(Path, Material, Error))
        return nullptr;
    const auto contentFor = [&Material](const QString& InputName) {
        return std::find_if(Material.Streams.begin(), Material.Streams.end(),
            [&InputName](
                const OrvMaterialDescription::Stream& Given) { return Given.InputName == InputName; });
    };
    Plan Plan;
    Plan.Name = Material.Name;
    Plan.Tag = OrvSnNames::MaterialTag;
    Plan.Streams = streamsOf(*pShader, [&](const QString& InputName) {
        return contentFor(InputName) != Material.Streams.end()
            && !pShader->inputShaderInput(InputName)->isMaterialStack();
    });
    if (Plan.Streams.isEmpty()) {
        Error = tr("'%1' has nothing for the channels of '%2'").arg(Material.Name, pShader->name());
        return nullptr;
    }
    Plan.MakeContent = [&](const Stream& One, QString& Reason) {
        return OrvMaterialStreams::makeNode(*contentFor(One.Name), OrvImageSettings::ofChannel(One.pChannel),
            One.pChannel->isScalar(), Reason);
    };
    return createLayer(Plan, *pShader, pTarget, tr("Add Material Layer"), Error);
}

OrvLayer* createMultiChannelGroupLayer(const OrvLayerShader* pShader, OrvSnBaseNode* pTarget, QString& Error)
{
    if (!checkShader(pShader, Error))
        return nullptr;
    Plan Plan;
    Plan.Name = tr("Group");
    Plan.Tag = OrvSnNames::GroupTag;
    Plan.Streams = streamsOf(*pShader, [](const QString&) { return true; });
    if (Plan.Streams.isEmpty()) {
        Error = tr("'%1' has no channels").arg(pShader->name());
        return nullptr;
    }
    Plan.MakeContent
        = [](const Stream&, QString&) { return std::make_unique<OrvSnBottomTransparencyNode>(); };
    return createLayer(Plan, *pShader, pTarget, tr("Add Multi-Channel Group"), Error);
}

void assertOnMultiChannelLayer(const OrvLayer* pLayer)
{
    if (pLayer && pLayer->isMultiChannelLayer())
        OrvDebug("OrvMultiChannelLayerUtils", __LINE__,
            QStringLiteral("'%1' stands in several channels").arg(pLayer->name()), false, false);
}

} // namespace OrvMultiChannelLayerUtils

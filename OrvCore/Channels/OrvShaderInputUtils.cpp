#include "OrvCore/Channels/OrvShaderInputUtils.h"

#include "OrvCore/Channels/OrvChannelSnapshot.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Channels/OrvSnShaderInputNode.h"
#include "OrvCore/Layers/OrvChainEditing.h"
#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Layers/OrvEditObstacle.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvSnapshotClipboard.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnChannelInputNode.h"
#include "OrvCore/Project/OrvGeoEntity.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include "OrvDdi/Image/OrvImageResampling.h"
#include "OrvDdi/Image/OrvImageSet.h"

#include <QtCore/QCoreApplication>

namespace {

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvShaderInputUtils", pText);
}

/// The tiles of the object that the network belongs to.
QVector<int> tilesOf(const OrvShaderNetwork* pNetwork)
{
    const QList<OrvShaderInput*> Others
        = OrvShaderInputManager::instance().getShaderInputsFromNetwork(pNetwork);
    const OrvGeoEntity* pEntity = pNetwork->geoEntity();
    return !Others.isEmpty() ? Others.first()->layout().tiles()
        : pEntity            ? pEntity->udimTiles()
                             : QVector<int>{1001};
}

bool refuse(const QString& Reason)
{
    Q_EMIT OrvLayerManager::instance().refused(Reason);
    return false;
}

bool canBeCopied(const OrvShaderInput* pInput)
{
    if (!pInput || !pInput->network())
        return false;
    return !pInput->containsMultiChannelLayerOfShaderModel(nullptr)
        || refuse(tr("'%1' contains multi-channel layers and cannot be copied").arg(pInput->name()));
}

const OrvSnapshotClipboard<OrvChannelSnapshot>& clipboard()
{
    static const OrvSnapshotClipboard<OrvChannelSnapshot> Channels(
        QStringLiteral("application/x-orvi-channel-clipboard"));
    return Channels;
}

} // namespace

namespace OrvShaderInputUtils {

OrvShaderInput* getShaderInput(const OrvSnBaseNode* pNode)
{
    const auto* pChannel = qobject_cast<const OrvSnShaderInputNode*>(pNode);
    return pChannel && pChannel->hasTag(OrvSnNames::ShaderInputTag) ? pChannel->shaderInput() : nullptr;
}

OrvShaderInput* find(const OrvSnBaseNode* pNode, const QString& InputName)
{
    return InputName.isEmpty() || InputName == OrvSnNames::Input ? getShaderInput(pNode) : nullptr;
}

QList<OrvShaderInput*> findParents(const OrvSnBaseNode* pNode, const QString&)
{
    QList<OrvShaderInput*> Channels;
    for (const OrvSnBaseNode* pContainer : OrvChainTargets::containers(pNode)) {
        if (OrvShaderInput* pChannel = getShaderInput(pContainer))
            Channels.append(pChannel);
    }
    return Channels;
}

QString generateUniqueName(const OrvShaderNetwork* pNetwork, const QString& Base)
{
    return OrvShaderInputManager::instance().uniqueName(pNetwork, Base);
}

OrvShaderInput* create(OrvShaderNetwork* pNetwork, const QString& Name, const QSize& Size, GLenum Depth,
    const OrvColorSpaceConfig* pConfig, bool Scalar)
{
    const bool KnownDepth = Depth == GL_UNSIGNED_BYTE || Depth == GL_HALF_FLOAT || Depth == GL_FLOAT;
    if (!pNetwork || !KnownDepth)
        return nullptr;
    const OrvUndoManager::AutoMacro Macro(tr("Add Channel"));
    auto pNode = std::make_unique<OrvSnShaderInputNode>();
    const OrvGeoEntity* pEntity = pNetwork->geoEntity();
    const QSize TileSize = Size.isEmpty() ? pNode->layout().tileSize() : Size;
    pNode->setLayoutOfImages(pEntity && pEntity->isPtex() ? OrvUdimLayout(pEntity->faceResolution())
                                                          : OrvUdimLayout(TileSize, tilesOf(pNetwork)));
    pNode->setDepth(int(Depth));
    pNode->setScalar(Scalar || (pConfig && pConfig->scalar()));
    if (pConfig) {
        pNode->setUserAttributeValue(
            OrvSnShaderInputNode::ColorSpaceAttribute, pConfig->toJson().toVariantMap());
    }
    return OrvChannelSnapshot::addChannel(
        pNetwork, std::move(pNode), Name.isEmpty() ? generateUniqueName(pNetwork, tr("Channel")) : Name)
        ->shaderInput();
}

OrvShaderInput* createShaderInput(bool Material)
{
    OrvShaderNetwork* pNetwork = OrvShaderNetworkManager::instance().currentShaderNetwork();
    if (!pNetwork)
        return nullptr;
    OrvUndoManager::AutoMacro Macro(Material ? tr("Add Material Channel") : tr("Add Channel"));
    // As large and as deep as the channel that is worked on.
    const OrvShaderInput* pModel = OrvShaderInputManager::instance().currentShaderInput(pNetwork);
    OrvShaderInput* pChannel
        = create(pNetwork, generateUniqueName(pNetwork, Material ? tr("Material") : tr("Channel")),
            pModel ? pModel->imageSetSize() : QSize(), pModel ? pModel->imageSetDepth() : GL_UNSIGNED_BYTE);
    if (pChannel && Material)
        pChannel->node()->addTag(OrvSnNames::MaterialShaderInputTag);
    return pChannel;
}

OrvShaderInput* createDuplicate(OrvShaderInput* pInput, const QString& Name)
{
    if (!canBeCopied(pInput))
        return nullptr;
    OrvShaderNetwork* pNetwork = pInput->network();
    OrvUndoManager::AutoMacro Macro(tr("Duplicate Channel : %1").arg(pInput->name()));
    OrvShaderInput* pCopy
        = OrvChannelSnapshot::capture(pInput, OrvChainEditing::Channels::AreLimits)
              .instantiate(pNetwork,
                  Name.isEmpty() ? generateUniqueName(pNetwork, tr("%1 Copy").arg(pInput->name())) : Name,
                  QVector<int>());
    if (!pCopy)
        Macro.cancel();
    return pCopy;
}

bool copyToClipboard(OrvShaderInput* pInput)
{
    if (!canBeCopied(pInput))
        return false;
    clipboard().put(OrvChannelSnapshot::capture(pInput, OrvChainEditing::Channels::AreFollowed));
    return true;
}

bool cutToClipboard(OrvShaderInput* pInput, int Strategy)
{
    if (!canBeCopied(pInput))
        return false;
    if (!pInput->isModifiable())
        return refuse(OrvEditObstacle::of(pInput));
    const OrvChannelSnapshot Snapshot
        = OrvChannelSnapshot::capture(pInput, OrvChainEditing::Channels::AreFollowed);
    const OrvUndoManager::AutoMacro Macro(tr("Cut Channel : %1").arg(pInput->path()));
    if (!OrvShaderInputManager::instance().destroy(pInput, Strategy))
        return false;
    clipboard().put(Snapshot);
    return true;
}

OrvShaderInput* pasteFromClipboard(QString& Error, OrvShaderNetwork* pNetwork)
{
    Error.clear();
    OrvChannelSnapshot Snapshot;
    if (!pNetwork || !clipboard().holds() || !clipboard().get(Snapshot, Error))
        return nullptr;
    OrvUndoManager::AutoMacro Macro(tr("Paste Channel : %1").arg(Snapshot.name()));
    OrvShaderInput* pChannel = Snapshot.instantiate(
        pNetwork, generateUniqueName(pNetwork, Snapshot.name()), tilesOf(pNetwork));
    if (!pChannel) {
        Macro.cancel();
        Error = tr("The channel on the clipboard cannot be pasted: it shares a channel that would then show "
                   "itself");
        return nullptr;
    }
    OrvShaderInputManager::instance().makeShaderInputCurrent(pChannel, true);
    return pChannel;
}

OrvSnBaseNode* duplicateImageSetNode(
    const OrvSnBaseNode* pNode, OrvShaderNetwork* pNetwork, const OrvUdimLayout& Layout)
{
    const auto* pImages = qobject_cast<const OrvSnChannelInputNode*>(pNode);
    if (!pImages || !pNetwork)
        return nullptr;
    const OrvImageSet* pSource = pImages->imageSet();
    const OrvUdimLayout CopyLayout = Layout.isValid() ? Layout : pSource->layout();
    OrvImageBuffer Pixels = pSource->snapshot();
    if (!Pixels.isNull() && CopyLayout != pSource->layout())
        Pixels = OrvImageResampling::fitted(Pixels, pSource->layout(), CopyLayout);
    return OrvChainEditing::addImageNode(
        pNetwork, CopyLayout, pSource->format(), pSource->fillColor(), pNode->name(), pNode, 0, 1, Pixels);
}

} // namespace OrvShaderInputUtils

#include "OrvCore/Channels/OrvShaderInputUtils.h"

#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Channels/OrvSnShaderInputNode.h"
#include "OrvCore/Layers/OrvChainEditing.h"
#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerSnapshot.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnBottomTransparencyNode.h"
#include "OrvCore/Network/OrvSnChannelInputNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Project/OrvGeoEntity.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include "OrvDdi/Image/OrvImageResampling.h"
#include "OrvDdi/Image/OrvImageSet.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QSet>

namespace {

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvShaderInputUtils", pText);
}

/// A channel node and the bottom of its stack.
OrvSnShaderInputNode* addChannel(
    OrvShaderNetwork* pNetwork, std::unique_ptr<OrvSnShaderInputNode> pNode, const QString& Name)
{
    OrvSnShaderInputNode* pChannel
        = OrvChainEditing::addNode(pNetwork, std::move(pNode), Name, nullptr, 0, 0);
    OrvSnBaseNode* pBottom = OrvChainEditing::addNode(
        pNetwork, std::make_unique<OrvSnBottomTransparencyNode>(), QString(), pChannel, -1, 0);
    pChannel->connectInput(OrvSnNames::Input, pBottom);
    return pChannel;
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
    QSet<QString> Taken;
    for (const OrvShaderInput* pChannel :
        OrvShaderInputManager::instance().getShaderInputsFromNetwork(pNetwork))
        Taken.insert(pChannel->name());
    QString Name = Base;
    for (int Number = 2; Taken.contains(Name); ++Number)
        Name = Base + QLatin1Char(' ') + QString::number(Number);
    return Name;
}

OrvShaderInput* create(OrvShaderNetwork* pNetwork, const QString& Name, const QSize& Size, GLenum Depth,
    const OrvColorSpaceConfig* pConfig, bool Scalar)
{
    const bool KnownDepth = Depth == GL_UNSIGNED_BYTE || Depth == GL_HALF_FLOAT || Depth == GL_FLOAT;
    if (!pNetwork || !KnownDepth)
        return nullptr;
    const OrvUndoManager::AutoMacro Macro(tr("Add Channel"));
    auto pNode = std::make_unique<OrvSnShaderInputNode>();
    const QList<OrvShaderInput*> Others
        = OrvShaderInputManager::instance().getShaderInputsFromNetwork(pNetwork);
    const OrvGeoEntity* pEntity = pNetwork->geoEntity();
    const QVector<int> Tiles = !Others.isEmpty() ? Others.first()->layout().tiles()
        : pEntity                                ? pEntity->udimTiles()
                                                 : QVector<int>{1001};
    pNode->setLayoutOfImages(OrvUdimLayout(Size.isEmpty() ? pNode->layout().tileSize() : Size, Tiles));
    pNode->setDepth(int(Depth));
    pNode->setScalar(Scalar || (pConfig && pConfig->scalar()));
    if (pConfig) {
        pNode->setUserAttributeValue(
            OrvSnShaderInputNode::ColorSpaceAttribute, pConfig->toJson().toVariantMap());
    }
    return addChannel(
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
    OrvShaderNetwork* pNetwork = pInput ? pInput->network() : nullptr;
    if (!pNetwork)
        return nullptr;
    OrvUndoManager::AutoMacro Macro(tr("Duplicate Channel : %1").arg(pInput->name()));
    auto pNode = std::make_unique<OrvSnShaderInputNode>();
    for (const OrvCustomAttribute& Attribute : pInput->node()->ownUserAttributes())
        pNode->createUserAttribute(Attribute);
    for (const QString& Tag : pInput->node()->tags())
        pNode->addTag(Tag);
    OrvSnShaderInputNode* pCopy = addChannel(pNetwork, std::move(pNode),
        Name.isEmpty() ? generateUniqueName(pNetwork, tr("%1 Copy").arg(pInput->name())) : Name);

    QVector<OrvSnMergeNode*> Merges;
    for (const OrvLayer* pLayer : pInput->layerList())
        Merges.append(pLayer->blendNode());
    const QVector<OrvSnMergeNode*> Copies
        = OrvLayerSnapshot::capture(Merges, OrvChainEditing::Channels::AreLimits)
              .instantiate(pNetwork, OrvUdimLayout());
    OrvSnBaseNode* pTarget = pCopy->preferredInputNode();
    for (auto Merge = Copies.rbegin(); Merge != Copies.rend(); ++Merge) {
        if (!OrvChainEditing::insertAbove(*Merge, pTarget)) {
            Macro.cancel();
            return nullptr;
        }
        pTarget = *Merge;
    }
    return pCopy->shaderInput();
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

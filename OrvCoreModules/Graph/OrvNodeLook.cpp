#include "OrvCoreModules/Graph/OrvNodeLook.h"

#include "OrvCoreModules/Window/OrvIcon.h"

#include "OrvCore/Channels/OrvSnShaderInputNode.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Network/OrvSnBottomTransparencyNode.h"
#include "OrvCore/Network/OrvSnChannelInputNode.h"
#include "OrvCore/Network/OrvSnGraphNode.h"
#include "OrvCore/Network/OrvSnGraphOutputNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Network/OrvSnMultiChannelMergeNode.h"
#include "OrvCore/Network/OrvSnOperationNode.h"
#include "OrvCore/Network/OrvSnPassNode.h"
#include "OrvCore/Network/OrvSnUnknownNode.h"
#include "OrvCore/Shelf/OrvSnCustomProceduralNode.h"

#include "OrvDdi/Image/OrvImageSet.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QHash>

namespace {

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvNodeLook", pText);
}

/// Icons are made once: a graph has thousands of nodes of a dozen kinds.
QIcon icon(const char* pName)
{
    static QHash<QByteArray, QIcon> s_Icons;
    auto Found = s_Icons.find(pName);
    if (Found == s_Icons.end()) {
        const QString File = QString::fromLatin1(pName) + QStringLiteral(".png");
        Found = s_Icons.insert(pName, OrvIcon::createIconFromFilename(File));
    }
    return Found.value();
}

QString sizeText(const QSize& Size)
{
    return QStringLiteral("%1 \u00d7 %2").arg(Size.width()).arg(Size.height());
}

void lookLike(OrvNodeLook& Look, QRgb Color, const char* pIcon)
{
    Look.Color = QColor(Color);
    if (pIcon)
        Look.Icon = icon(pIcon);
}

void addMergeLook(OrvNodeLook& Look, OrvSnMergeNode* pMerge)
{
    const bool Group = pMerge->holdsGroup();
    lookLike(Look, 0x3f5f86,
        !Group                        ? "Layers"
            : pMerge->isPassThrough() ? "LayerGroupPassThrough"
                                      : "Folder");
    const double Amount = pMerge->userAttribute(OrvMergeAttributes::Amount).value().toDouble();
    Look.Details << pMerge->userAttribute(OrvMergeAttributes::BlendMode).value().toString();
    Look.Details << QStringLiteral("%1 %").arg(qRound(Amount * 100.0));
    if (const OrvLayer* pLayer = OrvLayerManager::instance().getLayer(pMerge, true)) {
        Look.Tag = pLayer->color();
        Look.Cached |= pLayer->isLayerCached();
    }
}

void addKindLook(OrvNodeLook& Look, OrvSnBaseNode* pNode)
{
    if (auto* pMerge = qobject_cast<OrvSnMergeNode*>(pNode)) {
        addMergeLook(Look, pMerge);
    } else if (const auto* pOperation = qobject_cast<const OrvSnOperationNode*>(pNode)) {
        if (pOperation->isProcedural())
            lookLike(Look, 0x8a6136, "AddNoise");
        else
            lookLike(Look, 0x6a5190, "ColorCurves");
    } else if (const auto* pImages = qobject_cast<const OrvSnChannelInputNode*>(pNode)) {
        lookLike(Look, 0x48784a, "Image");
        if (const OrvImageSet* pSet = pImages->imageSet())
            Look.Details << sizeText(pSet->layout().tileSize()) << pSet->imageSetDepthString();
    } else if (const auto* pChannel = qobject_cast<const OrvSnShaderInputNode*>(pNode)) {
        lookLike(Look, 0x96474a, "Channel");
        Look.Details << sizeText(pChannel->layout().tileSize()) << pChannel->imageSetDepthString();
    } else if (const auto* pCommon = qobject_cast<const OrvSnMultiChannelMergeNode*>(pNode)) {
        lookLike(Look, 0x3f5f86, pCommon->isMaterial() ? "Material" : "Multi_Channel_Group");
        Look.Details << pCommon->streams().join(QStringLiteral(", "));
        if (const OrvLayer* pLayer = OrvLayerManager::instance().getLayer(pCommon->mergeNodes().value(0), true))
            Look.Tag = pLayer->color();
    } else if (pNode->hasTag(OrvSnNames::ShaderTag)) {
        lookLike(Look, 0x8b4a7c, "Shader");
    } else if (qobject_cast<const OrvSnGraphNode*>(pNode)) {
        lookLike(Look, 0x84702c, "NodeGraph");
    } else if (qobject_cast<const OrvSnCustomProceduralNode*>(pNode)) {
        lookLike(Look, 0x8a6136, "AddNoise");
    } else if (qobject_cast<const OrvSnGraphOutputNode*>(pNode)) {
        lookLike(Look, 0x96474a, "Export");
    } else if (qobject_cast<const OrvSnPassNode*>(pNode)) {
        lookLike(Look, 0x3d6b6b, "AddAdjustmentStack");
    } else if (qobject_cast<const OrvSnBottomTransparencyNode*>(pNode)) {
        lookLike(Look, 0x565656, "Clear");
    } else {
        lookLike(Look, 0x565656, qobject_cast<const OrvSnUnknownNode*>(pNode) ? "Lookup" : nullptr);
    }
}

/// A node knows no outputs but those that its readers name.
QStringList outputsOf(const OrvSnBaseNode* pNode)
{
    QStringList Names;
    for (const OrvSnBaseNode::Consumer& Reader : pNode->consumers()) {
        const QString Name = Reader.pNode->inputOutputName(Reader.InputName);
        if (!Names.contains(Name))
            Names.append(Name);
    }
    if (Names.isEmpty())
        Names.append(QString());
    std::sort(Names.begin(), Names.end());
    return Names;
}

} // namespace

QString OrvNodeLook::titleOf(const OrvSnBaseNode* pNode)
{
    return pNode->name().isEmpty() ? pNode->typeLabel() : pNode->name();
}

OrvNodeLook OrvNodeLook::of(OrvSnBaseNode* pNode)
{
    OrvNodeLook Look;
    Look.Title = titleOf(pNode);
    Look.TypeLabel = pNode->typeLabel();
    for (const OrvSnBaseNode::Input& Input : pNode->inputs())
        Look.Inputs.append(Input.Name);
    Look.Outputs = outputsOf(pNode);
    Look.Enabled = pNode->enabledAsBool();
    Look.Locked = pNode->locked() || pNode->blocked();
    Look.Cached = pNode->cacheActive() == OrvSnCacheActive;
    Look.HoldsNetwork = pNode->nestedNetwork() != nullptr;
    addKindLook(Look, pNode);
    if (Look.HoldsNetwork)
        Look.Details << tr("Double-click to enter");
    if (Look.Details.isEmpty() && Look.Inputs.size() < 2 && Look.TypeLabel != Look.Title)
        Look.Details << Look.TypeLabel;
    return Look;
}

int OrvNodeLook::rowCount() const
{
    const int DetailEnd = Details.isEmpty() ? 0 : firstDetailRow() + Details.size();
    return qMax(qMax(Inputs.size(), Outputs.size()), qMax(DetailEnd, 1));
}

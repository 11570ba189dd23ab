#include "Orvi/OrvTileExtension.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Channels/OrvSnShaderInputNode.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnChannelInputNode.h"
#include "OrvCore/Network/OrvSnOperationNode.h"
#include "OrvCore/Project/OrvGeoEntity.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include "OrvDdi/Image/OrvImageResampling.h"
#include "OrvDdi/Image/OrvImageSet.h"

#include <QtCore/QCoreApplication>
#include <QtWidgets/QUndoCommand>

#include <algorithm>

namespace {

/// The object's own list of tiles, which channels made later follow.
class EntityTilesEdit : public QUndoCommand {
public:
    EntityTilesEdit(OrvGeoEntity* pEntity, const QVector<int>& Tiles)
        : m_pEntity(pEntity)
        , m_Before(pEntity->udimTiles())
        , m_After(Tiles)
    {
    }
    void undo() override { m_pEntity->setUdimTiles(m_Before); }
    void redo() override { m_pEntity->setUdimTiles(m_After); }

private:
    OrvGeoEntity* m_pEntity;
    QVector<int> m_Before, m_After;
};

OrvUdimLayout extended(const OrvUdimLayout& Layout, const QVector<int>& Tiles)
{
    return OrvUdimLayout(Layout.tileSize(), Layout.tiles() + Tiles);
}

void extendImages(OrvSnChannelInputNode* pNode, const QVector<int>& Tiles)
{
    const OrvImageSet& Images = *pNode->imageSet();
    const OrvUdimLayout Before = Images.layout(), After = extended(Before, Tiles);
    if (Before == After)
        return;
    OrvImageBuffer Pixels = OrvImageResampling::fitted(Images.snapshot(), Before, After);
    if (!Pixels.isNull() && Images.fillColor() != OrvColor::clear()) {
        for (const int Tile : After.tiles()) {
            if (!Before.tiles().contains(Tile))
                Pixels.fill(Images.fillColor(), After.tileRect(Tile));
        }
    }
    pNode->replaceImages(After, Images.format(), Images.fillColor(), Pixels);
}

/// Procedurals cover the plane that they were made for.
void extendProcedural(OrvSnBaseNode* pNode, const QVector<QPair<QSize, QSize>>& Planes)
{
    const QSize Size = pNode->userAttribute(OrvSnOperationNode::ExtentAttribute).value().toSize();
    for (const auto& Plane : Planes) {
        if (Plane.first == Size)
            return pNode->setUserAttributeValue(OrvSnOperationNode::ExtentAttribute, Plane.second);
    }
}

void extendNodes(
    const OrvShaderNetwork* pNetwork, const QVector<int>& Tiles, const QVector<QPair<QSize, QSize>>& Planes)
{
    for (OrvSnBaseNode* pNode : pNetwork->nodes()) {
        auto* pImages = qobject_cast<OrvSnChannelInputNode*>(pNode);
        if (pImages && pImages->imageSet())
            extendImages(pImages, Tiles);
        else if (pNode->exists(OrvSnOperationNode::ExtentAttribute))
            extendProcedural(pNode, Planes);
        if (const OrvShaderNetwork* pNested = pNode->nestedNetwork())
            extendNodes(pNested, Tiles, Planes);
    }
}

} // namespace

void OrvTileExtension::extend(OrvGeoEntity* pEntity, const QVector<int>& Tiles)
{
    const auto hasTiles = [&Tiles](const OrvUdimLayout& Layout) {
        return std::all_of(
            Tiles.begin(), Tiles.end(), [&Layout](int Tile) { return Layout.tiles().contains(Tile); });
    };
    const QVector<int> All = OrvUdimLayout(QSize(1, 1), pEntity->udimTiles() + Tiles).tiles();
    const QList<OrvShaderInput*> Channels
        = OrvShaderInputManager::instance().getShaderInputsFromNetwork(pEntity->shaderNetwork());
    const bool Complete = std::all_of(Channels.begin(), Channels.end(),
        [&hasTiles](const OrvShaderInput* pChannel) { return hasTiles(pChannel->layout()); });
    if (Complete && All == pEntity->udimTiles())
        return;
    const OrvUndoManager::AutoMacro Macro(QCoreApplication::translate("OrvTileExtension", "Add Tiles"));
    OrvUndoManager::instance().perform(std::make_unique<EntityTilesEdit>(pEntity, All));
    QVector<QPair<QSize, QSize>> Planes;
    for (const OrvShaderInput* pChannel : Channels) {
        const OrvUdimLayout Before = pChannel->layout(), After = extended(Before, Tiles);
        Planes.append({Before.extent().size(), After.extent().size()});
        pChannel->channelNode()->setLayoutOfImages(After);
    }
    extendNodes(pEntity->shaderNetwork(), Tiles, Planes);
}

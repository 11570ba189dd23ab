#pragma once

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvDdi/Image/OrvColor.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerTreeView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewItemRowWidget.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewModel.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QStringList>
#include <QtGui/QPixmap>

/// A document with layers in a line or two, and what a layer tree shows of it.
namespace LayersFixture {

inline OrvShaderNetwork* network()
{
    return OrvShaderNetworkManager::instance().currentShaderNetwork();
}

inline OrvShaderInput* addChannel(const QString& Name)
{
    OrvShaderInput* pChannel = OrvShaderInputUtils::create(network(), Name, QSize(64, 64), GL_UNSIGNED_BYTE);
    OrvShaderInputManager::instance().makeShaderInputCurrent(pChannel, true);
    return pChannel;
}

/// On top of the stack; current layer and selection stay.
inline OrvLayer* addLayer(OrvLayerStack* pStack, const QString& Name)
{
    return pStack->createPaintableLayer(OrvLayerCreateFlags(), nullptr, Name, OrvColor());
}

/// Topmost first, as rows are read.
inline QList<OrvLayer*> addLayers(OrvLayerStack* pStack, const QStringList& Names)
{
    QList<OrvLayer*> Layers;
    for (auto Name = Names.rbegin(); Name != Names.rend(); ++Name)
        Layers.prepend(addLayer(pStack, *Name));
    return Layers;
}

inline OrvLayer* group(OrvLayerStack* pStack, const QList<OrvLayer*>& Layers, const QString& Name)
{
    QString Error;
    return pStack->groupLayers(Error, OrvLayerCreateFlags(), Layers, nullptr, Name);
}

/// A type of layer whose menu path begins like that.
inline QString anyKey(const char* pPrefix)
{
    for (const QString& Key : OrvShaderNetworkManager::instance().layerPathKeys()) {
        if (Key.startsWith(QLatin1String(pPrefix)))
            return Key;
    }
    return {};
}

/// "A B(C D)": names in order, what a group holds in parentheses.
inline QString stackText(const OrvLayerStack* pStack)
{
    QStringList Texts;
    for (const OrvLayer* pLayer : pStack->layerList()) {
        const OrvLayerStack* pInside = OrvLayerStreamUtils::isLayerGroup(pLayer, pStack)
            ? OrvLayerStreamUtils::groupStack(pLayer)
            : nullptr;
        Texts.append(
            pInside ? QStringLiteral("%1(%2)").arg(pLayer->name(), stackText(pInside)) : pLayer->name());
    }
    return Texts.join(QLatin1Char(' '));
}

inline QString rowText(const OrvLayerView* pView, const QModelIndex& Parent = QModelIndex())
{
    QStringList Texts;
    for (int Row = 0; Row < pView->model()->rowCount(Parent); ++Row) {
        const QModelIndex Index = pView->model()->index(Row, 0, Parent);
        const OrvLayer* pLayer = pView->layerFromIndex(Index);
        const QString Name = pLayer ? pLayer->name() : QStringLiteral("!");
        const bool IsGroup = pLayer && OrvLayerStreamUtils::isLayerGroup(pLayer, pView->layerStack());
        Texts.append(IsGroup ? QStringLiteral("%1(%2)").arg(Name, rowText(pView, Index)) : Name);
    }
    return Texts.join(QLatin1Char(' '));
}

/// The row of the layer, the first one of a layer that has several.
inline OrvLayerViewItemRowWidget* rowOf(const OrvLayerView* pView, const OrvLayer* pLayer)
{
    return pView->rowWidget(pView->model()->indexFromLayer(pLayer));
}

/// The rows show the stack as it is now. They get their contents when they are painted.
inline void showRows(OrvLayerView* pView)
{
    pView->refresh();
    pView->treeView()->grab();
    QCoreApplication::processEvents();
}

/// What was put off until the window is idle has been done.
inline void settle(const OrvLayerView* pView)
{
    for (int Round = 0; Round < 3; ++Round)
        QCoreApplication::processEvents();
    pView->treeView()->repaint();
}

} // namespace LayersFixture

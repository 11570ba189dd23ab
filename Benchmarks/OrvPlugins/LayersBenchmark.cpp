#include "Benchmarks/OrvPlugins/LayersBenchmark.h"

#include "Benchmarks/OrvPlugins/FloorTree.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvDdi/Image/OrvColor.h"

#include <QtCore/QCoreApplication>

namespace {
const QSize PaletteSize(360, 800);
}

void LayersBenchmark::settle()
{
    for (int Round = 0; Round < 3; ++Round)
        QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

OrvShaderInput* LayersBenchmark::makeChannel(int LayerCount, const QString& LayerName, Shape Shaped)
{
    const OrvUndoManager::NoRecording NoRecording;
    OrvShaderInput* pChannel
        = OrvShaderInputUtils::create(OrvShaderNetworkManager::instance().currentShaderNetwork(),
            QStringLiteral("Channel %1").arg(LayerCount), QSize(256, 256), GL_UNSIGNED_BYTE);
    QList<OrvLayer*> Members;
    for (int Index = 0; Index < LayerCount; ++Index) {
        if (Shaped == Shape::Grouped && Index % 10 == 9) {
            QString Error;
            pChannel->groupLayers(
                Error, OrvLayerCreateFlags(), Members, nullptr, QStringLiteral("Group %1").arg(Index));
            Members.clear();
        } else {
            Members.append(pChannel->createPaintableLayer(
                OrvLayerCreateFlags(), nullptr, LayerName.arg(Index), OrvColor()));
        }
    }
    return pChannel;
}

OrvShaderInput* LayersBenchmark::channelOf(int LayerCount)
{
    static QHash<int, OrvShaderInput*> s_Channels;
    OrvShaderInput*& pChannel = s_Channels[LayerCount];
    if (!pChannel)
        pChannel = makeChannel(LayerCount);
    OrvShaderInputManager::instance().makeShaderInputCurrent(pChannel, true);
    settle();
    return pChannel;
}

LayersBenchmark::Palette::Palette(OrvShaderInput* pChannel)
    : m_View(nullptr, 0)
{
    m_View.resize(PaletteSize);
    m_View.show();
    settle();
    m_View.setLayerStack(pChannel);
}

void LayersBenchmark::Palette::refresh()
{
    m_View.refresh();
    settle();
}

std::unique_ptr<FloorTree> LayersBenchmark::makeFloor()
{
    auto pTree = std::make_unique<FloorTree>();
    pTree->resize(PaletteSize);
    pTree->show();
    settle();
    return pTree;
}

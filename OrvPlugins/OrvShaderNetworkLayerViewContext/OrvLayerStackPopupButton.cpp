#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerStackPopupButton.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCoreModules/Window/OrvPaletteManager.h"
#include "OrvCoreModules/Window/OrvPaletteSidebar.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDragPayload.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDragRefusal.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerMaskDrop.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewItemRowWidget.h"

#include <QtCore/QMimeData>
#include <QtGui/QDragEnterEvent>

namespace {
constexpr int HoverDelay = 500; // ms
}

OrvLayerStackPopupButton::OrvLayerStackPopupButton(QWidget* pParent)
    : QToolButton(pParent)
{
    setObjectName(QStringLiteral("LayerStackPopupButton"));
    setAutoRaise(true);
    setFocusPolicy(Qt::NoFocus);
    setAcceptDrops(true);
}

void OrvLayerStackPopupButton::popup(OrvLayerStack* pStack)
{
    const OrvPaletteSidebar* pSidebar = OrvPaletteManager::instance().sidebar();
    OrvLayerViewContextManager::instance().openLayerStackPalette(
        pStack, pSidebar && pSidebar->paletteOpenMode() == OrvPaletteSidebar::Open);
}

void OrvLayerStackPopupButton::dragEnterEvent(QDragEnterEvent* pEvent)
{
    if (!m_PopupStack || !pEvent->mimeData()->hasFormat(OrvLayerDragPayload::mimeType()))
        return;
    m_HoverTimer.start(HoverDelay, this);
    pEvent->accept();
}

void OrvLayerStackPopupButton::dragMoveEvent(QDragMoveEvent* pEvent)
{
    OrvLayerMaskDrop::dragOver(maskedLayer(), pEvent);
}

void OrvLayerStackPopupButton::dragLeaveEvent(QDragLeaveEvent*)
{
    OrvLayerDragRefusal::leave();
    m_HoverTimer.stop();
}

void OrvLayerStackPopupButton::dropEvent(QDropEvent* pEvent)
{
    m_HoverTimer.stop();
    OrvLayerMaskDrop::drop(maskedLayer(), pEvent);
}

OrvLayer* OrvLayerStackPopupButton::maskedLayer() const
{
    const auto* pRow = qobject_cast<const OrvLayerViewItemRowWidget*>(parentWidget());
    OrvLayer* pLayer = pRow ? pRow->layer() : nullptr;
    return pLayer && m_PopupStack && pLayer->maskStack() == m_PopupStack ? pLayer : nullptr;
}

void OrvLayerStackPopupButton::timerEvent(QTimerEvent* pEvent)
{
    if (pEvent->timerId() != m_HoverTimer.timerId()) {
        QToolButton::timerEvent(pEvent);
        return;
    }
    m_HoverTimer.stop();
    if (m_PopupStack)
        popup(m_PopupStack);
}

#include "moc_OrvLayerStackPopupButton.cpp"

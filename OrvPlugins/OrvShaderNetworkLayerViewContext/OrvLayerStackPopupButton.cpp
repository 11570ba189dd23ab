#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerStackPopupButton.h"

#include "OrvCoreModules/Window/OrvPaletteManager.h"
#include "OrvCoreModules/Window/OrvPaletteSidebar.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDragPayload.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextManager.h"

#include <QtCore/QMimeData>
#include <QtGui/QDragEnterEvent>

namespace {
constexpr int HoverDelay = 500; // ms
}

OrvLayerStackPopupButton::OrvLayerStackPopupButton(QWidget* pParent)
    : QToolButton(pParent)
{
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
    pEvent->ignore();
}

void OrvLayerStackPopupButton::dragLeaveEvent(QDragLeaveEvent*)
{
    m_HoverTimer.stop();
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

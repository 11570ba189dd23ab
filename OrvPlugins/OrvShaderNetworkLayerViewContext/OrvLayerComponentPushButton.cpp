#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerComponentPushButton.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCoreModules/Menus/OrvShortcutSequence.h"
#include "OrvDdi/Image/OrvImageSet.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDragPayload.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDragRefusal.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerMaskDrop.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerRowIcons.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerThumbnail.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerThumbnails.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewItemRowWidget.h"

#include <QtCore/QMimeData>
#include <QtGui/QDropEvent>

namespace {

const QString PlainStyle = QStringLiteral("QPushButton:flat { border: none; }");
const QString HighlightStyle
    = QStringLiteral("QPushButton:flat { background-color: lightgrey; border: none; }");

} // namespace

OrvLayerComponentPushButton::OrvLayerComponentPushButton(QWidget* pParent)
    : OrvDraggablePushButton(pParent)
{
    setFlat(true);
    setFocusPolicy(Qt::NoFocus);
    setStyleSheet(PlainStyle);
}

QString OrvLayerComponentPushButton::dragHint(const OrvLayer* pLayer)
{
    const QString Share = OrvShortcutSequence::toUserFriendlyString(QStringLiteral("Ctrl+Shift"));
    const QString Copy = OrvShortcutSequence::toUserFriendlyString(QStringLiteral("Ctrl+Alt"));
    const QString Hint = tr("Use Shift (or %1) and left-mouse drag to share layers.\n")
        + tr("Use Alt (or %2) and left-mouse drag to copy layers.\nUse left-mouse drag to move layers.\n\n");
    const QString Note = pLayer->isTaggedForCrossChannelSharing()
        ? tr("Note that layers can also be moved, copied and shared\nbetween the stacks of different "
             "channels.\n")
        : tr("Note that layers can also be moved and copied\nbetween the stacks of different channels.\n");
    return Hint.arg(Share, Copy) + Note;
}

void OrvLayerComponentPushButton::setComponentIcon(const QIcon& Icon)
{
    m_ComponentIcon = Icon;
    showIcon();
}

void OrvLayerComponentPushButton::setImageSet(OrvImageSet* pImageSet)
{
    if (m_ImageSet == pImageSet)
        return;
    m_ImageSet = pImageSet;
    // Another palette may go on showing it.
    if (m_pThumbnail)
        m_pThumbnail->disconnect(this);
    m_pThumbnail = OrvLayerThumbnails::instance().thumbnail(pImageSet);
    if (m_pThumbnail)
        connect(m_pThumbnail.get(), SIGNAL(changed()), this, SLOT(showIcon()));
    showIcon();
}

void OrvLayerComponentPushButton::setHighlighted(bool Highlighted)
{
    // Setting even the same sheet would polish the button anew.
    if (m_Highlighted == Highlighted)
        return;
    m_Highlighted = Highlighted;
    setStyleSheet(Highlighted ? HighlightStyle : PlainStyle);
    showIcon();
}

void OrvLayerComponentPushButton::showIcon()
{
    // A picture is seen on any ground, and darkening it would show other colours.
    if (m_pThumbnail && !m_pThumbnail->icon().isNull()) {
        setIcon(m_pThumbnail->icon());
        return;
    }
    setIcon(m_Highlighted ? OrvLayerRowIcons::darkened(m_ComponentIcon, this) : m_ComponentIcon);
}

QMimeData* OrvLayerComponentPushButton::mimeData() const
{
    if (!m_ComponentNode) {
        OrvDebug(
            "OrvLayerViewItemRowWidget", __LINE__, QStringLiteral("m_ComponentNode is NULL"), false, false);
        return nullptr;
    }
    QMimeData* pMimeData = new QMimeData;
    OrvLayerDragPayload::write(*pMimeData, {m_ComponentNode->uuidString()});
    return pMimeData;
}

OrvLayer* OrvLayerComponentPushButton::maskedLayer() const
{
    const auto* pRow = qobject_cast<OrvLayerViewItemRowWidget*>(parentWidget());
    OrvLayer* pLayer = pRow ? pRow->layer() : nullptr;
    return pLayer && pLayer->hasMask() && pLayer->maskNode() == m_ComponentNode ? pLayer : nullptr;
}

void OrvLayerComponentPushButton::dragEnterEvent(QDragEnterEvent* pEvent)
{
    // What is dragged onto another component is dragged onto the row.
    if (maskedLayer() && pEvent->mimeData()->hasFormat(OrvLayerDragPayload::mimeType()))
        pEvent->accept();
    else
        pEvent->ignore();
}

void OrvLayerComponentPushButton::dragMoveEvent(QDragMoveEvent* pEvent)
{
    OrvLayerMaskDrop::dragOver(maskedLayer(), pEvent);
}

void OrvLayerComponentPushButton::dragLeaveEvent(QDragLeaveEvent* pEvent)
{
    OrvLayerDragRefusal::leave();
    OrvDraggablePushButton::dragLeaveEvent(pEvent);
}

void OrvLayerComponentPushButton::dropEvent(QDropEvent* pEvent)
{
    OrvDraggablePushButton::dropEvent(pEvent);
    OrvLayerMaskDrop::drop(maskedLayer(), pEvent);
}

#include "moc_OrvLayerComponentPushButton.cpp"

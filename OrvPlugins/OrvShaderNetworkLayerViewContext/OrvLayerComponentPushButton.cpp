#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerComponentPushButton.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCoreModules/Menus/OrvShortcutSequence.h"
#include "OrvDdi/Image/OrvImageSet.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDragPayload.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDrop.h"
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
    const OrvLayer* pLayer = maskedLayer();
    const QVector<OrvSnBaseNode*> Nodes = OrvLayerDragPayload::read(pEvent->mimeData());
    const Qt::DropAction Action = OrvLayerDragPayload::actionFromModifiers(pEvent->keyboardModifiers());
    const bool Droppable = pLayer && pLayer->isModifiable() && !Nodes.contains(m_ComponentNode)
        && OrvLayerDrop(Nodes, Action, OrvLayerDragPayload::readStack(pEvent->mimeData()), m_ComponentNode,
            pLayer->maskStack())
               .check()
               .isDone();
    pEvent->setDropAction(Droppable ? Action : Qt::IgnoreAction);
    pEvent->setAccepted(Droppable);
}

void OrvLayerComponentPushButton::dropEvent(QDropEvent* pEvent)
{
    OrvDraggablePushButton::dropEvent(pEvent);
    // Told of a move, the view that the rows come from would take them away.
    pEvent->setDropAction(Qt::CopyAction);
    OrvLayer* pLayer = maskedLayer();
    const QVector<OrvSnBaseNode*> Nodes = OrvLayerDragPayload::read(pEvent->mimeData());
    if (!pLayer || Nodes.isEmpty() || Nodes.contains(m_ComponentNode))
        return;
    const Qt::DropAction Action = OrvLayerDragPayload::actionFromModifiers(pEvent->keyboardModifiers());
    const OrvLayerStack* pSourceStack = OrvLayerDragPayload::readStack(pEvent->mimeData());
    OrvLayerDrop::inUndoStep([&]() -> OrvLayerDrop::Result {
        if (pLayer->hasMaskImageSet() && !pLayer->convertMaskToMaskStack())
            return {OrvLayerDrop::Result::Failed, QString()};
        return OrvLayerDrop(Nodes, Action, pSourceStack, pLayer->maskNode(), pLayer->maskStack()).carryOut();
    });
}

#include "moc_OrvLayerComponentPushButton.cpp"

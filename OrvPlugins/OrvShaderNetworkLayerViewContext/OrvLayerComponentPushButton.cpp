#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerComponentPushButton.h"

#include "OrvCore/Object/OrvDebug.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDragPayload.h"

#include <QtCore/QMimeData>

OrvLayerComponentPushButton::OrvLayerComponentPushButton(QWidget* pParent)
    : OrvDraggablePushButton(pParent)
{
    setFlat(true);
    setFocusPolicy(Qt::NoFocus);
    // What is dropped here is dropped on the row.
    setAcceptDrops(false);
    setHighlighted(false);
}

void OrvLayerComponentPushButton::setHighlighted(bool Highlighted)
{
    const QString Style = Highlighted ? QStringLiteral("QPushButton:flat { background-color: lightgrey; border: none; }")
                                      : QStringLiteral("QPushButton:flat { border: none; }");
    // Setting even the same sheet polishes the button anew.
    if (styleSheet() != Style)
        setStyleSheet(Style);
}

QMimeData* OrvLayerComponentPushButton::mimeData() const
{
    if (!m_ComponentNode) {
        OrvDebug("OrvLayerViewItemRowWidget", __LINE__, QStringLiteral("m_ComponentNode is NULL"), false, false);
        return nullptr;
    }
    QMimeData* pMimeData = new QMimeData;
    OrvLayerDragPayload::write(*pMimeData, {m_ComponentNode->uuidString()});
    return pMimeData;
}

#include "moc_OrvLayerComponentPushButton.cpp"

#pragma once

#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCoreModules/Widgets/OrvDraggablePushButton.h"

#include <QtCore/QPointer>

/// The button of one component of a layer, its content or its mask, in the layer's row, which owns it. Dragged away it
/// carries the identity of its node: the mask's own for a mask, the layer's for the content. What a click does is the
/// row's affair.
class OrvLayerComponentPushButton : public OrvDraggablePushButton {
    Q_OBJECT

public:
    explicit OrvLayerComponentPushButton(QWidget* pParent);

    OrvSnBaseNode* componentNode() const { return m_ComponentNode; }
    void setComponentNode(OrvSnBaseNode* pNode) { m_ComponentNode = pNode; }
    /// The component is the one that is painted on.
    void setHighlighted(bool Highlighted);

    QMimeData* mimeData() const override;

private:
    QPointer<OrvSnBaseNode> m_ComponentNode;
};

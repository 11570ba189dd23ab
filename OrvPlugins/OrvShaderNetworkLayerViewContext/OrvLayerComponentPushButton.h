#pragma once

#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCoreModules/Widgets/OrvDraggablePushButton.h"

#include <QtCore/QPointer>

#include <memory>

class OrvImageSet;
class OrvLayer;
class OrvLayerThumbnail;

/// The button of one component of a layer, its content or its mask, in the layer's row, which owns it.
/// Dragged away it carries the identity of its node: the mask's own for a mask, the layer's for the content.
/// What a click does is the row's affair.
class OrvLayerComponentPushButton : public OrvDraggablePushButton {
    Q_OBJECT

public:
    explicit OrvLayerComponentPushButton(QWidget* pParent);

    /// How the components of the layer can be dragged, as a tool tip.
    static QString dragHint(const OrvLayer* pLayer);

    OrvSnBaseNode* componentNode() const { return m_ComponentNode; }
    void setComponentNode(OrvSnBaseNode* pNode) { m_ComponentNode = pNode; }
    void setComponentIcon(const QIcon& Icon);
    /// Shows a small picture of the images in the place of the icon, as soon as there is one; null: the icon.
    void setImageSet(OrvImageSet* pImageSet);
    /// The component is the one that is painted on.
    void setHighlighted(bool Highlighted);

    QMimeData* mimeData() const override;

protected:
    void dragEnterEvent(QDragEnterEvent* pEvent) override;
    void dragMoveEvent(QDragMoveEvent* pEvent) override;
    void dragLeaveEvent(QDragLeaveEvent* pEvent) override;
    void dropEvent(QDropEvent* pEvent) override;

private Q_SLOTS:
    void showIcon();

private:
    /// The layer whose mask the component is; null for other components.
    OrvLayer* maskedLayer() const;

    QPointer<OrvSnBaseNode> m_ComponentNode;
    QIcon m_ComponentIcon;
    QPointer<OrvImageSet> m_ImageSet;
    std::shared_ptr<OrvLayerThumbnail> m_pThumbnail;
    bool m_Highlighted = false;
};

#pragma once

#include "OrvCore/Layers/OrvLayerStack.h"

#include <QtCore/QBasicTimer>
#include <QtCore/QPointer>
#include <QtWidgets/QToolButton>

/// The button of a mask stack or an adjustment stack in a layer's row, which owns it. It opens the palette of
/// the stack, also under a dragged layer that rests on it, so that the layer can be dropped there; a mask
/// stack takes what is dropped on the button on top of its layers. Whoever does not link the module finds
/// these buttons by their object name "LayerStackPopupButton", which stays.
class OrvLayerStackPopupButton : public QToolButton {
    Q_OBJECT

public:
    explicit OrvLayerStackPopupButton(QWidget* pParent);

    OrvLayerStack* popupStack() const { return m_PopupStack; }
    void setPopupStack(OrvLayerStack* pStack) { m_PopupStack = pStack; }

    /// Shows the palette of a stack, unpinned while the sidebar opens palettes.
    static void popup(OrvLayerStack* pStack);

protected:
    void dragEnterEvent(QDragEnterEvent* pEvent) override;
    void dragMoveEvent(QDragMoveEvent* pEvent) override;
    void dragLeaveEvent(QDragLeaveEvent* pEvent) override;
    void dropEvent(QDropEvent* pEvent) override;
    void timerEvent(QTimerEvent* pEvent) override;

private:
    /// The layer whose mask the stack is; null for an adjustment stack.
    OrvLayer* maskedLayer() const;

    QPointer<OrvLayerStack> m_PopupStack;
    QBasicTimer m_HoverTimer;
};

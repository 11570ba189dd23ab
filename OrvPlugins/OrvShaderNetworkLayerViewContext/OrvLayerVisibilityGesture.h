#pragma once

#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerSolo.h"

#include <QtCore/QObject>
#include <QtCore/QPoint>
#include <QtCore/QPointer>
#include <QtCore/QVector>

class OrvLayerView;
class OrvLayerViewItemRowWidget;

/// What a press on the eye of a row does: it toggles the layer, and with it those that are selected together,
/// and gives the same state to all layers over whose eyes the mouse is swept until it is released. All of
/// that is one undo step. The palette owns it, so that a row may go while its eye is pressed.
class OrvLayerVisibilityGesture : public QObject {
    Q_OBJECT

public:
    explicit OrvLayerVisibilityGesture(OrvLayerView* pLayerView);
    ~OrvLayerVisibilityGesture() override;

    /// The mouse is down on the layer's eye; the gesture follows it from here by itself.
    void press(OrvLayer* pLayer, const QPoint& GlobalPosition);
    /// The whole of it at once, where there is no mouse to follow.
    void toggle(OrvLayer* pLayer);
    void toggleAlone(OrvLayer* pLayer);

    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
    void begin(OrvLayer* pLayer);
    void applyTo(OrvLayer* pLayer);
    void sweepTo(const QPoint& Position);
    void finish();
    OrvLayerViewItemRowWidget* rowWithEyeAt(const QPoint& Position) const;

    OrvLayerView* m_LayerView;
    OrvLayerSolo m_Solo;
    bool m_Active = false;
    bool m_Visible = false; ///< what the layers become
    QPoint m_Position; ///< of the mouse, in the tree's viewport
    QVector<QPointer<OrvLayer>> m_Changed;
};

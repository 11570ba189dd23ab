#pragma once

#include <QtCore/QObject>

class OrvLayerView;
class OrvLayerViewFilterBar;

/// Tells the user in a layer tree without rows why there are none, and what to do about it. The palette owns
/// it and has it updated with its rows; what changes the reason without changing rows, it follows itself.
class OrvLayerTreeEmptyText : public QObject {
    Q_OBJECT

public:
    OrvLayerTreeEmptyText(OrvLayerView* pLayerView, const OrvLayerViewFilterBar* pFilterBar);

    void update();
    /// Says nothing until the rows are known.
    void hide();

private Q_SLOTS:
    void onChannelChanged();

private:
    QString text() const;

    OrvLayerView* m_LayerView;
    const OrvLayerViewFilterBar* m_FilterBar;
};

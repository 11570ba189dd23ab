#pragma once

#include <QtCore/QObject>

class OrvLayer;
class OrvLayerView;

/// What the keyboard does in a layer tree beyond walking through it, under keys that users can rebind. The
/// palette owns it. Each command is for the current layer, and for those that are selected together with it.
class OrvLayerKeyCommands : public QObject {
    Q_OBJECT

public:
    explicit OrvLayerKeyCommands(OrvLayerView* pLayerView);

private Q_SLOTS:
    void renameLayer();
    void toggleVisibility();
    void toggleLock();
    void moveLayersUp();
    void moveLayersDown();
    void moveLayersIntoGroup();
    void moveLayersOutOfGroup();

private:
    OrvLayer* currentLayer() const;

    OrvLayerView* m_LayerView;
};

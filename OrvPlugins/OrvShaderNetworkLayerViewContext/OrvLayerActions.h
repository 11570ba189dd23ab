#pragma once

#include <QtCore/QObject>

class OrvLayer;
class OrvLayerStack;
class OrvLayerView;
class QAction;

/// The layer commands of menus and palettes, made once at the module's start (OrvLayerActionTable). Most of
/// them relay the method that their action names to the current layer view, stack or layer; those that need
/// more have a slot here. Keeps them in step with what is current (OrvLayerActionStates) and holds no
/// document data.
class OrvLayerActions : public QObject {
    Q_OBJECT

public:
    static OrvLayerActions& instance();

public Q_SLOTS:
    void invokeLayerViewMethod(QAction* Action);
    void invokeLayerStackMethod(QAction* Action);
    void invokeLayerMethod(QAction* Action);
    void flattenLayerGroup();
    // The action's data is the depth or edge length to convert to; a length of -1 halves, one of -2 doubles.
    void maskConvertCurrent(QAction* Action);
    void maskResizeCurrent(QAction* Action);
    /// For actions of others: the layer's own images.
    void layerResizeCurrent(QAction* Action);
    void openLayerContentsInNodeGraph();
    void shareLayersAsChannel();
    void shareCurrentLayer();
    void makeSharedShaderInputCurrent();
    /// Node types can come later; those that have an action keep it.
    void createDynamicLayerCreationMenus();
    void switchActionsEnabled();
    void onCurrentLayerStackChanged(OrvLayerStack* LayerStack);
    void onLayerStateRefreshed(OrvLayer* Layer);
    /// In the layer view under the focus or the cursor, or else in the one that was used last.
    void quickFind();
    /// Why a command did nothing, in the status line.
    void showRefusal(const QString& Reason);

private:
    OrvLayerActions();
    void connectHost();
    static OrvLayerView* layerViewInUse();
};

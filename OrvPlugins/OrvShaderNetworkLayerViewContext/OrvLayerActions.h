#pragma once

#include <QtCore/QObject>
#include <QtCore/QVariant>

class OrvActionCreator;
class OrvLayer;
class OrvLayerStack;
class QAction;

/// The layer commands of menus and palettes, made once at the module's start. Most relay a method name to the current
/// layer view, stack or layer. Keeps their enabled state in step with what is current and holds no document data.
class OrvLayerActions : public QObject {
    Q_OBJECT

public:
    static OrvLayerActions& instance();

public Q_SLOTS:
    void invokeLayerViewMethod(QAction* Action);
    void invokeLayerStackMethod(QAction* Action);
    void invokeLayerMethod(QAction* Action);
    void openLayerContentsInNodeGraph();
    void shareCurrentLayer();
    void makeSharedShaderInputCurrent();
    /// Node types can come later; those that have an action keep it.
    void createDynamicLayerCreationMenus();
    void switchActionsEnabled();
    void onCurrentLayerStackChanged(OrvLayerStack* LayerStack);
    void onLayerStateRefreshed(OrvLayer* Layer);
    /// Opens the quick find of the layer view under focus or cursor.
    void quickFind();

private:
    OrvLayerActions();
    void createLayerActions();
    void createMaskActions();
    void createAdjustmentStackActions();
    void createSharingActions();
    void createQuickFind();
    void createLayerTypeActions(const QString& ActionPath, const QString& SetName, const QString& MenuPath,
        const QStringList& Groups, const QString& Method, const char* pRelay, const QString& Icon);
    void connectHost();
};

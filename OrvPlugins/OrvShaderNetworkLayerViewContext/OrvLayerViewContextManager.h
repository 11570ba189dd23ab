#pragma once

#include "OrvCore/Object/OrvSerializableObject.h"
#include "OrvCoreModules/Window/OrvPalette.h"

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QPointer>
#include <QtCore/QTimer>

class OrvLayerStack;
class OrvLayerView;
class OrvShaderInputView;
class OrvShaderMaterialsView;
class OrvShaderNetwork;
class OrvShaderView;
class OrvSnBaseNode;
class QListWidgetItem;

/// The palettes of the module: makes the three fixed ones, opens, titles, retires and stores those of single layer
/// stacks. The host's window owns every palette; this manager lives from the module's start to its unloading, holds
/// them weakly and never deletes one inside a signal of the host.
class OrvLayerViewContextManager : public OrvSerializableObject {
    Q_OBJECT

public:
    static OrvLayerViewContextManager& instance();

    /// The active layer view, or the main one while none is active; null when both are gone.
    OrvLayerView* layerView() const;
    OrvLayerView* mainLayerView() const;
    void setActiveLayerView(OrvLayerView* pLayerView);
    OrvShaderInputView* shaderInputView() const;
    OrvShaderView* shaderView() const;

    /// Shows the palette of the stack, made if needed. An unpinned palette closes by itself when it is left.
    void openLayerStackPalette(OrvLayerStack* pLayerStack, bool Unpinned);

public Q_SLOTS:
    void onPaletteSizeChanged();
    void onNodeReconnected(
        OrvShaderNetwork* Network, QString InputName, OrvSnBaseNode* NewInputNode, OrvSnBaseNode* Node);
    void onNodeDeregistered(OrvShaderNetwork* Network, OrvSnBaseNode* Node);
    /// Where the open stack palettes of the current project are stored; empty without a cache directory.
    QString projectSettingsFileName();
    void saveProjectSettings();
    void loadProjectSettings();
    void closeLayerViewPalettes();
    /// Goes to the node of an item of a sharer list: a channel becomes current, a layer is shown in its stacks.
    void makeSharerInfoItemCurrent(QListWidgetItem* Item);
    void deletePalettesToBeDeleted();
    void onLayerStackDestroyed(QObject* LayerStack);
    void updatePaletteHeaders();
    void updateLayerPaletteHeader();
    void refreshAllProperties();

private:
    /// The place of the stack is kept with its palette: it is needed when the stack itself is already going.
    struct StackPalette {
        QPointer<OrvPalette> pPalette;
        QPointer<OrvSnBaseNode> pNode;
        QString InputName;
    };
    using StackPaletteTable = QHash<const QObject*, StackPalette>;

    OrvLayerViewContextManager();
    ~OrvLayerViewContextManager() override;

    void createShadersPalette(const QString& IconDirectory);
    OrvPalette* createChannelsPalette(const QString& IconDirectory);
    void createLayersPalette(const QString& IconDirectory);
    void connectHost();

    OrvPalette* createLayerStackPalette(OrvLayerStack* pLayerStack);
    void enterPalette(OrvLayerStack* pLayerStack, OrvPalette* pPalette);
    StackPaletteTable::iterator retirePalette(StackPaletteTable::iterator Entry);
    static QString paletteTitle(const OrvLayerStack* pLayerStack);
    static void storePaletteSize(const StackPalette& Entry);
    void showSharer(OrvSnBaseNode* pNode);

    QPointer<OrvShaderMaterialsView> m_ShaderMaterialsView;
    QPointer<OrvShaderView> m_ShaderView;
    QPointer<OrvShaderInputView> m_ShaderInputView;
    QPointer<OrvLayerView> m_MainLayerView;
    QPointer<OrvLayerView> m_ActiveLayerView;
    StackPaletteTable m_StackPalettes;
    QTimer m_DeletionTimer;
    QList<QPointer<OrvPalette>> m_PalettesToBeDeleted;
    QPointer<OrvPalette> m_LayersPalette;
};

#pragma once

#include "OrvCore/Object/OrvSerializableObject.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerStackPalettes.h"

#include <QtCore/QPointer>

class OrvLayerStack;
class OrvLayerView;
class OrvShaderInputView;
class OrvShaderMaterialsView;
class OrvShaderNetwork;
class OrvShaderView;
class OrvSnBaseNode;
class QListWidgetItem;

/// The palettes of the module: makes the three fixed ones, knows which layer view the user works in, and
/// passes what the host tells on to the palettes of single stacks. The host's window owns every palette; this
/// manager lives from the module's start to its unloading and holds them weakly.
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
    /// Goes to the node of an item of a sharer list: a channel becomes current, a layer is shown in its
    /// stacks.
    void makeSharerInfoItemCurrent(QListWidgetItem* Item);
    void deletePalettesToBeDeleted();
    void onLayerStackDestroyed(QObject* LayerStack);
    void updatePaletteHeaders();
    void updateLayerPaletteHeader();
    void refreshAllProperties();

private:
    OrvLayerViewContextManager();
    ~OrvLayerViewContextManager() override;

    void createShadersPalette();
    OrvPalette* createChannelsPalette();
    void createLayersPalette();
    void connectHost();
    void showSharer(OrvSnBaseNode* pNode);

    QPointer<OrvShaderMaterialsView> m_ShaderMaterialsView;
    QPointer<OrvShaderView> m_ShaderView;
    QPointer<OrvShaderInputView> m_ShaderInputView;
    QPointer<OrvLayerView> m_MainLayerView;
    QPointer<OrvLayerView> m_ActiveLayerView;
    OrvLayerStackPalettes m_StackPalettes;
    QPointer<OrvPalette> m_LayersPalette;
};

#pragma once

#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvPanelToolBar.h"

#include <QtCore/QList>

class OrvLayerView;

/// The tool bar of a Layers palette, which owns it and carries out its commands. It knows which of them are
/// meant for material stacks and which for ordinary ones.
class OrvLayerToolBar : public OrvPanelToolBar {
    Q_OBJECT

public:
    explicit OrvLayerToolBar(OrvLayerView* pLayerView);

    enum class StackKind { Ordinary, Material };
    void showCommandsOf(StackKind Kind);
    void setCommandsEnabled(bool Enabled);
    void setMultiChannelLayerEnabled(bool Enabled);

private:
    enum class Shown { Always, OnOrdinaryStack, OnMaterialStack };
    QAction* addCommand(const QString& Text, const char* pIcon, const char* pSlot, Shown When);
    void addColorTagButton();

    OrvLayerView* m_LayerView;
    QList<QAction*> m_Actions, m_MaterialStackActions, m_OrdinaryStackActions;
    QAction* m_MultiChannelLayerAction = nullptr;
};

#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerToolBar.h"

#include "OrvCoreModules/Window/OrvIcon.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"

#include <QtWidgets/QAction>
#include <QtWidgets/QPushButton>

namespace {

constexpr int IconEdge = 16;
constexpr int ColorTagButtonSize = 22;

} // namespace

OrvLayerToolBar::OrvLayerToolBar(OrvLayerView* pLayerView)
    : OrvPanelToolBar(QStringLiteral("Layers"), pLayerView)
    , m_LayerView(pLayerView)
{
    setIconSize({IconEdge, IconEdge});
    const auto Ordinary = Shown::OnOrdinaryStack;
    addCommand(tr("Add New Layer"), "AddPaintLayer.png", SLOT(addNewLayer()), Ordinary);
    addCommand(tr("Add Shader Layer"), "AddShader.png", SLOT(addShaderLayer()), Shown::OnMaterialStack);
    addCommand(tr("Add Layer Mask"), "AddLayerMask.png", SLOT(addLayerMask()), Shown::Always);
    addCommand(tr("Add Mask Stack"), "AddMaskStack.png", SLOT(addMaskStack()), Shown::Always);
    addCommand(tr("Add Adjustment Layer"), "AddAdjustmentLayer.png", SLOT(addAdjustmentLayer()), Ordinary);
    addCommand(tr("Add Adjustment Stack"), "AddAdjustmentStack.png", SLOT(addAdjustmentStack()), Ordinary);
    addCommand(tr("Add Procedural Layer"), "AddProceduralLayer.png", SLOT(addProceduralLayer()), Ordinary);
    addCommand(tr("Group Layers"), "AddLayerGroup.png", SLOT(groupLayers()), Ordinary);
    addCommand(tr("Add Graph Layer"), "NodeGraph.png", SLOT(addGraphLayer()), Ordinary);
    addCommand(tr("Duplicate Layers"), "DuplicateLayers.png", SLOT(duplicateLayers()), Ordinary);
    addCommand(tr("Remove Layers"), "DeleteLayer.png", SLOT(removeLayers()), Ordinary);
    addCommand(tr("Remove Shader Layers"), "RemoveShader.png", SLOT(removeLayers()), Shown::OnMaterialStack);
    m_MultiChannelLayerAction = addCommand(tr("Add Multi-Channel Layer"), "MultiChannelWorkflow.png",
        SLOT(createMultiChannelLayerMenu()), Ordinary);
    addColorTagButton();
    addPublishedActions();
    showCommandsOf(StackKind::Ordinary);
}

QAction* OrvLayerToolBar::addCommand(const QString& Text, const char* pIcon, const char* pSlot, Shown When)
{
    QAction* pAction = addAction(OrvIcon::createIconFromFilename(QLatin1String(pIcon)), Text);
    connect(pAction, SIGNAL(triggered()), m_LayerView, pSlot);
    m_Actions.append(pAction);
    if (When == Shown::OnMaterialStack)
        m_MaterialStackActions.append(pAction);
    else if (When == Shown::OnOrdinaryStack)
        m_OrdinaryStackActions.append(pAction);
    return pAction;
}

void OrvLayerToolBar::addColorTagButton()
{
    const QString Text = tr("Assign a color tag to the selected items");
    auto* pButton
        = new QPushButton(OrvIcon::createIconFromFilename(QStringLiteral("ColorTag.png")), QString(), this);
    pButton->setObjectName(QStringLiteral("ColorPopupButton"));
    pButton->setFlat(true);
    pButton->setFocusPolicy(Qt::NoFocus);
    pButton->setFixedSize(ColorTagButtonSize, ColorTagButtonSize);
    pButton->setIconSize({IconEdge, IconEdge});
    pButton->setToolTip(Text);
    pButton->setWhatsThis(Text);
    pButton->setStatusTip(Text);
    connect(pButton, SIGNAL(released()), m_LayerView, SLOT(pickTagColors()));
    m_Actions.append(addWidget(pButton));
}

void OrvLayerToolBar::showCommandsOf(StackKind Kind)
{
    const bool OfMaterialStack = Kind == StackKind::Material;
    for (QAction* pAction : qAsConst(m_MaterialStackActions))
        pAction->setVisible(OfMaterialStack);
    for (QAction* pAction : qAsConst(m_OrdinaryStackActions))
        pAction->setVisible(!OfMaterialStack);
}

void OrvLayerToolBar::setCommandsEnabled(bool Enabled)
{
    for (QAction* pAction : qAsConst(m_Actions))
        pAction->setEnabled(Enabled);
}

void OrvLayerToolBar::setMultiChannelLayerEnabled(bool Enabled)
{
    m_MultiChannelLayerAction->setEnabled(Enabled);
}

#include "moc_OrvLayerToolBar.cpp"

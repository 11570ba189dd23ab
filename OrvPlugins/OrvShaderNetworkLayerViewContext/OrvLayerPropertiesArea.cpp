#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerPropertiesArea.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Network/OrvSnBakePointNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Shelf/OrvSnCustomProceduralNode.h"
#include "OrvCoreModules/Properties/OrvNodePropertyEditor.h"
#include "OrvCoreModules/Properties/OrvNodePropertyEditors.h"
#include "OrvCoreModules/Widgets/OrvFormLayout.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerShaderInputs.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"

#include <QtWidgets/QVBoxLayout>

namespace {

constexpr int MinimumHeight = 20;
constexpr int EditorOptions = OrvNodePropertyEditor::TitledFrame | OrvNodePropertyEditor::NoScrollArea
    | OrvNodePropertyEditor::CompactRows | OrvNodePropertyEditor::UserAttributes;

} // namespace

OrvLayerPropertiesArea::OrvLayerPropertiesArea(OrvLayerView* pLayerView, BlendNode Blending)
    : OrvVerticalScrollArea(pLayerView)
    , m_Blending(Blending)
    , m_LayerView(pLayerView)
{
    setMinimumHeight(MinimumHeight);
    setFrameShape(QFrame::NoFrame);
    QWidget* pContents = new QWidget;
    QVBoxLayout* pLayout = new QVBoxLayout(pContents);
    pLayout->setContentsMargins(0, 0, 0, 0);
    m_Layout = new QVBoxLayout;
    pLayout->addLayout(m_Layout);
    pLayout->addStretch();
    setWidget(pContents);
}

bool OrvLayerPropertiesArea::Part::operator==(const Part& Other) const
{
    return pNode == Other.pNode && Title == Other.Title;
}

QVector<OrvLayerPropertiesArea::Part> OrvLayerPropertiesArea::parts(const OrvLayer* pLayer) const
{
    QVector<Part> Parts;
    const auto add = [&Parts](OrvSnBaseNode* pNode, const QString& Title) {
        if (pNode)
            Parts.append({pNode, Title.isEmpty() ? Title : Title.arg(pNode->name())});
    };
    add(pLayer->adjustmentNode(), OrvLayerView::tr("Adjustment : %1"));
    add(pLayer->secondaryAdjustmentNode(), OrvLayerView::tr("Secondary Adjustment : %1"));
    const bool IsMaterial = OrvLayerStreamUtils::isMaterialLayer(pLayer);
    add(OrvLayerStreamUtils::materialNode(pLayer), OrvLayerView::tr("Material : %1"));
    if (m_Blending == BlendNode::Shown)
        add(pLayer->blendNode(), QString());
    add(pLayer->graphNode(), OrvLayerView::tr("Graph : %1"));
    if (!IsMaterial) {
        add(pLayer->customProceduralNode(), OrvLayerView::tr("Custom Procedural : %1"));
        add(pLayer->proceduralNode(), OrvLayerView::tr("Procedural : %1"));
    }
    add(pLayer->shaderNode(), OrvLayerView::tr("Shader : %1"));
    add(pLayer->bakePointNode(), OrvLayerView::tr("Bake Point : %1"));
    add(pLayer->maskCustomProceduralNode(), OrvLayerView::tr("Mask : %1"));
    return Parts;
}

QList<QPointer<QWidget>> OrvLayerPropertiesArea::createEditors(const OrvLayer* pLayer, QWidget* pParent) const
{
    QList<QPointer<QWidget>> Editors;
    if (!pLayer)
        return Editors;
    for (const Part& Part : parts(pLayer)) {
        if (QWidget* pEditor = OrvNodePropertyEditors::create(Part.pNode, Part.Title, EditorOptions, pParent))
            Editors.append(pEditor);
        if (Part.pNode != pLayer->shaderNode())
            continue;
        // The values of a shader are those of its inputs, and those may come from channels.
        if (QWidget* pInputs = OrvLayerShaderInputs::create(pLayer, m_LayerView, pParent))
            Editors.append(pInputs);
    }
    return Editors;
}

void OrvLayerPropertiesArea::showLayer(const OrvLayer* pLayer)
{
    clear();
    if (!pLayer)
        return;
    m_Parts = parts(pLayer);
    m_Editors = createEditors(pLayer, widget());
    QList<QWidget*> Aligned;
    for (const QPointer<QWidget>& pEditor : qAsConst(m_Editors)) {
        m_Layout->addWidget(pEditor, 0, Qt::AlignTop);
        pEditor->setEnabled(pLayer->isModifiable());
        Aligned.append(pEditor);
    }
    OrvFormLayout::alignLabels(Aligned);
}

void OrvLayerPropertiesArea::refresh(const OrvLayer* pLayer)
{
    if (!pLayer || m_Parts != parts(pLayer)) {
        showLayer(pLayer);
        return;
    }
    for (const QPointer<QWidget>& pEditor : qAsConst(m_Editors)) {
        if (pEditor)
            pEditor->setEnabled(pLayer->isModifiable());
    }
}

void OrvLayerPropertiesArea::clear()
{
    for (const QPointer<QWidget>& pEditor : qAsConst(m_Editors)) {
        if (!pEditor)
            continue;
        m_Layout->removeWidget(pEditor);
        pEditor->hide();
        pEditor->deleteLater();
    }
    m_Editors.clear();
    m_Parts.clear();
}

#include "moc_OrvLayerPropertiesArea.cpp"

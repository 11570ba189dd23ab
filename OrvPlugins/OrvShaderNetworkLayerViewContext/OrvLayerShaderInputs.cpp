#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerShaderInputs.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextConstants.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputConnection.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputRow.h"

#include <QtWidgets/QCheckBox>
#include <QtWidgets/QGridLayout>

namespace {

/// What moves the surface comes after what colours it.
QStringList sortedInputNames(const OrvLayerShader* pShader)
{
    QStringList Names = pShader->inputNames();
    for (const QString& Displacement : OrvLayerViewContext::DisplacementInputNames) {
        if (Names.removeOne(Displacement))
            Names.append(Displacement);
    }
    return Names;
}

} // namespace

OrvLayerShaderInputs* OrvLayerShaderInputs::create(
    const OrvLayer* pLayer, OrvLayerView* pLayerView, QWidget* pParent)
{
    const OrvSnBaseNode* pShaderNode = pLayer->shaderNode();
    OrvLayerShader* pShader
        = pShaderNode ? OrvLayerShaderManager::instance().getLayerShader(pShaderNode) : nullptr;
    return pShader && pLayerView ? new OrvLayerShaderInputs(pShader, pLayerView, pParent) : nullptr;
}

OrvLayerShaderInputs::OrvLayerShaderInputs(
    OrvLayerShader* pShader, OrvLayerView* pLayerView, QWidget* pParent)
    : OrvExpandableListWidget(tr("Inputs"), pParent)
{
    auto* pGrid = new QGridLayout;
    pGrid->setContentsMargins(0, 0, 0, 0);
    pGrid->setSpacing(0);
    QVector<OrvShaderInputRow*> Rows;
    for (const QString& InputName : sortedInputNames(pShader)) {
        auto* pRow = new OrvShaderInputRow(pShader, InputName, this);
        connect(pRow->enableBox(), SIGNAL(clicked(bool)), this, SLOT(onInputSwitched(bool)));
        connect(pRow->invertBox(), SIGNAL(clicked(bool)), pLayerView, SLOT(onToggledInvertShaderInput(bool)));
        pGrid->addWidget(pRow, Rows.size(), 0);
        Rows.append(pRow);
    }
    OrvShaderInputRow::alignColumns(Rows);
    addChild(pGrid, QString(), QString());
}

void OrvLayerShaderInputs::onInputSwitched(bool Enabled)
{
    for (const OrvShaderInputRow* pRow : findChildren<OrvShaderInputRow*>()) {
        if (pRow->enableBox() == sender())
            OrvShaderInputConnection::setEnabled(pRow->shader(), pRow->inputName(), Enabled);
    }
}

#include "moc_OrvLayerShaderInputs.cpp"

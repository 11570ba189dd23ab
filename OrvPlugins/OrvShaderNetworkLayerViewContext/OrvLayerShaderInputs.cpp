#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerShaderInputs.h"

#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextConstants.h"
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

OrvLayerShaderInputs::OrvLayerShaderInputs(
    OrvLayerShader* pShader, OrvLayerView* pLayerView, QWidget* pParent)
    : OrvExpandableListWidget(tr("Inputs"), pParent)
{
    auto* pGrid = new QGridLayout;
    pGrid->setContentsMargins(0, 0, 0, 0);
    pGrid->setSpacing(0);
    QList<OrvShaderInputRow*> Rows;
    int NameWidth = 0;
    for (const QString& InputName : sortedInputNames(pShader)) {
        auto* pRow = new OrvShaderInputRow(pShader, InputName, this);
        connect(pRow->enableBox(), SIGNAL(clicked(bool)), this, SLOT(onInputSwitched(bool)));
        connect(pRow->invertBox(), SIGNAL(clicked(bool)), pLayerView, SLOT(onToggledInvertShaderInput(bool)));
        NameWidth = qMax(NameWidth, pRow->nameWidthHint());
        pGrid->addWidget(pRow, Rows.size(), 0);
        Rows.append(pRow);
    }
    for (OrvShaderInputRow* pRow : qAsConst(Rows))
        pRow->setNameWidth(NameWidth);
    addChild(pGrid, QString(), QString());
}

void OrvLayerShaderInputs::onInputSwitched(bool Enabled)
{
    for (const OrvShaderInputRow* pRow : findChildren<OrvShaderInputRow*>()) {
        if (pRow->enableBox() != sender() || !pRow->shader())
            continue;
        const OrvUndoManager::AutoMacro Macro(Enabled ? tr("Enable Input : %1").arg(pRow->inputName())
                                                      : tr("Disable Input : %1").arg(pRow->inputName()));
        pRow->shader()->setInputEnabled(pRow->inputName(), Enabled);
    }
}

#include "moc_OrvLayerShaderInputs.cpp"

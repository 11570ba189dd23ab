#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderMaterialsView.h"

#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderView.h"

#include <QtWidgets/QVBoxLayout>

OrvShaderMaterialsView::OrvShaderMaterialsView(QWidget* pParent)
    : QWidget(pParent)
    , m_ShaderView(new OrvShaderView(this))
{
    QVBoxLayout* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->addWidget(m_ShaderView);
}

#include "moc_OrvShaderMaterialsView.cpp"

#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderView.h"

OrvShaderView::OrvShaderView(QWidget* pParent)
    : QWidget(pParent)
{
}

#include "moc_OrvShaderView.cpp"

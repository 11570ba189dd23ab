#pragma once

#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewButtonFilter.h"

/// Passes layers by what they hold: paint, an adjustment, a procedural.
class OrvLayerViewKindFilter : public OrvLayerViewButtonFilter {
    Q_OBJECT

public:
    explicit OrvLayerViewKindFilter(QWidget* pParent);

    QString name() const override;
};

#pragma once

#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewFilterType.h"

#include <QtGui/QColor>

class OrvBasicColorSwatch;

/// Passes the layers with any of the checked tag colours; "none" stands for layers without a tag.
class OrvLayerViewColorTagFilter : public OrvLayerViewFilterType {
    Q_OBJECT

public:
    explicit OrvLayerViewColorTagFilter(QWidget* pParent);

    QString name() const override;
    QList<QWidget*> widgets() const override;
    bool matches(const OrvLayer* pLayer) const override;

private Q_SLOTS:
    void updateActive();

private:
    OrvBasicColorSwatch* m_Swatch;
    QList<QColor> m_CheckedColors;
};

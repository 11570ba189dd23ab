#pragma once

#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewFilterType.h"

#include <QtCore/QVector>

/// Passes the layers that satisfy the condition of any checked button: what the filters by type and by
/// attribute have in common. It names no condition itself.
class OrvLayerViewButtonFilter : public OrvLayerViewFilterType {
    Q_OBJECT

public:
    QList<QWidget*> widgets() const override;
    bool matches(const OrvLayer* pLayer) const override;

protected:
    using Condition = bool (*)(const OrvLayer* pLayer);

    explicit OrvLayerViewButtonFilter(QWidget* pParent);
    QPushButton* addCondition(const QString& IconFileName, const QString& ToolTip, Condition Holds);

private Q_SLOTS:
    void updateActive();

private:
    struct Choice {
        QPushButton* pButton;
        Condition Holds;
    };
    QVector<Choice> m_Choices;
};

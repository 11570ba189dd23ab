#pragma once

#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewFilterType.h"

#include <QtCore/QRegExp>

class QLineEdit;

/// Passes layers by words of their names, in the order in which they are typed; "*", "?" and sets of
/// characters in brackets stand for others. Upper and lower case do not matter.
class OrvLayerViewNameFilter : public OrvLayerViewFilterType {
    Q_OBJECT

public:
    explicit OrvLayerViewNameFilter(QWidget* pParent);

    QString name() const override;
    QList<QWidget*> widgets() const override;
    bool stretchAfterWidgets() const override { return false; }
    bool matches(const OrvLayer* pLayer) const override;
    QString highlightedName(const OrvLayer* pLayer) const override;

private Q_SLOTS:
    void updatePattern();

private:
    QLineEdit* m_LineEdit;
    QPushButton* m_ClearButton;
    QRegExp m_Pattern;
};

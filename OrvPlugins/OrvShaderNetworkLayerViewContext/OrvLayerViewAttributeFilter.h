#pragma once

#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewButtonFilter.h"

/// Passes layers by their state: groups, locks, visibility, masks, adjustments. Opposites switch each other
/// off.
class OrvLayerViewAttributeFilter : public OrvLayerViewButtonFilter {
    Q_OBJECT

public:
    explicit OrvLayerViewAttributeFilter(QWidget* pParent);

    QString name() const override;

private Q_SLOTS:
    void uncheckUnlockedIfChecked(bool Checked);
    void uncheckLockedIfChecked(bool Checked);
    void uncheckVisibleIfChecked(bool Checked);
    void uncheckInvisibleIfChecked(bool Checked);

private:
    QPushButton* m_UnlockedButton;
    QPushButton* m_LockedButton;
    QPushButton* m_VisibleButton;
    QPushButton* m_InvisibleButton;
};

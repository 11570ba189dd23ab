#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtCore/QPointer>
#include <QtWidgets/QFrame>

class OrvRangeSlider;
class OrvShaderNetwork;
class OrvSnBaseNode;
class OrvValueBinding;
class QCheckBox;
class QToolButton;
class QVBoxLayout;

/// The advanced blending editor of one blend node: where in the tones of the layer and of what lies below it
/// shows, and which components it writes. A palette owns one and binds it to the node of the current layer.
class ORVCOREMODULES_EXPORT OrvAdvancedBlendingOptionsPopup : public QFrame {
    Q_OBJECT

public:
    explicit OrvAdvancedBlendingOptionsPopup(QWidget* pParent);
    ~OrvAdvancedBlendingOptionsPopup() override;

    OrvSnBaseNode* blendNode() const;
    /// Null unbinds; a node that dies or leaves its network is dropped.
    void setBlendNode(OrvSnBaseNode* pNode);

public Q_SLOTS:
    /// Opens at the cursor.
    void popup();

Q_SIGNALS:
    /// As the user sets them.
    void advancedBlendingChanged(bool Enabled);
    void blendAmountChanged(bool Enabled);

private Q_SLOTS:
    void onNodeDeregistered(OrvShaderNetwork* pNetwork, OrvSnBaseNode* pNode);

private:
    QCheckBox* addCheckBox(QVBoxLayout* pLayout, const QString& Text, const QString& ToolTip);
    QWidget* createOptions();
    OrvRangeSlider* addRange(QVBoxLayout* pLayout, const QString& Title, const QString& ToolTip);
    OrvValueBinding* bind(const QString& AttributeName, const QString& Label);
    void showCheckBox(QCheckBox* pBox, const OrvValueBinding* pBinding);
    void showRange(OrvRangeSlider* pSlider, const OrvValueBinding* pBinding);
    void showAll();
    void editChannels();
    void reset();

    QPointer<OrvSnBaseNode> m_pNode;
    QCheckBox *m_pAdvanced, *m_pAmount;
    QWidget* m_pOptions;
    OrvRangeSlider *m_pOverRange, *m_pBaseRange;
    QToolButton* m_Channels[4];
    OrvValueBinding *m_pAdvancedBinding = nullptr, *m_pAmountBinding = nullptr, *m_pOverBinding = nullptr,
                    *m_pBaseBinding = nullptr, *m_pChannelBinding = nullptr;
};

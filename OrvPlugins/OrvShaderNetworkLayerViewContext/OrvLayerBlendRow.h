#pragma once

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

class OrvAdvancedBlendingOptionsPopup;
class OrvCustomAttribute;
class OrvLayer;
class OrvLayerStack;
class OrvLayerView;
class OrvSnBaseNode;
class QHBoxLayout;
class QPushButton;
class QStackedLayout;

/// How the current layer of a Layers palette is blended: blend mode, amount and the advanced options, or for
/// a group in pass-through mode the button that ends it. The palette owns the row and tells it what is
/// current; the editors in it change the blend nodes of the layer and of those selected with it themselves.
class OrvLayerBlendRow : public QWidget {
    Q_OBJECT

public:
    explicit OrvLayerBlendRow(OrvLayerView* pLayerView);

    /// Shows the layer's blending; without a layer the controls stand there without effect.
    void showLayer(OrvLayer* pLayer, OrvLayerStack* pLayerStack);
    /// Reads again what can change while the layer stays: whether it may be edited, whether it is passed
    /// through.
    void refresh();
    void clear();

    /// The layer shown; null without one.
    OrvLayer* layer() const;
    bool shows(const OrvLayer* pLayer, const OrvLayerStack* pLayerStack) const;
    void showAdvancedOptions();
    void setAdvancedIcon(bool Enabled);
    /// False greys the amount out; true does so, too, where the layer's amount may not be changed.
    void setAmountEnabled(bool Enabled);
    /// An attribute of the blend node changed.
    void followAttribute(const OrvCustomAttribute& Attribute);

private:
    QWidget* createPassThroughPage();
    QWidget* createBlendPage();
    /// With the editors of its blending.
    void forgetLayer();
    bool showsGroup() const;
    bool isAmountModifiable() const;
    QWidget* addControlet(int Position, const QString& AttributeName);

    OrvLayerView* m_LayerView;
    QStackedLayout* m_Pages;
    QHBoxLayout* m_BlendLayout = nullptr;
    QPushButton* m_PassThroughButton = nullptr;
    QPushButton* m_AdvancedBlendingButton = nullptr;
    OrvAdvancedBlendingOptionsPopup* m_AdvancedBlendingOptionsPopup;
    QPointer<QWidget> m_BlendModeWidget;
    QPointer<QWidget> m_BlendAmountWidget;
    QPointer<OrvLayer> m_Layer;
    QPointer<OrvLayerStack> m_LayerStack;
    QPointer<OrvSnBaseNode> m_BlendNode; ///< of the layer, or one that belongs to none
};

#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerBlendRow.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Layers/OrvMultiChannelLayer.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCoreModules/Properties/OrvAdvancedBlendingOptionsPopup.h"
#include "OrvCoreModules/Properties/OrvUserAttributeControletManager.h"
#include "OrvCoreModules/Window/OrvIcon.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerBlendBinding.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewUtils.h"

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QStackedLayout>

using OrvLayerViewUtils::report;

namespace {

enum Page { PassThroughPage, BlendPage };
constexpr int PassThroughButtonSize = 24;
constexpr int AdvancedButtonSize = 16;
constexpr int RowHeight = PassThroughButtonSize + 2; // whatever is shown

QHBoxLayout* createTightRow(QWidget* pWidget)
{
    QHBoxLayout* pLayout = new QHBoxLayout(pWidget);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->setSpacing(1);
    return pLayout;
}

QPushButton* createPassThroughButton(OrvLayerView* pLayerView)
{
    auto* pButton = new QPushButton(
        OrvIcon::createIconFromFilename(QStringLiteral("LayerGroupPassThrough.png")), QString());
    pButton->setFlat(true);
    pButton->setCheckable(true);
    pButton->setFocusPolicy(Qt::NoFocus);
    pButton->setFixedSize(PassThroughButtonSize, PassThroughButtonSize);
    pButton->setToolTip(OrvLayerView::tr("On/Off Layer Group Pass Through Mode"));
    QObject::connect(pButton, SIGNAL(clicked(bool)), pLayerView, SLOT(onPassThroughChecked(bool)));
    return pButton;
}

} // namespace

OrvLayerBlendRow::OrvLayerBlendRow(OrvLayerView* pLayerView)
    : QWidget(pLayerView)
    , m_LayerView(pLayerView)
    , m_Pages(new QStackedLayout)
    , m_AdvancedBlendingOptionsPopup(new OrvAdvancedBlendingOptionsPopup(pLayerView))
{
    QHBoxLayout* pLayout = createTightRow(this);
    pLayout->setContentsMargins(0, 1, 0, 1);
    m_Pages->addWidget(createPassThroughPage());
    m_Pages->addWidget(createBlendPage());
    pLayout->addLayout(m_Pages);
    connect(m_AdvancedBlendingOptionsPopup, SIGNAL(advancedBlendingChanged(bool)), pLayerView,
        SLOT(onAdvancedBlendingChanged(bool)));
    connect(m_AdvancedBlendingOptionsPopup, SIGNAL(blendAmountChanged(bool)), pLayerView,
        SLOT(onBlendAmountChanged(bool)));
    setFixedHeight(RowHeight);
}

QWidget* OrvLayerBlendRow::createPassThroughPage()
{
    QWidget* pPage = new QWidget;
    QHBoxLayout* pLayout = createTightRow(pPage);
    QPushButton* pButton = createPassThroughButton(m_LayerView);
    pButton->setChecked(true);
    // The page shows while the mode is on; a click leaves it, and the mode decides about the page.
    connect(pButton, &QPushButton::clicked, pButton, [pButton] { pButton->setChecked(true); });
    pLayout->addWidget(pButton);
    pLayout->addWidget(new QLabel(tr("Pass Through")));
    pLayout->addStretch();
    return pPage;
}

QWidget* OrvLayerBlendRow::createBlendPage()
{
    QWidget* pPage = new QWidget;
    m_BlendLayout = createTightRow(pPage);

    m_PassThroughButton = createPassThroughButton(m_LayerView);
    m_PassThroughButton->hide();

    m_AdvancedBlendingButton = new QPushButton;
    m_AdvancedBlendingButton->setFlat(true);
    m_AdvancedBlendingButton->setFocusPolicy(Qt::NoFocus);
    m_AdvancedBlendingButton->setFixedSize(AdvancedButtonSize, AdvancedButtonSize);
    m_AdvancedBlendingButton->setToolTip(OrvLayerView::tr("Advanced  blending options"));
    m_AdvancedBlendingButton->setStatusTip(OrvLayerView::tr("Advanced blending options"));
    m_AdvancedBlendingButton->setWhatsThis(OrvLayerView::tr("Advanced blending options"));
    connect(m_AdvancedBlendingButton, SIGNAL(released()), m_LayerView, SLOT(showAdvancedBlendingOptions()));
    setAdvancedIcon(false);

    m_BlendLayout->addStretch(1);
    m_BlendLayout->addWidget(m_AdvancedBlendingButton);
    m_BlendLayout->addWidget(m_PassThroughButton);
    return pPage;
}

void OrvLayerBlendRow::showLayer(OrvLayer* pLayer, OrvLayerStack* pLayerStack)
{
    forgetLayer();
    m_Layer = pLayer;
    m_LayerStack = pLayerStack;
    m_BlendNode = pLayer ? pLayer->blendNode() : OrvLayerManager::instance().dummyBlendNode();
    m_BlendModeWidget = addControlet(0, OrvMergeAttributes::BlendMode);
    m_BlendAmountWidget = addControlet(1, OrvMergeAttributes::Amount);
    m_AdvancedBlendingOptionsPopup->setBlendNode(pLayer ? m_BlendNode : nullptr);
    if (m_BlendNode) {
        connect(m_BlendNode, SIGNAL(userAttributeValueChanged(OrvCustomAttribute)), m_LayerView,
            SLOT(onUserAttributeChanged(OrvCustomAttribute)));
        connect(m_BlendNode, SIGNAL(userAttributeEnabledChanged(OrvCustomAttribute, QObject*)), m_LayerView,
            SLOT(onUserAttributeChanged(OrvCustomAttribute)));
    }
    refresh();
}

void OrvLayerBlendRow::refresh()
{
    const bool Modifiable = m_Layer && m_Layer->isBlendingModifiable();
    if (m_BlendModeWidget)
        m_BlendModeWidget->setEnabled(Modifiable);
    if (m_BlendAmountWidget && m_BlendNode)
        setAmountEnabled(m_BlendNode->userAttribute(OrvMergeAttributes::AmountEnabled).value().toBool());
    m_AdvancedBlendingButton->show();
    m_AdvancedBlendingButton->setEnabled(Modifiable);
    setAdvancedIcon(
        m_BlendNode && m_BlendNode->userAttribute(OrvMergeAttributes::AdvancedEnabled).value().toBool());

    const bool Group = showsGroup();
    m_PassThroughButton->setVisible(Group);
    m_PassThroughButton->setChecked(false);
    m_PassThroughButton->setEnabled(Modifiable);
    m_Pages->widget(PassThroughPage)->setEnabled(Modifiable);
    m_Pages->setCurrentIndex(
        Group && OrvLayerStreamUtils::isLayerGroupPassThrough(m_BlendNode) ? PassThroughPage : BlendPage);
}

bool OrvLayerBlendRow::showsGroup() const
{
    // Without a project there are no layers to miss.
    if (!m_Layer && !OrvProjectManager::instance().currentProject())
        return false;
    if (!m_Layer)
        report(__LINE__, "Layer is NULL");
    else if (!m_BlendNode)
        report(__LINE__, "BlendNode is NULL");
    else
        return m_LayerStack && OrvLayerStreamUtils::isLayerGroup(m_Layer, m_LayerStack);
    return false;
}

bool OrvLayerBlendRow::shows(const OrvLayer* pLayer, const OrvLayerStack* pLayerStack) const
{
    return m_Layer == pLayer && m_LayerStack == pLayerStack;
}

OrvLayer* OrvLayerBlendRow::layer() const
{
    return m_Layer;
}

void OrvLayerBlendRow::clear()
{
    forgetLayer();
    m_AdvancedBlendingOptionsPopup->setBlendNode(nullptr);
    m_PassThroughButton->hide();
    m_AdvancedBlendingButton->hide();
    m_Pages->setCurrentIndex(BlendPage);
}

void OrvLayerBlendRow::forgetLayer()
{
    for (QWidget* pWidget : {m_BlendModeWidget.data(), m_BlendAmountWidget.data()}) {
        if (!pWidget)
            continue;
        m_BlendLayout->removeWidget(pWidget);
        pWidget->hide();
        pWidget->deleteLater();
    }
    m_BlendModeWidget = nullptr;
    m_BlendAmountWidget = nullptr;
    if (m_BlendNode)
        disconnect(m_BlendNode, nullptr, m_LayerView, nullptr);
    m_BlendNode = nullptr;
    m_Layer = nullptr;
    m_LayerStack = nullptr;
}

QWidget* OrvLayerBlendRow::addControlet(int Position, const QString& AttributeName)
{
    constexpr int LabelWidth = 32, Spacing = 1, MinimumEditorWidth = 130, MaximumEditorWidth = 140;
    constexpr int Style
        = OrvUserAttributeControletManager::NoLabel | OrvUserAttributeControletManager::Compact;
    if (!m_BlendNode || !m_BlendNode->exists(AttributeName))
        return nullptr;
    auto* pBinding = new OrvLayerBlendBinding(m_BlendNode, AttributeName, m_Layer, m_LayerStack);
    QWidget* pWidget = OrvUserAttributeControletManager::createBound(AttributeName, pBinding,
        m_Pages->widget(BlendPage), LabelWidth, Spacing, MinimumEditorWidth, MaximumEditorWidth, Style);
    m_BlendLayout->insertWidget(Position, pWidget);
    pWidget->show();
    return pWidget;
}

void OrvLayerBlendRow::showAdvancedOptions()
{
    report(__LINE__, "Showing advanced blending options");
    m_AdvancedBlendingOptionsPopup->popup();
}

void OrvLayerBlendRow::setAdvancedIcon(bool Enabled)
{
    m_AdvancedBlendingButton->setIcon(
        OrvIcon::createIconFromFilename(Enabled ? QStringLiteral("advancedBlendingEnabled.png")
                                                : QStringLiteral("advancedBlendingDisabled.png")));
}

void OrvLayerBlendRow::setAmountEnabled(bool Enabled)
{
    if (!m_BlendAmountWidget) {
        report(__LINE__, "this->m_BlendAmountWidget is NULL");
        return;
    }
    m_BlendAmountWidget->setEnabled(Enabled && isAmountModifiable());
}

bool OrvLayerBlendRow::isAmountModifiable() const
{
    const auto* pMultiChannelLayer = qobject_cast<const OrvMultiChannelLayer*>(m_Layer.data());
    if (pMultiChannelLayer && m_LayerStack && m_BlendNode)
        return pMultiChannelLayer->isBlendingAmountModifiable(m_LayerStack->currentStreamName(m_BlendNode));
    return m_Layer && m_Layer->isBlendingAmountModifiable();
}

void OrvLayerBlendRow::followAttribute(const OrvCustomAttribute& Attribute)
{
    if (Attribute.name() == OrvMergeAttributes::AdvancedEnabled)
        setAdvancedIcon(Attribute.value().toBool());
    else if (Attribute.name() == OrvMergeAttributes::AmountEnabled)
        setAmountEnabled(Attribute.value().toBool());
    else if (Attribute.name() == OrvMergeAttributes::PassThrough)
        refresh();
}

#include "moc_OrvLayerBlendRow.cpp"

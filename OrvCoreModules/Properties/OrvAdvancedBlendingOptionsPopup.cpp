#include "OrvCoreModules/Properties/OrvAdvancedBlendingOptionsPopup.h"

#include "OrvCoreModules/Properties/OrvAttributeBinding.h"
#include "OrvCoreModules/Widgets/OrvMoveWidgetToCursor.h"
#include "OrvCoreModules/Widgets/OrvRangeSlider.h"

#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Network/OrvSnNames.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include <QtWidgets/QCheckBox>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QToolButton>

namespace {

constexpr int AllChannels = 15;

QVariantList listFromRange(const OrvRangeSlider::Range& Range)
{
    return {Range[0], Range[1], Range[2], Range[3]};
}

} // namespace

OrvAdvancedBlendingOptionsPopup::OrvAdvancedBlendingOptionsPopup(QWidget* pParent)
    : QFrame(pParent, Qt::Popup)
{
    setFrameShape(StyledPanel);
    setWindowTitle(tr("Advanced Blending"));
    QVBoxLayout* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(10, 8, 10, 10);
    pLayout->setSpacing(4);
    m_pAmount = addCheckBox(pLayout, tr("Use the blend amount"), tr("Off: the layer always shows fully"));
    m_pAdvanced = addCheckBox(pLayout, tr("Advanced blending"),
        tr("Limits where the layer shows, and what it writes, as set below"));
    m_pOptions = createOptions();
    pLayout->addWidget(m_pOptions);
    connect(m_pAmount, &QCheckBox::clicked, this, [this](bool Checked) {
        m_pAmountBinding->edit(Checked);
        Q_EMIT blendAmountChanged(Checked);
    });
    connect(m_pAdvanced, &QCheckBox::clicked, this, [this](bool Checked) {
        m_pAdvancedBinding->edit(Checked);
        Q_EMIT advancedBlendingChanged(Checked);
    });
    connect(&OrvShaderNetworkManager::instance(), &OrvShaderNetworkManager::nodeDeregistered, this,
        &OrvAdvancedBlendingOptionsPopup::onNodeDeregistered);
    showAll();
}

OrvAdvancedBlendingOptionsPopup::~OrvAdvancedBlendingOptionsPopup() = default;

QCheckBox* OrvAdvancedBlendingOptionsPopup::addCheckBox(
    QVBoxLayout* pLayout, const QString& Text, const QString& ToolTip)
{
    QCheckBox* pBox = new QCheckBox(Text, this);
    pBox->setToolTip(ToolTip);
    pLayout->addWidget(pBox);
    return pBox;
}

QWidget* OrvAdvancedBlendingOptionsPopup::createOptions()
{
    QWidget* pOptions = new QWidget(this);
    QVBoxLayout* pLayout = new QVBoxLayout(pOptions);
    pLayout->setContentsMargins(0, 4, 0, 0);
    pLayout->setSpacing(4);
    const QString Usage = tr("\nAlt splits a pair of handles, a double click shows all tones");
    m_pOverRange
        = addRange(pLayout, tr("Show where this layer is"), tr("Tones of the layer that show") + Usage);
    m_pBaseRange = addRange(pLayout, tr("Show where the layers below are"),
        tr("Tones below the layer above which it shows") + Usage);

    QHBoxLayout* pRow = new QHBoxLayout;
    pRow->setSpacing(2);
    pRow->addWidget(new QLabel(tr("Channels"), pOptions));
    pRow->addStretch();
    const QString Names[4] = {tr("R"), tr("G"), tr("B"), tr("A")};
    for (int Index = 0; Index < 4; ++Index) {
        QToolButton* pButton = new QToolButton(pOptions);
        pButton->setText(Names[Index]);
        pButton->setCheckable(true);
        pButton->setFixedSize(24, 22);
        pButton->setToolTip(tr("Write this component"));
        connect(pButton, &QToolButton::clicked, this, &OrvAdvancedBlendingOptionsPopup::editChannels);
        pRow->addWidget(pButton);
        m_Channels[Index] = pButton;
    }
    QPushButton* pReset = new QPushButton(tr("Reset"), pOptions);
    pReset->setFixedHeight(22);
    pReset->setAutoDefault(false);
    connect(pReset, &QPushButton::clicked, this, &OrvAdvancedBlendingOptionsPopup::reset);
    pRow->addSpacing(8);
    pRow->addWidget(pReset);
    pLayout->addSpacing(2);
    pLayout->addLayout(pRow);
    return pOptions;
}

OrvRangeSlider* OrvAdvancedBlendingOptionsPopup::addRange(
    QVBoxLayout* pLayout, const QString& Title, const QString& ToolTip)
{
    pLayout->addWidget(new QLabel(Title, pLayout->parentWidget()));
    OrvRangeSlider* pSlider = new OrvRangeSlider(pLayout->parentWidget());
    pSlider->setMinimumWidth(240);
    pSlider->setToolTip(ToolTip);
    pLayout->addWidget(pSlider);
    const auto binding
        = [this, pSlider] { return pSlider == m_pOverRange ? m_pOverBinding : m_pBaseBinding; };
    connect(pSlider, &OrvRangeSlider::editBegun, this, [binding] { binding()->beginGesture(); });
    connect(pSlider, &OrvRangeSlider::rangeEdited, this,
        [binding, pSlider] { binding()->edit(listFromRange(pSlider->range())); });
    connect(pSlider, &OrvRangeSlider::editFinished, this, [binding] { binding()->finishGesture(); });
    return pSlider;
}

OrvSnBaseNode* OrvAdvancedBlendingOptionsPopup::blendNode() const
{
    return m_pNode;
}

void OrvAdvancedBlendingOptionsPopup::setBlendNode(OrvSnBaseNode* pNode)
{
    if (m_pNode == pNode && (pNode || !m_pAmountBinding))
        return;
    m_pNode = pNode;
    for (OrvValueBinding** ppBinding :
        {&m_pAdvancedBinding, &m_pAmountBinding, &m_pOverBinding, &m_pBaseBinding, &m_pChannelBinding})
        delete std::exchange(*ppBinding, nullptr);
    if (pNode) {
        m_pAdvancedBinding = bind(OrvMergeAttributes::AdvancedEnabled, tr("Advanced Blending"));
        m_pAmountBinding = bind(OrvMergeAttributes::AmountEnabled, tr("Use of Amount"));
        m_pOverBinding = bind(OrvMergeAttributes::BlendOverRange, tr("Tones of the Layer"));
        m_pBaseBinding = bind(OrvMergeAttributes::BlendBaseRange, tr("Tones Below"));
        m_pChannelBinding = bind(OrvMergeAttributes::BlendChannels, tr("Written Components"));
    }
    showAll();
}

OrvValueBinding* OrvAdvancedBlendingOptionsPopup::bind(const QString& AttributeName, const QString& Label)
{
    OrvValueBinding* pBinding = new OrvAttributeBinding(m_pNode, AttributeName, this, Label);
    connect(pBinding, &OrvValueBinding::valueChanged, this, &OrvAdvancedBlendingOptionsPopup::showAll);
    connect(pBinding, &OrvValueBinding::writableChanged, this, &OrvAdvancedBlendingOptionsPopup::showAll);
    return pBinding;
}

void OrvAdvancedBlendingOptionsPopup::onNodeDeregistered(OrvShaderNetwork*, OrvSnBaseNode* pNode)
{
    if (pNode == m_pNode)
        setBlendNode(nullptr);
}

void OrvAdvancedBlendingOptionsPopup::showCheckBox(QCheckBox* pBox, const OrvValueBinding* pBinding)
{
    pBox->setEnabled(pBinding && pBinding->isWritable());
    pBox->setChecked(pBinding && pBinding->value().toInt() != 0);
}

void OrvAdvancedBlendingOptionsPopup::showRange(OrvRangeSlider* pSlider, const OrvValueBinding* pBinding)
{
    pSlider->setEnabled(pBinding && pBinding->isWritable());
    const QVariantList Values = pBinding ? pBinding->value().toList() : QVariantList();
    if (Values.size() == 4)
        pSlider->setRange(
            {Values[0].toDouble(), Values[1].toDouble(), Values[2].toDouble(), Values[3].toDouble()});
    else
        pSlider->setRange({0.0, 0.0, 1.0, 1.0});
}

void OrvAdvancedBlendingOptionsPopup::showAll()
{
    showCheckBox(m_pAmount, m_pAmountBinding);
    showCheckBox(m_pAdvanced, m_pAdvancedBinding);
    m_pOptions->setEnabled(m_pAdvanced->isEnabled() && m_pAdvanced->isChecked());
    showRange(m_pOverRange, m_pOverBinding);
    showRange(m_pBaseRange, m_pBaseBinding);
    const bool Writable = m_pChannelBinding && m_pChannelBinding->isWritable();
    const int Channels = Writable ? m_pChannelBinding->value().toInt() : AllChannels;
    for (int Index = 0; Index < 4; ++Index) {
        m_Channels[Index]->setEnabled(Writable);
        m_Channels[Index]->setChecked(Channels & (1 << Index));
    }
}

void OrvAdvancedBlendingOptionsPopup::editChannels()
{
    int Channels = 0;
    for (int Index = 0; Index < 4; ++Index)
        Channels |= m_Channels[Index]->isChecked() ? 1 << Index : 0;
    m_pChannelBinding->edit(Channels);
}

void OrvAdvancedBlendingOptionsPopup::reset()
{
    const OrvUndoManager::AutoMacro Macro(tr("Reset Advanced Blending"));
    const QVariantList Whole{0.0, 0.0, 1.0, 1.0};
    m_pOverBinding->edit(Whole);
    m_pBaseBinding->edit(Whole);
    m_pChannelBinding->edit(AllChannels);
}

void OrvAdvancedBlendingOptionsPopup::popup()
{
    adjustSize();
    OrvMoveWidgetToCursor(this, QPoint(4, 4));
    show();
}

#include "moc_OrvAdvancedBlendingOptionsPopup.cpp"

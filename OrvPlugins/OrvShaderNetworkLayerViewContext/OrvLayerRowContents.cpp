#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerRowContents.h"

#include "OrvCoreModules/Menus/OrvToggleAction.h"
#include "OrvCoreModules/Widgets/OrvEditLabel.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerComponentPushButton.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerRowIcons.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerStackPopupButton.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewItemRowWidget.h"

#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QToolButton>

namespace {

constexpr int IconSize = 16;
constexpr int ButtonSize = 20;
constexpr int Spacing = 1;
constexpr int WidthForFreeColumns = 290; // of a tree; leaves names of some 100 pixels
const QSize TagSize(8, 14);
const QSize CostSize(4, 16);

enum Column {
    VisibilityColumn,
    NameColumn,
    TagColumn,
    PaintColumn,
    MaskColumn,
    AdjustmentColumn,
    SharedColumn,
    SharedChannelColumn,
    LockColumn,
    CostColumn
};

template <typename Button>
Button* prepared(Button* pButton)
{
    pButton->setFocusPolicy(Qt::NoFocus);
    pButton->setIconSize({IconSize, IconSize});
    pButton->setFixedSize(ButtonSize, ButtonSize);
    return pButton;
}

QToolButton* createToolButton(QWidget* pRow)
{
    QToolButton* pButton = prepared(new QToolButton(pRow));
    pButton->setAutoRaise(true);
    return pButton;
}

QLabel* createLabel(QWidget* pRow, const QSize& Size)
{
    QLabel* pLabel = new QLabel(pRow);
    pLabel->setFixedSize(Size);
    return pLabel;
}

void keepColumnFree(QWidget* pMark, bool Keep)
{
    QSizePolicy Policy = pMark->sizePolicy();
    Policy.setRetainSizeWhenHidden(Keep);
    pMark->setSizePolicy(Policy);
}

} // namespace

OrvLayerRowContents::OrvLayerRowContents(QWidget* pRow)
    : pLayout(new QGridLayout(pRow))
{
    pVisibilityButton = createToolButton(pRow);
    pVisibilityButton->setStyleSheet(
        QStringLiteral("QToolButton { border: none; } QToolButton:hover { border: none; } "
                       "QToolButton:pressed { border: none; }"));
    pBakePointButton = prepared(new OrvLayerComponentPushButton(pRow));
    pNameLabel = new OrvEditLabel(pRow);
    pColorTag = createLabel(pRow, TagSize);
    pPaintButton = prepared(new OrvLayerComponentPushButton(pRow));
    pMaskStackButton = prepared(new OrvLayerStackPopupButton(pRow));
    pMaskStackButton->setIcon(OrvLayerRowIcons::maskStack());
    pMaskButton = prepared(new OrvLayerComponentPushButton(pRow));
    pAdjustmentStackButton = prepared(new OrvLayerStackPopupButton(pRow));
    pAdjustmentStackButton->setIcon(OrvLayerRowIcons::adjustmentStack());
    pSharedButton = createToolButton(pRow);
    pSharedButton->setIcon(OrvLayerRowIcons::shared());
    pSharedButton->setToolTip(OrvLayerViewItemRowWidget::tr("Show the layers that share with this one"));
    pSharedChannelButton = createToolButton(pRow);
    pSharedChannelButton->setIcon(OrvLayerRowIcons::sharedChannel());
    pSharedChannelButton->setToolTip(OrvLayerViewItemRowWidget::tr("Show the shared channel"));
    pLockAction = new OrvToggleAction(OrvLayerRowIcons::lock(true), OrvLayerRowIcons::lock(false), pRow);
    QToolButton* pLockButton = createToolButton(pRow);
    pLockButton->setDefaultAction(pLockAction);
    pCost = createLabel(pRow, CostSize);

    pLayout->setContentsMargins(1, 1, 1, 1);
    pLayout->setSpacing(Spacing);
    pLayout->setColumnStretch(NameColumn, 1);
    pLayout->addWidget(pVisibilityButton, 0, VisibilityColumn);
    pLayout->addWidget(pNameLabel, 0, NameColumn);
    pLayout->addWidget(pColorTag, 0, TagColumn);
    // A bake point has no paint: its button stands where that of the paint would.
    pLayout->addWidget(pBakePointButton, 0, PaintColumn);
    pLayout->addWidget(pPaintButton, 0, PaintColumn);
    // A mask is a stack or it is none: the two buttons are never there together.
    pLayout->addWidget(pMaskStackButton, 0, MaskColumn);
    pLayout->addWidget(pMaskButton, 0, MaskColumn);
    pLayout->addWidget(pAdjustmentStackButton, 0, AdjustmentColumn);
    pLayout->addWidget(pSharedButton, 0, SharedColumn);
    pLayout->addWidget(pSharedChannelButton, 0, SharedChannelColumn);
    pLayout->addWidget(pLockButton, 0, LockColumn);
    pLayout->addWidget(pCost, 0, CostColumn);
}

void OrvLayerRowContents::fitTo(int TreeWidth)
{
    for (QWidget* pMark : std::initializer_list<QWidget*>{
             pMaskStackButton, pMaskButton, pAdjustmentStackButton, pSharedButton, pSharedChannelButton})
        keepColumnFree(pMark, TreeWidth >= WidthForFreeColumns);
}

void OrvLayerRowContents::show()
{
    const QWidget* pRow = pLayout->parentWidget();
    for (QWidget* pChild : pRow->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (!pChild->testAttribute(Qt::WA_WState_ExplicitShowHide))
            pChild->show();
    }
    pLayout->activate();
}

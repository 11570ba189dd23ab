#include "OrvCoreModules/Window/OrvCustomFusionStyle.h"

#include "OrvCoreModules/Window/OrvStyleShapes.h"

#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QStyleFactory>
#include <QtWidgets/QStyleOption>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QToolTip>

using namespace OrvStyleShapes;

namespace {

constexpr int ScrollBarExtent = 12;
constexpr int ScrollBarSliderMinimum = 28;
constexpr int RowPadding = 3; // of item views and menus, above and below the text
constexpr int ComboArrowWidth = 16;
constexpr int ComboTextMargin = 3;
constexpr int ComboFrame = 2;
constexpr int TitleButtonsWidth = 60; // beyond what stands beside the text

QRect scrollBarRect(const QStyleOptionSlider& Option, QStyle::SubControl Sub)
{
    // A bar without arrow buttons: the groove is all of it.
    const bool Horizontal = Option.orientation == Qt::Horizontal;
    const int Length = Horizontal ? Option.rect.width() : Option.rect.height();
    const qint64 Range = qint64(Option.maximum) - Option.minimum;
    int SliderLength = Length;
    if (Range > 0) {
        const qint64 Page = qMax(1, Option.pageStep);
        const int Shown = int(qint64(Length) * Page / (Range + Page));
        SliderLength = qBound(qMin(Length, ScrollBarSliderMinimum), Shown, Length);
    }
    const int Start = QStyle::sliderPositionFromValue(
        Option.minimum, Option.maximum, Option.sliderPosition, Length - SliderLength, Option.upsideDown);
    int From = 0;
    int Extent = 0;
    switch (Sub) {
    case QStyle::SC_ScrollBarGroove:
        Extent = Length;
        break;
    case QStyle::SC_ScrollBarSlider:
        From = Start;
        Extent = SliderLength;
        break;
    case QStyle::SC_ScrollBarSubPage:
        Extent = Start;
        break;
    case QStyle::SC_ScrollBarAddPage:
        From = Start + SliderLength;
        Extent = Length - From;
        break;
    default:
        return {};
    }
    const QRect Rect = Horizontal ? QRect(From, 0, Extent, Option.rect.height())
                                  : QRect(0, From, Option.rect.width(), Extent);
    return QStyle::visualRect(Option.direction, Option.rect, Rect.translated(Option.rect.topLeft()));
}

Qt::ArrowType arrowOf(QStyle::PrimitiveElement Element)
{
    switch (Element) {
    case QStyle::PE_IndicatorArrowUp:
    case QStyle::PE_IndicatorSpinUp:
        return Qt::UpArrow;
    case QStyle::PE_IndicatorArrowLeft:
        return Qt::LeftArrow;
    case QStyle::PE_IndicatorArrowRight:
        return Qt::RightArrow;
    default:
        return Qt::DownArrow;
    }
}

} // namespace

OrvCustomFusionStyle::OrvCustomFusionStyle()
    : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion")))
{
}

QColor OrvCustomFusionStyle::windowColor()
{
    return {0x35, 0x35, 0x35};
}
QColor OrvCustomFusionStyle::baseColor()
{
    return {0x2b, 0x2b, 0x2b};
}
QColor OrvCustomFusionStyle::textColor()
{
    return {0xdc, 0xdc, 0xdc};
}
QColor OrvCustomFusionStyle::borderColor()
{
    return {0x1f, 0x1f, 0x1f};
}
QColor OrvCustomFusionStyle::accentColor()
{
    return {0x4b, 0x8b, 0xd0};
}

QPalette OrvCustomFusionStyle::standardPalette() const
{
    const QColor DisabledText(0x7a, 0x7a, 0x7a);
    QPalette Palette(textColor(), QColor(0x46, 0x46, 0x46), QColor(0x60, 0x60, 0x60),
        QColor(0x24, 0x24, 0x24), QColor(0x3c, 0x3c, 0x3c), textColor(), Qt::white, baseColor(),
        windowColor());
    Palette.setColor(QPalette::AlternateBase, QColor(0x30, 0x30, 0x30));
    Palette.setColor(QPalette::ButtonText, textColor());
    Palette.setColor(QPalette::ToolTipBase, QColor(0x22, 0x22, 0x22));
    Palette.setColor(QPalette::ToolTipText, textColor());
    Palette.setColor(QPalette::PlaceholderText, QColor(0x8c, 0x8c, 0x8c));
    Palette.setColor(QPalette::Shadow, QColor(0x14, 0x14, 0x14));
    Palette.setColor(QPalette::Highlight, accentColor().darker(150));
    Palette.setColor(QPalette::Inactive, QPalette::Highlight, QColor(0x41, 0x54, 0x69));
    Palette.setColor(QPalette::HighlightedText, Qt::white);
    Palette.setColor(QPalette::Link, accentColor().lighter(125));
    Palette.setColor(QPalette::LinkVisited, accentColor().lighter(125));
    for (const QPalette::ColorRole Role :
        {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::HighlightedText})
        Palette.setColor(QPalette::Disabled, Role, DisabledText);
    Palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(0x48, 0x48, 0x48));
    Palette.setColor(QPalette::Disabled, QPalette::Base, windowColor());
    return Palette;
}

void OrvCustomFusionStyle::polish(QPalette& Palette)
{
    Palette = standardPalette();
}

void OrvCustomFusionStyle::polish(QApplication* pApplication)
{
    QProxyStyle::polish(pApplication);
    QToolTip::setPalette(standardPalette());
}

void OrvCustomFusionStyle::polish(QWidget* pWidget)
{
    QProxyStyle::polish(pWidget);
    const auto* pBox = qobject_cast<const QMessageBox*>(pWidget);
    auto* pGrid = pBox ? qobject_cast<QGridLayout*>(pBox->layout()) : nullptr;
    if (!pGrid)
        return;
    QFont TitleFont = pBox->font();
    TitleFont.setBold(true);
    const QString Title
        = QStringLiteral("%1 - %2").arg(pBox->windowTitle(), QGuiApplication::applicationDisplayName());
    const int TextColumn = pGrid->columnCount() - 1;
    pGrid->setColumnMinimumWidth(
        TextColumn, QFontMetrics(TitleFont).horizontalAdvance(Title) + TitleButtonsWidth);
}

int OrvCustomFusionStyle::pixelMetric(
    PixelMetric Metric, const QStyleOption* pOption, const QWidget* pWidget) const
{
    switch (Metric) {
    case PM_ScrollBarExtent:
        return ScrollBarExtent;
    case PM_ScrollBarSliderMin:
        return ScrollBarSliderMinimum;
    case PM_ScrollView_ScrollBarSpacing:
    case PM_ToolBarFrameWidth:
    case PM_TabBarTabShiftVertical:
    case PM_TabBarTabShiftHorizontal:
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
    case PM_TabBarBaseOverlap:
        return 0;
    case PM_DockWidgetSeparatorExtent:
    case PM_SplitterWidth:
        return 5;
    case PM_DockWidgetFrameWidth:
    case PM_MenuPanelWidth:
    case PM_ToolBarItemSpacing:
        return 1;
    case PM_ToolBarItemMargin:
    case PM_MenuVMargin:
        return 2;
    case PM_SmallIconSize:
    case PM_ListViewIconSize:
    case PM_TabBarIconSize:
    case PM_ButtonIconSize:
        return 16;
    case PM_ToolBarIconSize:
        return 20;
    case PM_TreeViewIndentation:
        return 16;
    case PM_TabBarTabVSpace:
        return 8;
    case PM_TabBarTabHSpace:
        return 18;
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
        return 15;
    case PM_LayoutHorizontalSpacing:
    case PM_LayoutVerticalSpacing:
        return 6;
    default:
        return QProxyStyle::pixelMetric(Metric, pOption, pWidget);
    }
}

int OrvCustomFusionStyle::styleHint(
    StyleHint Hint, const QStyleOption* pOption, const QWidget* pWidget, QStyleHintReturn* pReturn) const
{
    switch (Hint) {
    case SH_EtchDisabledText:
    case SH_DitherDisabledText:
    case SH_DialogButtonBox_ButtonsHaveIcons: // the themes of desktops are made for light windows
    case SH_ComboBox_Popup: // a list below the box rather than a menu over it
    case SH_ScrollBar_Transient:
        return 0;
    case SH_ItemView_ShowDecorationSelected:
    case SH_ToolBar_Movable:
        return 1;
    case SH_Slider_AbsoluteSetButtons:
        return Qt::LeftButton;
    case SH_Slider_PageSetButtons:
        return Qt::NoButton;
    case SH_Menu_SubMenuPopupDelay:
        return 150; // ms
    default:
        return QProxyStyle::styleHint(Hint, pOption, pWidget, pReturn);
    }
}

QSize OrvCustomFusionStyle::sizeFromContents(
    ContentsType Type, const QStyleOption* pOption, const QSize& Size, const QWidget* pWidget) const
{
    QSize Result = QProxyStyle::sizeFromContents(Type, pOption, Size, pWidget);
    if (Type == CT_ItemViewItem)
        Result.rheight() = qMax(Result.height(), pOption->fontMetrics.height() + 2 * RowPadding);
    if (Type == CT_ComboBox)
        Result.setWidth(Size.width() + 2 * ComboTextMargin + ComboArrowWidth);
    return Result;
}

QRect OrvCustomFusionStyle::subControlRect(
    ComplexControl Control, const QStyleOptionComplex* pOption, SubControl Sub, const QWidget* pWidget) const
{
    if (Control == CC_ScrollBar) {
        if (const auto* pSlider = qstyleoption_cast<const QStyleOptionSlider*>(pOption))
            return scrollBarRect(*pSlider, Sub);
    }
    if (Control == CC_ComboBox && Sub == SC_ComboBoxEditField) {
        const QRect Field
            = pOption->rect.adjusted(ComboTextMargin, ComboFrame, -ComboArrowWidth, -ComboFrame);
        return visualRect(pOption->direction, pOption->rect, Field);
    }
    return QProxyStyle::subControlRect(Control, pOption, Sub, pWidget);
}

void OrvCustomFusionStyle::drawPrimitive(
    PrimitiveElement Element, const QStyleOption* pOption, QPainter* pPainter, const QWidget* pWidget) const
{
    switch (Element) {
    case PE_PanelButtonCommand: {
        // In a menu it stands behind the icon of a checked entry, and is all that tells that it is checked.
        if (qobject_cast<const QMenu*>(pWidget)) {
            QStyleOption Checked = *pOption;
            Checked.state = State_Enabled | State_On;
            if (pOption->state & State_Selected)
                Checked.state |= State_MouseOver;
            drawToolButtonPanel(pPainter, &Checked);
            return;
        }
        const auto* pButton = qstyleoption_cast<const QStyleOptionButton*>(pOption);
        drawButtonPanel(
            pPainter, pOption, pButton && (pButton->features & QStyleOptionButton::DefaultButton));
        return;
    }
    case PE_PanelButtonTool:
        drawToolButtonPanel(pPainter, pOption);
        return;
    case PE_PanelLineEdit: {
        const auto* pFrame = qstyleoption_cast<const QStyleOptionFrame*>(pOption);
        if (pFrame && pFrame->lineWidth > 0)
            drawFieldFrame(pPainter, pOption, true);
        return;
    }
    case PE_FrameLineEdit:
        drawFieldFrame(pPainter, pOption, false);
        return;
    case PE_Frame:
    case PE_FrameMenu:
    case PE_FrameTabWidget:
    case PE_FrameDockWidget:
        pPainter->save();
        pPainter->setPen(borderColor());
        pPainter->setBrush(Qt::NoBrush);
        pPainter->drawRect(pOption->rect.adjusted(0, 0, -1, -1));
        pPainter->restore();
        return;
    case PE_PanelMenu:
        pPainter->fillRect(pOption->rect, windowColor().darker(112));
        return;
    case PE_PanelTipLabel:
        pPainter->fillRect(pOption->rect, pOption->palette.toolTipBase());
        drawPrimitive(PE_Frame, pOption, pPainter, pWidget);
        return;
    case PE_FrameStatusBarItem:
    case PE_PanelStatusBar:
    case PE_FrameTabBarBase:
        return;
    case PE_FrameFocusRect:
        // Rows show their focus by their selection, push buttons by their border. Tool buttons that came to it
        // otherwise than by the keyboard would only distract.
        if (qobject_cast<const QToolButton*>(pWidget) && (pOption->state & State_KeyboardFocusChange))
            drawToolButtonFocus(pPainter, pWidget->rect());
        return;
    case PE_IndicatorCheckBox:
        drawCheckBox(pPainter, pOption);
        return;
    case PE_IndicatorRadioButton:
        drawRadioButton(pPainter, pOption);
        return;
    case PE_IndicatorBranch:
        drawBranch(pPainter, pOption);
        return;
    case PE_IndicatorArrowUp:
    case PE_IndicatorArrowDown:
    case PE_IndicatorArrowLeft:
    case PE_IndicatorArrowRight:
    case PE_IndicatorSpinUp:
    case PE_IndicatorSpinDown:
        drawArrow(pPainter, pOption->rect, arrowOf(Element),
            pOption->palette.color(pOption->state & State_Enabled ? QPalette::Active : QPalette::Disabled,
                QPalette::ButtonText));
        return;
    case PE_IndicatorDockWidgetResizeHandle:
        drawSplitterHandle(pPainter, pOption);
        return;
    default:
        QProxyStyle::drawPrimitive(Element, pOption, pPainter, pWidget);
    }
}

void OrvCustomFusionStyle::drawControl(
    ControlElement Element, const QStyleOption* pOption, QPainter* pPainter, const QWidget* pWidget) const
{
    switch (Element) {
    case CE_TabBarTabShape:
        if (const auto* pTab = qstyleoption_cast<const QStyleOptionTab*>(pOption)) {
            drawTab(pPainter, pTab);
            return;
        }
        break;
    case CE_HeaderSection:
        if (const auto* pHeader = qstyleoption_cast<const QStyleOptionHeader*>(pOption)) {
            drawHeaderSection(pPainter, pHeader);
            return;
        }
        break;
    case CE_HeaderEmptyArea:
        pPainter->fillRect(pOption->rect, windowColor().lighter(115));
        return;
    case CE_ProgressBarGroove:
        return;
    case CE_ProgressBarContents:
        if (const auto* pBar = qstyleoption_cast<const QStyleOptionProgressBar*>(pOption)) {
            drawProgress(pPainter, pBar);
            return;
        }
        break;
    case CE_Splitter:
        drawSplitterHandle(pPainter, pOption);
        return;
    case CE_ToolBar:
        pPainter->fillRect(pOption->rect, windowColor());
        return;
    case CE_MenuBarEmptyArea:
        pPainter->fillRect(pOption->rect, windowColor().darker(108));
        return;
    case CE_MenuBarItem:
        if (const auto* pItem = qstyleoption_cast<const QStyleOptionMenuItem*>(pOption)) {
            const bool Open = pItem->state & (State_Selected | State_Sunken);
            pPainter->fillRect(
                pItem->rect, Open ? pItem->palette.color(QPalette::Highlight) : windowColor().darker(108));
            drawItemText(pPainter, pItem->rect, Qt::AlignCenter | Qt::TextShowMnemonic | Qt::TextSingleLine,
                pItem->palette, pItem->state & State_Enabled, pItem->text, QPalette::ButtonText);
            return;
        }
        break;
    default:
        break;
    }
    QProxyStyle::drawControl(Element, pOption, pPainter, pWidget);
}

void OrvCustomFusionStyle::drawComplexControl(ComplexControl Control, const QStyleOptionComplex* pOption,
    QPainter* pPainter, const QWidget* pWidget) const
{
    if (Control == CC_ScrollBar || Control == CC_Slider) {
        const auto* pSlider = qstyleoption_cast<const QStyleOptionSlider*>(pOption);
        if (pSlider && Control == CC_ScrollBar) {
            drawScrollBar(pPainter, pSlider, scrollBarRect(*pSlider, SC_ScrollBarSlider));
            return;
        }
        if (pSlider && !(pSlider->subControls & SC_SliderTickmarks)) {
            drawSlider(pPainter, pSlider,
                proxy()->subControlRect(CC_Slider, pSlider, SC_SliderGroove, pWidget),
                proxy()->subControlRect(CC_Slider, pSlider, SC_SliderHandle, pWidget));
            return;
        }
    }
    if (Control == CC_ComboBox) {
        if (const auto* pCombo = qstyleoption_cast<const QStyleOptionComboBox*>(pOption)) {
            if (pCombo->editable)
                drawFieldFrame(pPainter, pCombo, true);
            else if (pCombo->frame || (pCombo->state & State_MouseOver))
                drawButtonPanel(pPainter, pCombo, false);
            QRect Arrow = pCombo->rect;
            Arrow.setLeft(Arrow.right() - ComboArrowWidth);
            drawArrow(pPainter, visualRect(pCombo->direction, pCombo->rect, Arrow), Qt::DownArrow,
                pCombo->palette.color(pCombo->state & State_Enabled ? QPalette::Active : QPalette::Disabled,
                    QPalette::ButtonText));
            return;
        }
    }
    if (Control == CC_SpinBox) {
        if (const auto* pSpinBox = qstyleoption_cast<const QStyleOptionSpinBox*>(pOption)) {
            if (pSpinBox->frame)
                drawFieldFrame(pPainter, pSpinBox, true);
            if (pSpinBox->buttonSymbols == QAbstractSpinBox::NoButtons)
                return;
            for (const SubControl Step : {SC_SpinBoxUp, SC_SpinBoxDown}) {
                QStyleOption Arrow(*pSpinBox);
                Arrow.rect = proxy()->subControlRect(CC_SpinBox, pSpinBox, Step, pWidget);
                const bool Possible = pSpinBox->stepEnabled
                    & (Step == SC_SpinBoxUp ? QAbstractSpinBox::StepUpEnabled
                                            : QAbstractSpinBox::StepDownEnabled);
                Arrow.state.setFlag(State_Enabled, Possible && (pSpinBox->state & State_Enabled));
                drawPrimitive(Step == SC_SpinBoxUp ? PE_IndicatorSpinUp : PE_IndicatorSpinDown, &Arrow,
                    pPainter, pWidget);
            }
            return;
        }
    }
    QProxyStyle::drawComplexControl(Control, pOption, pPainter, pWidget);
}

#include "moc_OrvCustomFusionStyle.cpp"

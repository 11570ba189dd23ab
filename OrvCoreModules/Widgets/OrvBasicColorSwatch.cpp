#include "OrvCoreModules/Widgets/OrvBasicColorSwatch.h"

#include "OrvCoreModules/Widgets/OrvPainting.h"

#include <QtGui/QHelpEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QToolTip>

namespace {

constexpr int CellEdge = 20;
constexpr int Margin = 2;

} // namespace

OrvBasicColorSwatch::OrvBasicColorSwatch(int CellCount, int RowCount, QWidget* pParent, Qt::WindowFlags Flags)
    : QWidget(pParent, Flags)
    , m_Cells(qMax(0, CellCount))
    , m_RowCount(qMax(1, RowCount))
{
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void OrvBasicColorSwatch::setColor(
    int Index, int Row, const QColor& Color, const QString& Name, bool CrossedOut, bool InvalidAllowed)
{
    const int Position = Row * columnCount() + Index;
    if (Position < 0 || Position >= m_Cells.size() || (!Color.isValid() && !InvalidAllowed))
        return;
    m_Cells[Position] = {Color, Name, true, CrossedOut, false};
    update();
}

QList<QColor> OrvBasicColorSwatch::checkedColors() const
{
    QList<QColor> Colors;
    for (const Cell& One : m_Cells) {
        if (One.Checked)
            Colors.append(One.Color);
    }
    return Colors;
}

void OrvBasicColorSwatch::setColorChecked(const QColor& Color, bool Checked)
{
    for (int Index = 0; Index < m_Cells.size(); ++Index) {
        if (m_Cells[Index].Filled && m_Cells[Index].Color == Color)
            setCellChecked(Index, Checked);
    }
}

void OrvBasicColorSwatch::setCellChecked(int Index, bool Checked)
{
    if (m_Cells[Index].Checked == Checked)
        return;
    m_Cells[Index].Checked = Checked;
    update();
    Q_EMIT colorChecked(m_Cells[Index].Color, Checked);
}

int OrvBasicColorSwatch::columnCount() const
{
    return (m_Cells.size() + m_RowCount - 1) / m_RowCount;
}

QSize OrvBasicColorSwatch::sizeHint() const
{
    return {columnCount() * CellEdge + 2 * Margin, m_RowCount * CellEdge + 2 * Margin};
}

QSize OrvBasicColorSwatch::minimumSizeHint() const
{
    return sizeHint();
}

QRect OrvBasicColorSwatch::cellRect(int Index) const
{
    const int Column = Index % columnCount(), Row = Index / columnCount();
    return QRect(Margin + Column * CellEdge, Margin + Row * CellEdge, CellEdge, CellEdge)
        .adjusted(2, 2, -2, -2);
}

int OrvBasicColorSwatch::cellAt(const QPoint& Position) const
{
    for (int Index = 0; Index < m_Cells.size(); ++Index) {
        if (m_Cells[Index].Filled && cellRect(Index).adjusted(-2, -2, 2, 2).contains(Position))
            return Index;
    }
    return -1;
}

void OrvBasicColorSwatch::activate(int Index)
{
    if (Index < 0 || Index >= m_Cells.size() || !m_Cells[Index].Filled)
        return;
    m_Current = Index;
    update();
    const QColor Color = m_Cells[Index].Color;
    if (m_Checkable)
        setCellChecked(Index, !m_Cells[Index].Checked);
    Q_EMIT colorPicked(Color);
}

bool OrvBasicColorSwatch::event(QEvent* pEvent)
{
    switch (pEvent->type()) {
    case QEvent::ToolTip: {
        const auto* pHelp = static_cast<QHelpEvent*>(pEvent);
        const int Index = cellAt(pHelp->pos());
        if (Index >= 0)
            QToolTip::showText(pHelp->globalPos(), m_Cells[Index].Name, this, cellRect(Index));
        else
            QToolTip::hideText();
        return true;
    }
    case QEvent::MouseMove:
    case QEvent::Leave: {
        const int Hovered
            = pEvent->type() == QEvent::Leave ? -1 : cellAt(static_cast<QMouseEvent*>(pEvent)->pos());
        if (std::exchange(m_Hovered, Hovered) != Hovered)
            update();
        break;
    }
    default:
        break;
    }
    return QWidget::event(pEvent);
}

void OrvBasicColorSwatch::paintEvent(QPaintEvent*)
{
    QPainter Painter(this);
    if (isWindow())
        Painter.fillRect(rect(), palette().window());
    Painter.setOpacity(isEnabled() ? 1.0 : 0.4);
    Painter.setRenderHint(QPainter::Antialiasing);
    for (int Index = 0; Index < m_Cells.size(); ++Index) {
        const Cell& One = m_Cells[Index];
        if (!One.Filled)
            continue;
        const QRectF Area = QRectF(cellRect(Index)).adjusted(0.5, 0.5, -0.5, -0.5);
        const bool Marked = Index == m_Hovered || (hasFocus() && Index == m_Current);
        Painter.setPen(QPen(
            Marked ? palette().color(QPalette::Text) : OrvPainting::frameColor(palette(), One.Checked), 1.0));
        Painter.setBrush(One.Color.isValid() ? One.Color : palette().color(QPalette::Base));
        Painter.drawRoundedRect(Area, 3.0, 3.0);
        if (One.CrossedOut) {
            Painter.setPen(QPen(QColor(208, 72, 72), 1.5));
            Painter.drawLine(Area.bottomLeft() + QPointF(2.5, -2.5), Area.topRight() + QPointF(-2.5, 2.5));
        }
        if (One.Checked) {
            Painter.setBrush(Qt::NoBrush);
            Painter.setPen(QPen(palette().color(QPalette::Highlight), 2.0));
            Painter.drawRoundedRect(Area.adjusted(-1.0, -1.0, 1.0, 1.0), 4.0, 4.0);
            const bool Dark = !One.Color.isValid() || qGray(One.Color.rgb()) < 128;
            Painter.setPen(QPen(Dark ? Qt::white : Qt::black, 1.6));
            const QPointF Middle = Area.center();
            const QPointF Mark[]
                = {Middle + QPointF(-3.5, 0.0), Middle + QPointF(-1.0, 3.0), Middle + QPointF(3.5, -3.0)};
            Painter.drawPolyline(Mark, 3);
        }
    }
}

void OrvBasicColorSwatch::mousePressEvent(QMouseEvent* pEvent)
{
    // A popup closes when pressed outside.
    if (isWindow() && !rect().contains(pEvent->pos()))
        QWidget::mousePressEvent(pEvent);
    else
        pEvent->accept();
}

void OrvBasicColorSwatch::mouseReleaseEvent(QMouseEvent* pEvent)
{
    if (pEvent->button() == Qt::LeftButton)
        activate(cellAt(pEvent->pos()));
}

void OrvBasicColorSwatch::keyPressEvent(QKeyEvent* pEvent)
{
    int Target = m_Current;
    switch (pEvent->key()) {
    case Qt::Key_Left:
        Target -= 1;
        break;
    case Qt::Key_Right:
        Target += 1;
        break;
    case Qt::Key_Up:
        Target -= columnCount();
        break;
    case Qt::Key_Down:
        Target += columnCount();
        break;
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        activate(m_Current);
        return;
    default:
        QWidget::keyPressEvent(pEvent);
        return;
    }
    if (Target >= 0 && Target < m_Cells.size() && m_Cells[Target].Filled) {
        m_Current = Target;
        update();
    }
}

#include "moc_OrvBasicColorSwatch.cpp"

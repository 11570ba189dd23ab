#include "OrvCoreModules/Widgets/OrvFilteredStringSelector.h"

#include "OrvCoreModules/Widgets/OrvPainting.h"

#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QStyledItemDelegate>
#include <QtWidgets/QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace {

constexpr int RowHeight = 22;
constexpr int StarWidth = 22;
constexpr int Margin = 6;
constexpr int PageRows = 10;
constexpr int StarredRole = Qt::UserRole + 1;
constexpr int StarShownRole = Qt::UserRole + 2;
const QColor StarColor(232, 178, 64);

QPolygonF star(const QPointF& Middle, qreal Radius)
{
    QPolygonF Shape;
    for (int Point = 0; Point < 10; ++Point) {
        const qreal Angle = -M_PI / 2.0 + Point * M_PI / 5.0;
        const qreal Length = Point % 2 ? Radius * 0.45 : Radius;
        Shape << Middle + QPointF(std::cos(Angle), std::sin(Angle)) * Length;
    }
    return Shape;
}

/// Draws the last part of a path first and what is above it dimmed behind it, as the eye looks for names.
class PathDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override
    {
        return {200, RowHeight};
    }

    void paint(
        QPainter* pPainter, const QStyleOptionViewItem& Option, const QModelIndex& Index) const override
    {
        const QString Text = Index.data(Qt::UserRole).toString();
        const QPalette& Palette = Option.palette;
        const QRect Row = Option.rect.adjusted(Margin, 0, -Margin, 0);
        if (Text.isEmpty()) {
            QFont Bold = Option.font;
            Bold.setBold(true);
            pPainter->setFont(Bold);
            pPainter->setPen(OrvPainting::dimTextColor(Palette));
            pPainter->drawText(Row, Qt::AlignLeft | Qt::AlignBottom, Index.data(Qt::DisplayRole).toString());
            return;
        }
        const bool Selected = Option.state & QStyle::State_Selected;
        if (Selected)
            pPainter->fillRect(Option.rect, Palette.highlight());
        const QString Name = Text.section(QLatin1Char('/'), -1);
        const QString Above
            = Text.section(QLatin1Char('/'), 0, -2).replace(QLatin1Char('/'), QStringLiteral(" / "));
        pPainter->setFont(Option.font);
        pPainter->setPen(Palette.color(Selected ? QPalette::HighlightedText : QPalette::Text));
        const QRect NameArea = Row.adjusted(Margin, 0, -StarWidth, 0);
        pPainter->drawText(NameArea, Qt::AlignLeft | Qt::AlignVCenter, Name);
        const int NameWidth = Option.fontMetrics.horizontalAdvance(Name) + 2 * Margin;
        if (!Selected)
            pPainter->setPen(OrvPainting::dimTextColor(Palette));
        const QRect AboveArea = NameArea.adjusted(NameWidth, 0, 0, 0);
        pPainter->drawText(AboveArea, Qt::AlignRight | Qt::AlignVCenter,
            Option.fontMetrics.elidedText(Above, Qt::ElideLeft, AboveArea.width()));
        if (Index.data(StarShownRole).toBool())
            paintStar(pPainter, Option, Index.data(StarredRole).toBool());
    }

private:
    static void paintStar(QPainter* pPainter, const QStyleOptionViewItem& Option, bool Starred)
    {
        const bool Hovered = Option.state & (QStyle::State_MouseOver | QStyle::State_Selected);
        if (!Starred && !Hovered)
            return;
        const QPointF Middle(Option.rect.right() - StarWidth / 2.0, Option.rect.center().y() + 0.5);
        pPainter->save();
        pPainter->setRenderHint(QPainter::Antialiasing);
        pPainter->setPen(QPen(StarColor, 1.0));
        pPainter->setBrush(Starred ? QBrush(StarColor) : QBrush(Qt::NoBrush));
        pPainter->drawPolygon(star(Middle, 6.0));
        pPainter->restore();
    }
};

/// How well a path answers to the first word typed: the lower, the better. Names count more than what is
/// above them.
int rank(const QString& Text, const QString& FirstWord)
{
    const QString Name = Text.section(QLatin1Char('/'), -1);
    if (Name.startsWith(FirstWord, Qt::CaseInsensitive))
        return 0;
    const int Position = Name.indexOf(FirstWord, 0, Qt::CaseInsensitive);
    if (Position > 0)
        return Name.at(Position - 1).isLetterOrNumber() ? 2 : 1;
    return 3;
}

} // namespace

OrvFilteredStringSelector::OrvFilteredStringSelector(QWidget* pParent)
    : QWidget(pParent)
{
    m_pFilter = new QLineEdit(this);
    m_pFilter->setPlaceholderText(tr("Type to find"));
    m_pFilter->setClearButtonEnabled(true);
    m_pFilter->installEventFilter(this);
    m_pList = new QListWidget(this);
    m_pList->setItemDelegate(new PathDelegate(m_pList));
    m_pList->setUniformItemSizes(true);
    m_pList->setMouseTracking(true);
    m_pList->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_pList->setFocusPolicy(Qt::NoFocus);
    m_pList->viewport()->installEventFilter(this);
    setFocusProxy(m_pFilter);

    QVBoxLayout* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->setSpacing(4);
    pLayout->addWidget(m_pFilter);
    pLayout->addWidget(m_pList, 1);
    connect(m_pFilter, &QLineEdit::textChanged, this, [this] {
        // What is typed asks for its best answer.
        m_pList->clear();
        refill();
    });
}

void OrvFilteredStringSelector::setSections(const QVector<QPair<QString, QStringList>>& Sections)
{
    m_Sections = Sections;
    refill();
}

void OrvFilteredStringSelector::setStarsShown(bool Shown)
{
    m_StarsShown = Shown;
    refill();
}

void OrvFilteredStringSelector::setStarred(const QStringList& Texts)
{
    m_Starred = Texts;
    refill();
}

QString OrvFilteredStringSelector::filter() const
{
    return m_pFilter->text();
}

void OrvFilteredStringSelector::setFilter(const QString& Words)
{
    m_pFilter->setText(Words);
}

QString OrvFilteredStringSelector::currentText() const
{
    const QListWidgetItem* pItem = m_pList->currentItem();
    return pItem ? pItem->data(Qt::UserRole).toString() : QString();
}

QStringList OrvFilteredStringSelector::shownTexts() const
{
    QStringList Texts;
    for (int Row = 0; Row < m_pList->count(); ++Row) {
        const QString Text = m_pList->item(Row)->data(Qt::UserRole).toString();
        if (!Text.isEmpty())
            Texts.append(Text);
    }
    return Texts;
}

QStringList OrvFilteredStringSelector::matches() const
{
    const QStringList Words = filter().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    QStringList Found;
    for (const auto& Section : m_Sections)
        Found += Section.second;
    Found.removeDuplicates();
    const auto lacksWord = [&Words](const QString& Text) {
        return std::any_of(Words.begin(), Words.end(),
            [&Text](const QString& Word) { return !Text.contains(Word, Qt::CaseInsensitive); });
    };
    Found.erase(std::remove_if(Found.begin(), Found.end(), lacksWord), Found.end());
    std::stable_sort(Found.begin(), Found.end(), [&Words](const QString& First, const QString& Second) {
        return rank(First, Words.first()) < rank(Second, Words.first());
    });
    return Found;
}

void OrvFilteredStringSelector::refill()
{
    const int RowBefore = qMax(0, m_pList->currentRow());
    const QString TextBefore = currentText();
    m_pList->clear();
    if (filter().trimmed().isEmpty()) {
        for (const auto& Section : qAsConst(m_Sections)) {
            if (Section.second.isEmpty())
                continue;
            addTitle(Section.first);
            for (const QString& Text : Section.second)
                addText(Text);
        }
    } else {
        for (const QString& Text : matches())
            addText(Text);
    }
    // The same text, at the place nearest to where it stood; else the first.
    int Best = -1;
    for (int Row = 0; Row < m_pList->count(); ++Row) {
        const QString Text = m_pList->item(Row)->data(Qt::UserRole).toString();
        if (!Text.isEmpty() && Text == TextBefore
            && (Best < 0 || qAbs(Row - RowBefore) < qAbs(Best - RowBefore)))
            Best = Row;
    }
    if (Best >= 0)
        m_pList->setCurrentRow(Best);
    else
        moveCurrent(1);
}

void OrvFilteredStringSelector::addTitle(const QString& Title)
{
    QListWidgetItem* pItem = new QListWidgetItem(Title, m_pList);
    pItem->setFlags(Qt::ItemIsEnabled);
}

void OrvFilteredStringSelector::addText(const QString& Text)
{
    QListWidgetItem* pItem = new QListWidgetItem(m_pList);
    pItem->setData(Qt::UserRole, Text);
    pItem->setData(StarredRole, m_Starred.contains(Text));
    pItem->setData(StarShownRole, m_StarsShown);
    pItem->setData(Qt::AccessibleTextRole, Text);
}

void OrvFilteredStringSelector::moveCurrent(int Steps)
{
    const int Direction = Steps < 0 ? -1 : 1;
    int Row = m_pList->currentRow(), Reached = -1;
    for (Row += Direction; Row >= 0 && Row < m_pList->count() && Steps != 0; Row += Direction) {
        if (m_pList->item(Row)->data(Qt::UserRole).toString().isEmpty())
            continue;
        Reached = Row;
        Steps -= Direction;
    }
    if (Reached < 0)
        return;
    m_pList->setCurrentRow(Reached);
    // The title above the first text comes into view with it.
    if (Reached == 1)
        m_pList->scrollToTop();
}

void OrvFilteredStringSelector::toggleStar(QListWidgetItem* pItem)
{
    const QString Text = pItem ? pItem->data(Qt::UserRole).toString() : QString();
    if (Text.isEmpty() || !m_StarsShown)
        return;
    const bool Starred = m_Starred.removeAll(Text) == 0;
    if (Starred)
        m_Starred.append(Text);
    refill();
    Q_EMIT starToggled(Text, Starred);
}

bool OrvFilteredStringSelector::isOnStar(const QPoint& Position) const
{
    return m_StarsShown && Position.x() > m_pList->viewport()->width() - StarWidth - 2;
}

bool OrvFilteredStringSelector::keyPressed(QKeyEvent* pEvent)
{
    switch (pEvent->key()) {
    case Qt::Key_Up:
        moveCurrent(-1);
        return true;
    case Qt::Key_Down:
        moveCurrent(1);
        return true;
    case Qt::Key_PageUp:
        moveCurrent(-PageRows);
        return true;
    case Qt::Key_PageDown:
        moveCurrent(PageRows);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!currentText().isEmpty())
            Q_EMIT chosen(currentText());
        return true;
    case Qt::Key_D:
        if (pEvent->modifiers() != Qt::ControlModifier)
            return false;
        toggleStar(m_pList->currentItem());
        return true;
    default:
        return false;
    }
}

bool OrvFilteredStringSelector::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if (pWatched == m_pFilter && pEvent->type() == QEvent::KeyPress)
        return keyPressed(static_cast<QKeyEvent*>(pEvent));
    if (pWatched == m_pList->viewport() && pEvent->type() == QEvent::MouseButtonRelease) {
        const QPoint Position = static_cast<QMouseEvent*>(pEvent)->pos();
        QListWidgetItem* pItem = m_pList->itemAt(Position);
        if (!pItem || pItem->data(Qt::UserRole).toString().isEmpty())
            return false;
        if (isOnStar(Position))
            toggleStar(pItem);
        else
            Q_EMIT chosen(pItem->data(Qt::UserRole).toString());
        return true;
    }
    return QWidget::eventFilter(pWatched, pEvent);
}

#include "moc_OrvFilteredStringSelector.cpp"

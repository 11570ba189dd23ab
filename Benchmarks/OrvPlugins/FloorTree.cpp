#include "Benchmarks/OrvPlugins/FloorTree.h"

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QToolButton>

namespace {

constexpr int RowHeight = 24;
constexpr int ChildCount = 12;
constexpr int NameRole = Qt::UserRole + 3;

class FloorRow : public QWidget {
public:
    explicit FloorRow(QWidget* pParent)
        : QWidget(pParent)
    {
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        if (layout())
            return;
        auto* pLayout = new QHBoxLayout(this);
        pLayout->setContentsMargins(1, 1, 1, 1);
        pLayout->setSpacing(1);
        auto* pName = new QLabel(QStringLiteral("Layer"), this);
        pLayout->addWidget(pName, 1);
        pName->show();
        for (int Child = 1; Child < ChildCount; ++Child) {
            auto* pButton = new QToolButton(this);
            pButton->setFixedSize(16, 16);
            pLayout->addWidget(pButton);
            pButton->show();
        }
    }
};

class FloorItem : public QStandardItem {
public:
    explicit FloorItem(const QString& Name = QString())
    {
        setData(Name, NameRole);
        setData(QStringLiteral("{0123456789abcdef0123456789abcdef}"), Qt::UserRole + 2);
        setSizeHint(QSize(0, RowHeight));
        setEditable(false);
    }
};

} // namespace

FloorTree::FloorTree()
{
    setModel(&m_Model);
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setSelectionMode(ExtendedSelection);
    header()->setSectionResizeMode(QHeaderView::Stretch);
}

void FloorTree::build(int RowCount)
{
    m_Shown.clear();
    m_Model.clear();
    QList<QStandardItem*> Top;
    QStandardItem* pGroup = nullptr;
    for (int Row = 0; Row < RowCount; ++Row) {
        auto* pItem = new FloorItem(QStringLiteral("Layer %1").arg(Row));
        if (Row % 10 == 0) {
            pGroup = pItem;
            Top.append(pItem);
        } else {
            pGroup->appendRow(pItem);
        }
    }
    m_Model.invisibleRootItem()->appendRows(Top);
    expandAll();
    scheduleDelayedItemsLayout();
    setRowWidgets(QModelIndex());
}

void FloorTree::setRowWidgets(const QModelIndex& Parent)
{
    for (int Row = 0; Row < m_Model.rowCount(Parent); ++Row) {
        const QModelIndex Index = m_Model.index(Row, 0, Parent);
        setRowWidget(Index);
        setRowWidgets(Index);
    }
}

void FloorTree::setRowWidget(const QModelIndex& Index)
{
    auto* pRow = new FloorRow(viewport());
    setIndexWidget(Index, pRow);
    pRow->hide();
}

void FloorTree::insertRowOnTop()
{
    m_Model.insertRow(0, new FloorItem);
    scheduleDelayedItemsLayout();
    setRowWidget(m_Model.index(0, 0));
}

void FloorTree::moveLastRowToTop()
{
    const QList<QStandardItem*> Taken = m_Model.takeRow(m_Model.rowCount() - 1);
    m_Model.insertRow(0, Taken);
    scheduleDelayedItemsLayout();
    setRowWidget(m_Model.index(0, 0));
}

void FloorTree::filterRows(const QString& Text)
{
    scheduleDelayedItemsLayout();
    filterRows(Text, QModelIndex());
}

bool FloorTree::filterRows(const QString& Text, const QModelIndex& Parent)
{
    bool AnyShown = false;
    for (int Row = 0; Row < m_Model.rowCount(Parent); ++Row) {
        const QModelIndex Index = m_Model.index(Row, 0, Parent);
        const bool ShowsChild = filterRows(Text, Index);
        const bool Shown
            = ShowsChild || m_Model.data(Index, NameRole).toString().contains(Text, Qt::CaseInsensitive);
        setRowHidden(Row, Parent, !Shown);
        AnyShown |= Shown;
    }
    return AnyShown;
}

void FloorTree::updateEditorGeometries()
{
    QVector<QPointer<QWidget>> InView;
    for (QModelIndex Index = indexAt(QPoint(0, 0)); Index.isValid(); Index = indexBelow(Index)) {
        const QRect Place = visualRect(Index);
        if (Place.top() > viewport()->height())
            break;
        if (QWidget* pRow = indexWidget(Index)) {
            pRow->setGeometry(Place);
            pRow->show();
            InView.append(pRow);
        }
    }
    for (const QPointer<QWidget>& pRow : qAsConst(m_Shown)) {
        if (pRow && !InView.contains(pRow))
            pRow->hide();
    }
    m_Shown = InView;
}

#include "moc_FloorTree.cpp"

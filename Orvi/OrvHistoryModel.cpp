#include "Orvi/OrvHistoryModel.h"

#include "OrvCore/Undo/OrvUndoManager.h"

#include <QtGui/QColor>
#include <QtWidgets/QUndoStack>

namespace {

const QColor UndoneColor(0x77, 0x77, 0x77);

const QUndoStack* history()
{
    return OrvUndoManager::instance().stack();
}

} // namespace

OrvHistoryModel::OrvHistoryModel(QObject* pParent)
    : QAbstractListModel(pParent)
    , m_Rows(history()->count() + 1)
{
    connect(history(), &QUndoStack::indexChanged, this, &OrvHistoryModel::refresh);
}

int OrvHistoryModel::presentRow() const
{
    return history()->index();
}

void OrvHistoryModel::goTo(int Row)
{
    OrvUndoManager& Undo = OrvUndoManager::instance();
    // A step that cannot be taken now (a gesture is open) ends the way.
    for (int Before = -1; presentRow() != Row && presentRow() != Before;) {
        Before = presentRow();
        Before > Row ? Undo.undo() : Undo.redo();
    }
}

int OrvHistoryModel::rowCount(const QModelIndex& Parent) const
{
    return Parent.isValid() ? 0 : m_Rows;
}

QVariant OrvHistoryModel::data(const QModelIndex& Index, int Role) const
{
    if (!Index.isValid() || Index.row() >= m_Rows)
        return QVariant();
    if (Role == Qt::DisplayRole)
        return Index.row() == 0 ? tr("Start") : history()->text(Index.row() - 1);
    if (Role == Qt::ForegroundRole && Index.row() > presentRow())
        return UndoneColor;
    return QVariant();
}

void OrvHistoryModel::refresh()
{
    // A new step may have pushed out undone or very old ones: the number of rows says too little.
    beginResetModel();
    m_Rows = history()->count() + 1;
    endResetModel();
    Q_EMIT presentRowChanged(presentRow());
}

#include "moc_OrvHistoryModel.cpp"

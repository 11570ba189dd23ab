#pragma once

#include <QtCore/QAbstractListModel>

/// The undo history as a list: the state as opened, then one row per step. Steps that are undone are shown
/// dimmed. It wraps the history and copies nothing of it.
class OrvHistoryModel : public QAbstractListModel {
    Q_OBJECT

public:
    explicit OrvHistoryModel(QObject* pParent = nullptr);

    /// The row of the state that the document is in.
    int presentRow() const;
    /// Undoes or redoes until the document is in the row's state.
    void goTo(int Row);

    int rowCount(const QModelIndex& Parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& Index, int Role) const override;

Q_SIGNALS:
    void presentRowChanged(int Row);

private:
    void refresh();

    int m_Rows;
};

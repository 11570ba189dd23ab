#pragma once

#include <QtCore/QBasicTimer>
#include <QtCore/QObject>
#include <QtCore/QPersistentModelIndex>

class OrvLayerView;
class QDropEvent;

/// A drag on its way over a layer tree: whether what is dragged would be dropped where the cursor is, with
/// the reason in the status line where it would not, and a folded group opens when the drag rests on it. The
/// tree owns it; it edits nothing.
class OrvLayerDragHover : public QObject {
    Q_OBJECT

public:
    explicit OrvLayerDragHover(OrvLayerView* pLayerView, QObject* pParent);

    /// The place is said as for the model's drops.
    bool wouldDrop(const QDropEvent& Event, int Row, const QModelIndex& Parent);
    /// The drag is above this row, or above none.
    void restAt(const QModelIndex& Index);
    /// The drag went elsewhere, or came to an end.
    void leave();

protected:
    void timerEvent(QTimerEvent* pEvent) override;

private:
    OrvLayerView* m_LayerView;
    QPersistentModelIndex m_RestingAt;
    QBasicTimer m_OpenTimer;
};

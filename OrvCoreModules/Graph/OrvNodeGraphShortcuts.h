#pragma once

#include <QtCore/QObject>
#include <QtCore/QVector>

class QKeyEvent;
class QKeySequence;
class QShortcut;
class QWidget;

/// The keys of the node graph, which users can list and rebind like all others. While the canvas has the
/// keyboard they win over the same keys of the whole window, which Qt alone would call ambiguous.
class OrvNodeGraphShortcuts : public QObject {
    Q_OBJECT

public:
    explicit OrvNodeGraphShortcuts(QWidget* pCanvas);

    void add(const QKeySequence& Keys, const char* pSlot, QObject* pReceiver);

    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
    QShortcut* matching(const QKeyEvent* pEvent) const;

    QWidget* m_pCanvas;
    QVector<QShortcut*> m_Shortcuts; ///< the canvas's; they only hold the keys
};

#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QObject>

class QWidget;

/// Looks for a user who wants long work to stop while that work keeps the event loop waiting, perhaps in the
/// midst of an edit: of the user's input only the cancel button and Escape get through, timers fire later.
/// Painting and queued calls go on. The main window owns it; it asks OrvStatusManager to cancel and stops
/// nothing itself.
class OrvCancelWatch : public QObject {
    Q_OBJECT

public:
    /// The button is told of the mouse as ever; the rest of its window is not.
    explicit OrvCancelWatch(QWidget* pButton, QObject* pParent = nullptr);

    /// Cheap to call often.
    void look();

    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
    QWidget* m_pButton;
    QElapsedTimer m_SinceLook;
    bool m_Looking = false;
};

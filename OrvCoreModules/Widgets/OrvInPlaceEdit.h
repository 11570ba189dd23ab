#pragma once

#include <QtWidgets/QLineEdit>

/// The line edit that covers a widget while its text is edited in place. Return, Tab and leaving it commit,
/// Escape gives up; either way it ends once, takes itself away and leaves the keyboard to the widget if it
/// had it. A host that goes first deletes it.
class OrvInPlaceEdit : public QLineEdit {
    Q_OBJECT

public:
    /// Shows the text, all of it selected, with the keyboard focus.
    OrvInPlaceEdit(const QString& Text, QWidget* pHost);

    void end(bool Commit);

Q_SIGNALS:
    void ended(QString Text, bool Committed);

protected:
    bool event(QEvent* pEvent) override;
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    void mouseDoubleClickEvent(QMouseEvent* pEvent) override;
    void focusOutEvent(QFocusEvent* pEvent) override;

private:
    bool m_Ended = false;
};

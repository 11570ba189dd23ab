#pragma once

#include <QtWidgets/QWidget>

class OrvInPlaceEdit;

/// The editor over the title of a node on the canvas: a line edit with a place of its own. It renames nothing
/// itself, and goes by itself when it has ended.
class OrvNodeTitleEdit : public QWidget {
    Q_OBJECT

public:
    OrvNodeTitleEdit(const QString& Text, const QRect& Area, QWidget* pCanvas);

    void end(bool Commit);

Q_SIGNALS:
    void committed(QString Text);

private:
    OrvInPlaceEdit* m_pEdit;
    bool m_Ended = false;
};

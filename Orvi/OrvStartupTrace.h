#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QObject>

/// Writes one line to the log when the first rows of the "Layers" palette are on the screen: how long the
/// program took to start. It deletes itself then.
class OrvStartupTrace : public QObject {
    Q_OBJECT

public:
    explicit OrvStartupTrace(QObject* pParent);

protected:
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
    QElapsedTimer m_Elapsed;
};

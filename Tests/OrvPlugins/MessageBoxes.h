#pragma once

#include <QtCore/QStringList>
#include <QtCore/QTimer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMessageBox>

#include <utility>

/// Closes the message boxes that come up while it lives, as by Escape, and keeps what they said.
class MessageBoxes {
public:
    MessageBoxes()
    {
        QObject::connect(&m_Timer, &QTimer::timeout, &m_Timer, [this] {
            if (auto* pBox = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                m_Said.append(pBox->windowTitle() + QStringLiteral(": ") + pBox->text());
                pBox->close();
            }
        });
        m_Timer.start(0);
    }

    /// "Title: Text" of each since the last time.
    QStringList take() { return std::exchange(m_Said, QStringList()); }
    bool isEmpty() const { return m_Said.isEmpty(); }

private:
    QTimer m_Timer;
    QStringList m_Said;
};

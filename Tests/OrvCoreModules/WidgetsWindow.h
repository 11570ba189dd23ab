#pragma once

#include <QtTest/QtTest>
#include <QtWidgets/QVBoxLayout>

/// What tests of widgets stand on: an active window that has them one below the other.
class WidgetsWindow {
protected:
    void openWindow(const QSize& Size)
    {
        m_pWindow = new QWidget;
        m_pWindow->resize(Size);
        new QVBoxLayout(m_pWindow);
    }
    void closeWindow() { delete m_pWindow; }

    template <class Widget>
    Widget* shown(Widget* pWidget)
    {
        m_pWindow->layout()->addWidget(pWidget);
        m_pWindow->show();
        m_pWindow->activateWindow();
        if (!QTest::qWaitForWindowActive(m_pWindow))
            qWarning("no active window");
        QApplication::processEvents();
        return pWidget;
    }

    QWidget* m_pWindow = nullptr;
};

#include "OrvCoreModules/Window/OrvGui.h"

#include <QtWidgets/QAbstractSpinBox>
#include <QtWidgets/QApplication>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QTextEdit>

bool OrvGui::isTypedInto(const QWidget* pWidget)
{
    return qobject_cast<const QLineEdit*>(pWidget) || qobject_cast<const QTextEdit*>(pWidget)
        || qobject_cast<const QPlainTextEdit*>(pWidget) || qobject_cast<const QAbstractSpinBox*>(pWidget)
        || qobject_cast<const QComboBox*>(pWidget);
}

void OrvGui::stealFocusGently(QWidget* pWidget)
{
    if (!pWidget || QApplication::activePopupWidget() || QApplication::activeModalWidget())
        return;
    const QWidget* pFocused = QApplication::focusWidget();
    if (pFocused && (pFocused == pWidget || pWidget->isAncestorOf(pFocused) || isTypedInto(pFocused)))
        return;
    if (QApplication::activeWindow() == pWidget->window())
        pWidget->setFocus(Qt::MouseFocusReason);
}

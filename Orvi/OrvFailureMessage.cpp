#include "Orvi/OrvFailureMessage.h"

#include "OrvCore/Object/OrvDebug.h"
#include "OrvCoreModules/Window/OrvApplication.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"

#include <QtWidgets/QMessageBox>

void OrvFailureMessage::show(const QString& Title, const QString& Text)
{
    OrvDebug("OrvFailureMessage", __LINE__, QStringLiteral("[ !! ] %1: %2").arg(Title, Text), false, false);
    if (!OrvApplication::popupsAllowed())
        return;
    QMessageBox Box(QMessageBox::Warning, Title, Text, QMessageBox::Ok, &OrvMainWindow::instance());
    Box.setTextFormat(Qt::PlainText);
    Box.exec();
}

void OrvFailureMessage::show(const QString& Title, const QStringList& Texts)
{
    if (!Texts.isEmpty())
        show(Title, Texts.join(QLatin1Char('\n')));
}

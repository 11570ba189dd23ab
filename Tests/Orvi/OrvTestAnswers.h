#pragma once

#include "OrvCoreModules/Window/OrvApplication.h"

#include <QtCore/QTimer>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QMessageBox>

#include <functional>

/// A user at the keyboard while something runs: presses one button in every message box, and returns what the
/// boxes said.
inline QStringList answering(const QString& Button, const std::function<void()>& Run)
{
    QStringList Questions;
    QTimer Answer;
    QObject::connect(&Answer, &QTimer::timeout, [&] {
        const auto* pBox = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!pBox)
            return;
        Questions.append(pBox->text());
        for (QAbstractButton* pButton : pBox->buttons()) {
            if (pButton->text().remove(QLatin1Char('&')) == Button)
                return pButton->click();
        }
    });
    Answer.start(20);
    OrvApplication::appInstance().setPopupsAllowed(true);
    Run();
    OrvApplication::appInstance().setPopupsAllowed(false);
    return Questions;
}

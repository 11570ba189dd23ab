#pragma once

#include <QtCore/QMimeData>
#include <QtCore/QTimer>
#include <QtCore/QUrl>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMessageBox>

#include <functional>
#include <memory>

/// What a user drags out of a file manager, and what is told of files that are refused.
namespace DroppedFiles {

inline std::unique_ptr<QMimeData> dragged(const QString& File)
{
    auto pData = std::make_unique<QMimeData>();
    pData->setUrls({QUrl::fromLocalFile(File)});
    return pData;
}

/// The title of the box that comes up meanwhile and tells why.
inline QString refusalOf(const std::function<void()>& Drop)
{
    QString Title;
    QTimer::singleShot(0, [&Title] {
        auto* pBox = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        QVERIFY(pBox && !pBox->text().isEmpty());
        Title = pBox->windowTitle();
        pBox->accept();
    });
    Drop();
    return Title;
}

} // namespace DroppedFiles

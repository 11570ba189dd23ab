#pragma once

#include "OrvDdi/Files/OrvProgress.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <functional>

/// One thing that is exported, to one file or one per tile.
struct OrvExportJob {
    QString Name; ///< as the progress dialog calls it
    QStringList Files;
    std::function<bool(const OrvProgress& Progress, QString& Error)> Write;
};

/// Exports one thing after the other, under one progress dialog. It asks once when that would replace files,
/// goes on after a failure, and tells all failures in one message at the end.
class OrvExportRun {
    Q_DECLARE_TR_FUNCTIONS(OrvExportRun)

public:
    /// The title is that of the message. False when nothing was written at all, because the user said so.
    static bool run(const QString& Title, const QVector<OrvExportJob>& Jobs);
};

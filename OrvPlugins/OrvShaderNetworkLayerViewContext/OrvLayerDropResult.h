#pragma once

#include <QtCore/QString>

/// How a drop came out, or would come out. Whoever carries the drop out tells the user why it failed.
struct OrvLayerDropResult {
    enum Code { Done = 0, Failed = 1, FailedWithMessage = 2 };

    Code Outcome = Done;
    QString Message;

    bool isDone() const { return Outcome == Done; }

    /// There is nothing to tell.
    static OrvLayerDropResult failed() { return {Failed, QString()}; }
    /// Told in the status line, where the drag is, and in no box.
    static OrvLayerDropResult failedBecause(const QString& Reason) { return {Failed, Reason}; }
    /// Told in a box.
    static OrvLayerDropResult refused(const QString& Reason) { return {FailedWithMessage, Reason}; }
};

#pragma once

#include "OrvCore/Object/OrvDebug.h"

#include <QtCore/QStringList>

/// What the debug channel is told while it lives: by these source files, or by all when none are given. There
/// is one at a time.
class OrvDebugReports {
public:
    explicit OrvDebugReports(const QStringList& Files = {})
    {
        OrvSetDebugSink([this, Files](const OrvDebugMessage& Message) {
            if (Files.isEmpty() || Files.contains(Message.File))
                Texts.append(Message.Text);
        });
    }
    ~OrvDebugReports() { OrvSetDebugSink({}); }
    OrvDebugReports(const OrvDebugReports&) = delete;
    OrvDebugReports& operator=(const OrvDebugReports&) = delete;

    QStringList Texts;
};

#pragma once

#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QString>

#include <functional>

/// Writes one finished message to the debug channel: Qt's message output by default. Errors begin "[ !! ] ", traces
/// "[ -- ] ". Callable at any time, static initialisation and teardown included; never shows a dialog, never throws.
/// The two flags are kept for callers that ask for a dialog or a break; both are ignored in unattended use.
ORVCORE_EXPORT void OrvDebug(
    const char* pFile, int Line, const QString& Message, bool ShowDialog = false, bool Break = false);

struct OrvDebugMessage {
    QString File;
    int Line = 0;
    QString Text;
};

/// Every message goes to the sink as well (a log palette, a test); an empty sink takes it away.
ORVCORE_EXPORT void OrvSetDebugSink(std::function<void(const OrvDebugMessage&)> Sink);

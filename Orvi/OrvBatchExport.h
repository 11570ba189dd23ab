#pragma once

#include <QtCore/QString>

class OrvCommandLine;

/// Exports a channel without a window, for scripts and render farms. Tells what it did in the exit code and
/// in one line on standard error.
namespace OrvBatchExport {

int run(const OrvCommandLine& Line);

} // namespace OrvBatchExport

#pragma once

#include <functional>

/// How long work tells how far it is: called in the caller's thread with the steps done and the steps in all;
/// false cancels the work. May be empty.
using OrvProgress = std::function<bool(int Done, int Total)>;

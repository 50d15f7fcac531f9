// How commands write their results.
#pragma once

#include <functional>
#include <string>

#include "platform/file.h"

// Makes what `write` puts into the file the content of the file at `path`, or standard output for "-". What stands
// there is replaced only once everything is written; `write` returns false when memory or the file gives out. False,
// with the reason on standard error, when that fails.
[[nodiscard]] bool WriteOutputFile(const std::string& path, const std::function<bool(File&)>& write);

// Whether standard output goes into the file that is called `path`, as with "-" or "/dev/stdout". What else a command
// prints would spoil it.
bool IsStandardOutput(const std::string& path);

// The command line program, called in the test's own process.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "cli/commands.h"

struct CliRun {
    int status;
    std::string out, err;  // what went to standard output and standard error
};

inline CliRun RunCli(const Words& words) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    int status = RunZephyr(words);
    std::string out = testing::internal::GetCapturedStdout();
    return {status, out, testing::internal::GetCapturedStderr()};
}

// The same in the classic manner.
inline CliRun RunClassic(Words words) {
    words.insert(words.begin() + 1, "--classic");
    return RunCli(words);
}

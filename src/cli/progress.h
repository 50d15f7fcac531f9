// A line that is written over and over, for people at a terminal.
#pragma once

#include <cstddef>

// Shows "frame 3 of 100", or what else is counted, on standard error when that is a terminal, and takes it away at the
// end of the scope.
class Progress {
public:
    Progress();
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void OnFrame(size_t number, size_t count, const char* what = "frame");

private:
    bool shown_;
    int width_ = 0;
};

#include "cli/progress.h"

#include <algorithm>
#include <cstdio>

#include "cli/terminal.h"

Progress::Progress() : shown_(ErrorsGoToTerminal()) {}

Progress::~Progress() {
    if (width_ > 0) fprintf(stderr, "\r%*s\r", width_, "");
}

void Progress::OnFrame(size_t number, size_t count, const char* what) {
    if (!shown_) return;
    const int width = fprintf(stderr, "\r%s %zu of %zu", what, number, count) - 1;
    if (width < width_) fprintf(stderr, "%*s", width_ - width, "");
    width_ = std::max(width_, width);
}

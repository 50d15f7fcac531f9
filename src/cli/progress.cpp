#include "cli/progress.h"

#include <algorithm>
#include <cstdio>

#include "cli/terminal.h"

Progress::Progress() : shown_(ErrorsGoToTerminal()) {}

Progress::~Progress() {
    if (width_ > 0) fprintf(stderr, "\r%*s\r", width_, "");
}

void Progress::OnFrame(size_t number, size_t count) {
    if (shown_) width_ = std::max(width_, fprintf(stderr, "\rframe %zu of %zu", number, count));
}

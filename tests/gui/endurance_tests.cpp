// What the program takes from the system, it gives back.
#include <vector>

#include "app/services/shell_objects.h"
#include "resources/command_ids.h"
#include "tests/gui/window_driver.h"

// After windows.h.
#include <psapi.h>

namespace {

constexpr int kRounds = 200;
constexpr size_t kSlackHandles = 20;  // others in the system open and close things too
constexpr size_t kSlackBytes = 1 << 20;

// How many more objects this process may create: counted by creating them, as not every system tells.
template <typename Create, typename Destroy>
size_t CountFree(Create create, Destroy destroy) {
    std::vector<decltype(create())> taken;
    while (auto object = create()) taken.push_back(object);
    for (auto object : taken) destroy(object);
    return taken.size();
}

size_t PrivateBytes() {
    PROCESS_MEMORY_COUNTERS counters = {};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.PagefileUsage;
}

class EnduranceTest : public ShellTest {};

TEST_F(EnduranceTest, OpeningAndClosingLeavesNothingBehind) {
    std::string path = MakeGif("big.gif", 400, 300);  // 200 leaks of its pixels would be 24 MB
    auto openAndClose = [&](int rounds) {
        for (int i = 0; i < rounds; ++i) {
            Open(path);
            UpdateWindow(hMainWindow);
            Command(IDM_CLOSE);
            DialogAnswers answers;
            answers.Press(IDOK);
            Command(IDM_ABOUT);
        }
    };
    openAndClose(5);
    auto countGdi = [] { return CountFree([] { return CreateSolidBrush(RGB(1, 2, 3)); }, DeleteObject); };
    auto countUser = [] { return CountFree(CreatePopupMenu, DestroyMenu); };
    size_t gdi = countGdi();
    size_t user = countUser();
    size_t bytes = PrivateBytes();
    openAndClose(kRounds);
    EXPECT_LE(PrivateBytes(), bytes + kSlackBytes);
    EXPECT_GE(countGdi() + kSlackHandles, gdi);
    EXPECT_GE(countUser() + kSlackHandles, user);
}

}  // namespace

// Creating, loading, saving and discarding documents through the main window.
#include "app/shell_state.h"
#include "resources/command_ids.h"
#include "tests/gui/window_driver.h"

namespace {

const std::vector<int> kDocumentCommands = {IDM_CLOSE, IDM_SAVE, IDM_SAVE_AS, IDM_VIEW, IDM_INSERT, IDM_DELETE};

class LifecycleTest : public ShellTest {
protected:
    void ExpectDocumentCommands(bool enabled) {
        for (int id : kDocumentCommands) EXPECT_EQ(IsEnabled(id), enabled) << id;
        for (int id : {IDM_NEW, IDM_OPEN, IDM_WIZARD, IDM_EXIT, IDM_HELP, IDM_INFORMATION, IDM_ABOUT})
            EXPECT_TRUE(IsEnabled(id)) << id;
    }
};

TEST_F(LifecycleTest, StartsWithoutADocument) {
    EXPECT_EQ(Title(), "Kelmor Zephyr [ NO FILE ] ");
    EXPECT_TRUE(Lines().empty());
    ExpectDocumentCommands(false);
}

TEST_F(LifecycleTest, NewShowsOneHeader) {
    Command(IDM_NEW);
    EXPECT_EQ(Title(), "Kelmor Zephyr [ untitled.gif ] ");
    EXPECT_EQ(Lines(), std::vector<std::string>{"HEADER\xFE GIF89a Screen (640 x 480)"});
    EXPECT_EQ(Selection(), 0);
    ExpectDocumentCommands(true);
    EXPECT_FALSE(documentChanged);
}

}  // namespace

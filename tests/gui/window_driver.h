// The editor's real main window in the test's own process, driven by the messages a user's action makes.
// Modal dialogs are answered with DialogAnswers (tests/gui/dialog_answers.h).
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/services/shell_objects.h"
#include "app/shell_state.h"
#include "resources/command_ids.h"
#include "tests/gui/dialog_answers.h"

// A fixture: every test gets the window as the program has it after its start, without a document, with default
// settings, and a new empty folder for its files, which also takes the place of the settings folder.
class ShellTest : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // All of it but the window, for tests that start the program themselves.
    void StartAfresh();

    // Sends the command and everything that it posts.
    void Command(int id);
    void Open(const std::string& path);  // through the open-file message; a missing file shows its message
    void Select(int line);               // as a click does: with the notification
    void DoubleClick();                  // on the selected line

    std::vector<std::string> Lines() const;  // Windows-1252, with the separator byte 0xFE
    int Selection() const;
    std::string Title() const;  // UTF-8
    bool IsEnabled(int command) const;
    std::vector<std::string> RecentFiles() const;  // as the File menu shows them, the newest first

    // Path of `name` in this test's own folder.
    std::string File(const std::string& name) const { return folder_ + name; }
    const std::string& Folder() const { return folder_; }  // ends in a backslash

    // Writes a small valid GIF file (header, comment, image `width` x `height`) into the folder; returns its path.
    std::string MakeGif(const std::string& name, int width = 20, int height = 10) const;

private:
    std::string folder_;
};

// Dispatches all waiting messages.
void PumpMessages();

std::string ReadWholeFile(const std::string& path);  // empty when there is none
void WriteWholeFile(const std::string& path, const std::string& content);

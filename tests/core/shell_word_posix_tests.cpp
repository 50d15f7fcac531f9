#include "cli/shell_word.h"

#include <cstdlib>

#include "tests/support/temp_folder.h"

TEST(ShellWord, IsTheNameToAShell) {
    const char* const names[] = {"plain.gif",       "",      "-n",        "-",           "two words",    "it's",
                                 "$HOME `x` \"y\"", "a\\nb", "line\nend", "\x1B[2J'\\'", "\xC2\x85next", "\t3",
                                 "\x7F*?"};
    TempFolder folder;
    const std::string script = folder.Path("script"), said = folder.Path("said");
    for (const std::string name : names) {
        const std::string text = "printf %s " + ShellFile(name) + " > " + ShellFile(said);
        WriteAll(script, Bytes(text.begin(), text.end()));
        ASSERT_EQ(std::system(("bash " + ShellFile(script)).c_str()), 0) << text;
        const Bytes bytes = ReadAll(said);
        const std::string expected = name == "-n" ? "./-n" : name;
        EXPECT_EQ(std::string(bytes.begin(), bytes.end()), expected) << text;
        EXPECT_EQ(text.find_first_of("\n\x1B\x7F"), std::string::npos) << "drives the terminal: " << name;
    }
}

#include "editing/selection.h"

#include "tests/support/test_blocks.h"

namespace {

// 0 HEADER, 1 LOOP, 2 CONTROL, 3 IMAGE, 4 COMMENT, 5 CONTROL, 6 CONTROL, 7 IMAGE, 8 CONTROL, 9 PLAIN TEXT, 10 IMAGE
BlockList Document() {
    BlockList list;
    for (char kind : std::string("17326332342")) Append(&list, OfKind(static_cast<uint16_t>(kind - '0')));
    return list;
}

std::string Join(const std::vector<uint32_t>& numbers) {
    std::string text;
    for (uint32_t number : numbers) text += (text.empty() ? "" : " ") + std::to_string(number);
    return text;
}

// The numbers that the words select, or what is wrong.
std::string Blocks(const BlockList& list, const char* words) {
    Selection selection;
    std::string why = selection.Parse(words);
    if (!why.empty()) return why;
    std::vector<uint32_t> found = selection.Find(list, &why);
    return found.empty() ? why : Join(found);
}

}  // namespace

TEST(Selection, WordsAndWhatTheySelect) {
    const BlockList list = Document();
    const std::string how = "give blocks as in 7, 3-last, comment, image:0 or frame:2-4, not ";
    const std::pair<const char*, std::string> cases[] = {
        {"7", "7"},
        {"3-5", "3 4 5"},
        {"last", "10"},
        {"last-2", "8"},
        {"last-2-last", "8 9 10"},
        {"8-last-1", "8 9"},
        {"image", "3 7 10"},
        {"image:0", "3"},
        {"image:last", "10"},
        {"image:1-last", "7 10"},
        {"image:last-1-last", "7 10"},
        {"control,comment", "2 5 6 8 4"},
        {"7,3-4,comment,7", "7 3 4"},
        {"frame:0", "2 3"},
        {"frame:1", "5 6 7"},
        {"frame:2", "10"},
        {"frame:0-1", "2 3 5 6 7"},
        {"frame", "2 3 5 6 7 10"},
        {"header,loop,plaintext", "0 1 9"},
        {"0-4294967295", "there is no block 0-4294967295; they are numbered 0 to 10"},
        {"11", "there is no block 11; they are numbered 0 to 10"},
        {"last-11", "there is no block last-11; they are numbered 0 to 10"},
        {"image:3", "there is no image:3; they are numbered 0 to 2"},
        {"frame:3", "there is no frame:3; they are numbered 0 to 2"},
        {"names", "there is no names block"},
        {"names,comment,unknown", "4"},
        {"comment,names:0", "there is no names block"},
        {"comment,11", "there is no block 11; they are numbered 0 to 10"},
        {"5-3", "the range 5-3 runs backwards"},
        {"", how},
        {"1,,2", how},
        {"1,", how},
        {"images", how + "images"},
        {"image:", how + "image:"},
        {"1-", how + "1-"},
        {"-1", how + "-1"},
        {"1 ", how + "1 "},
        {"1-2-3", how + "1-2-3"},
        {"4294967296", how + "4294967296"},
        {"image:0:1", how + "image:0:1"},
    };
    for (const auto& [words, expected] : cases) EXPECT_EQ(Blocks(list, words), expected) << words;
    EXPECT_EQ(Blocks({}, "frame"), "there is no frame");
    EXPECT_EQ(Blocks({}, "0"), "there is no block");
}

TEST(Selection, FrameNumbers) {
    const BlockList list = Document();
    auto frames = [&](const char* words) {
        Selection selection;
        std::string why = selection.Parse(words);
        EXPECT_EQ(why, "");
        std::vector<uint32_t> found = selection.FindFrameNumbers(FindFrames(list).size(), &why);
        return found.empty() ? why : Join(found);
    };
    EXPECT_EQ(frames("1-last,0"), "1 2 0");
    EXPECT_EQ(frames("frame:2,frame"), "2 0 1");
    EXPECT_EQ(frames("3"), "there is no frame 3; they are numbered 0 to 2");
    EXPECT_EQ(frames("image:1"), "give frames as in 4, 2-last or frame:0, not image:1");
}

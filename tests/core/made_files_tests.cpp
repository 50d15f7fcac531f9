// The files that tests/data/recipes.py makes, with every kind of trouble, cut off anywhere.
#include <algorithm>
#include <filesystem>

#include "tests/support/test_blocks.h"

namespace {

constexpr size_t kShortFile = 2048;  // cut at each byte; a longer one in fewer places
constexpr size_t kCutsOfALongFile = 40;

// What a block is, without what it owes to its neighbours.
std::string Content(const Block& block) {
    std::string text = std::to_string(block.kind) + " " + DescriptorOf(block) + " " + TextOf(block) + " ";
    return text.append(reinterpret_cast<const char*>(block.palette.Colours()), kPaletteBytes);
}

std::vector<std::string> Contents(const BlockList& list) {
    std::vector<std::string> contents;
    for (const Block& block : list.All()) contents.push_back(Content(block));
    return contents;
}

// How many blocks a file must have that was cut, and how many of them are as in the whole file: the last one may have
// been cut itself, and an image with a wrong code is none in the whole file.
void ExpectBeginning(const LoadedGif& whole, const LoadedGif& part) {
    ASSERT_LE(part.count, whole.count + (whole.result == kReadFailed));
    size_t same = std::min(part.count ? part.count - 1 : 0, whole.count);
    std::vector<std::string> expected = Contents(whole), found = Contents(part);
    expected.resize(same);
    found.resize(same);
    EXPECT_EQ(expected, found);
}

}  // namespace

TEST(MadeFiles, CutOffAnywhereTheyAreTheirBeginning) {
    size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(TEST_DATA)) {
        Bytes bytes = ReadAll(entry.path().string());
        LoadedGif whole(bytes);
        size_t step = bytes.size() <= kShortFile ? 1 : bytes.size() / kCutsOfALongFile;
        for (size_t length = 0; length < bytes.size() && !HasFailure(); length += step) {
            SCOPED_TRACE(entry.path().filename().string() + " of " + std::to_string(length) + " bytes");
            ExpectBeginning(whole, LoadedGif(Bytes(bytes.begin(), bytes.begin() + static_cast<ptrdiff_t>(length))));
        }
        ++files;
    }
    EXPECT_GT(files, 100u);
}

#include "platform/file.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/faults.h"
#include "tests/support/temp_folder.h"

namespace {

constexpr size_t kBuffer = 64 * 1024;

Bytes Pattern(size_t bytes) {
    Bytes content(bytes);
    for (size_t i = 0; i < bytes; ++i) content[i] = static_cast<uint8_t>(i * 7 + i / 251);
    return content;
}

class FileTest : public testing::Test {
protected:
    ~FileTest() override { faults = {}; }
    TempFolder folder_;
    std::string path_ = folder_.Path("\xC3\xA9 \xE2\x82\xAC.bin");
};

}  // namespace

TEST_F(FileTest, WrittenAndReadInAnyPieces) {
    for (size_t size : {size_t{0}, size_t{1}, kBuffer - 1, kBuffer, kBuffer + 1, 3 * kBuffer + 17})
        for (size_t piece : {size_t{1}, size_t{1000}, kBuffer, 4 * kBuffer}) {
            SCOPED_TRACE(std::to_string(size) + " by " + std::to_string(piece));
            Bytes content = Pattern(size), read(size + piece);
            File file;
            ASSERT_TRUE(file.Create(path_.c_str()));
            for (size_t at = 0; at < size; at += piece)
                ASSERT_TRUE(file.Write(content.data() + at, std::min(piece, size - at)));
            ASSERT_TRUE(file.Close());
            EXPECT_TRUE(ReadAll(path_) == content);

            ASSERT_TRUE(file.OpenForReading(path_.c_str()));
            while (size_t came = file.Read(read.data() + file.Position(), piece)) ASSERT_LE(came, piece);
            EXPECT_EQ(file.Position(), size);
            read.resize(size);
            EXPECT_TRUE(read == content);
            EXPECT_EQ(ReadByte(file), -1);
        }
}

TEST_F(FileTest, SeekGoesAnywhere) {
    const Bytes content = Pattern(5 * kBuffer + 17);
    WriteAll(path_, content);
    File file, memory;
    ASSERT_TRUE(file.OpenForReading(path_.c_str()));
    memory.OpenMemory(content.data(), content.size());
    for (size_t at : {size_t{0}, kBuffer, 4 * kBuffer + 5, size_t{3}, 2 * kBuffer - 1, 2 * kBuffer, content.size() - 1,
                      content.size(), kBuffer + 1, content.size() + 300})
        for (File* reader : {&file, &memory}) {
            SCOPED_TRACE(at);
            reader->Seek(at);
            EXPECT_EQ(reader->Position(), at);
            Bytes read(kBuffer + 2);
            size_t expected = at < content.size() ? std::min(read.size(), content.size() - at) : 0;
            ASSERT_EQ(reader->Read(read.data(), read.size()), expected);
            EXPECT_TRUE(std::equal(read.begin(), read.begin() + static_cast<ptrdiff_t>(expected),
                                   content.begin() + static_cast<ptrdiff_t>(std::min(at, content.size()))));
            EXPECT_EQ(reader->Position(), at + expected);
            EXPECT_FALSE(reader->HasFailed()) << "the end is no failure";
        }
}

TEST_F(FileTest, NothingComesAfterAReadError) {
    const Bytes content = Pattern(3 * kBuffer);
    WriteAll(path_, content);
    for (bool atSeek : {false, true})
        for (bool onlyOne : {false, true}) {
            File file;
            ASSERT_TRUE(file.OpenForReading(path_.c_str()));
            faults.onlyOne = onlyOne;
            (atSeek ? faults.seeksUntilFailure : faults.readsUntilFailure) = 1;
            EXPECT_EQ(ReadByte(file), content[0]);
            for (size_t at : {2 * kBuffer + 9, kBuffer + 1}) file.Seek(at), ReadByte(file);  // moves twice, reads twice
            Bytes rest(content.size());
            EXPECT_EQ(file.Read(rest.data(), rest.size()), 0u);
            EXPECT_EQ(ReadByte(file), -1);
            faults = {};
            file.Seek(0);
            EXPECT_EQ(ReadByte(file), -1) << "what came now would stand in the wrong place";
            EXPECT_TRUE(file.HasFailed());
            EXPECT_NE(file.Reason(), "");
            ASSERT_TRUE(file.OpenForReading(path_.c_str()));
            EXPECT_FALSE(file.HasFailed());
            EXPECT_EQ(file.Reason(), "");
            EXPECT_EQ(ReadByte(file), content[0]);
        }
}

TEST_F(FileTest, FailedWritesDeleteTheFile) {
    Bytes content = Pattern(kBuffer);
    File file;
    ASSERT_TRUE(file.Create(path_.c_str()));
    faults.writesUntilFailure = 1;
    EXPECT_TRUE(file.Write(content.data(), kBuffer));
    EXPECT_EQ(WriteByte(file, 7), 7);
    EXPECT_FALSE(file.Write(content.data(), kBuffer));
    faults = {};
    EXPECT_EQ(WriteByte(file, 7), -1) << "no hole in the middle";
    EXPECT_FALSE(file.Close());
    EXPECT_TRUE(folder_.Names().empty());
}

TEST_F(FileTest, OnlyAGoodCloseKeepsTheFile) {
    enum Ending { kScopeEnds, kFailed, kClosed };
    for (bool replaces : {false, true})
        for (bool isThere : {false, true})
            for (Ending ending : {kScopeEnds, kFailed, kClosed}) {
                TempFolder folder;
                std::string path = folder.Path("x");
                Bytes before;
                if (isThere) WriteAll(path, before = {1, 2, 3});
                {
                    File file;
                    ASSERT_TRUE(replaces ? file.CreateReplacement(path.c_str()) : file.Create(path.c_str()));
                    EXPECT_EQ(WriteByte(file, 9), 9);
                    EXPECT_EQ(ReadAll(path), replaces ? before : Bytes());
                    if (ending == kFailed) faults.writesUntilFailure = 0;
                    EXPECT_EQ(ending != kScopeEnds && file.Close(), ending == kClosed);
                    EXPECT_EQ(file.HasFailed(), ending == kFailed);
                    faults = {};
                }
                Bytes after = ending == kClosed ? Bytes{9} : replaces ? before : Bytes();
                EXPECT_EQ(ReadAll(path), after);
                EXPECT_EQ(folder.Names().size(), after.size() > 0) << "nothing else is left in the folder";
            }
}

TEST_F(FileTest, EveryReplacementIsWholeWhateverStandsBesideIt) {
    const Bytes beside = {7}, first = Pattern(3 * kBuffer + 1), second = Pattern(9);
    const std::string neighbour = path_ + ".zephyr-new";
    WriteAll(neighbour, beside);
    File one, other, none;
    ASSERT_TRUE(one.CreateReplacement(path_.c_str()));
    ASSERT_TRUE(other.CreateReplacement(path_.c_str()));
    EXPECT_TRUE(other.Write(second.data(), second.size()));
    EXPECT_TRUE(one.Write(first.data(), first.size()));
    EXPECT_TRUE(other.Close());
    EXPECT_TRUE(ReadAll(path_) == second);
    EXPECT_TRUE(one.Close());
    EXPECT_TRUE(ReadAll(path_) == first);
    EXPECT_EQ(ReadAll(neighbour), beside);
    EXPECT_EQ(folder_.Names().size(), 2u);
    EXPECT_FALSE(one.FolderRefused());
    EXPECT_FALSE(none.CreateReplacement("") && none.Close()) << "a file without a name";
    EXPECT_TRUE(none.HasFailed());
}

TEST_F(FileTest, LongestNamesCanBeReplaced) {
    const std::string longest = folder_.Path(std::string(255, 'n'));
    for (int round = 0; round < 2; ++round) {
        File file;
        ASSERT_TRUE(file.CreateReplacement(longest.c_str()));
        EXPECT_EQ(WriteByte(file, round), round);
        EXPECT_TRUE(file.Close()) << file.Reason();
        EXPECT_EQ(ReadAll(longest), Bytes{static_cast<uint8_t>(round)});
    }
}

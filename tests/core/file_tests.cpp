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
                    faults = {};
                }
                Bytes after = ending == kClosed ? Bytes{9} : replaces ? before : Bytes();
                EXPECT_EQ(ReadAll(path), after);
                EXPECT_EQ(folder.Names().size(), after.size() > 0) << "nothing else is left in the folder";
            }
}

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>

#include "platform/faults.h"
#include "tests/support/test_blocks.h"

TEST(GifWriterPosix, FullDiskIsReportedAndTheDeviceStays) {
    BlockList list;
    ASSERT_TRUE(NewDocument(&list));
    EXPECT_FALSE(WriteGifFile(list, "/dev/full"));
    EXPECT_TRUE(FileExists("/dev/full"));
    EXPECT_TRUE(WriteGifFile(list, "/dev/null"));
    EXPECT_TRUE(FileExists("/dev/null"));
}

// kQuirkSaveOverTarget
TEST(GifWriterPosix, FailureThroughALinkRemovesTheLink) {
    TempFolder folder;
    const std::string target = folder.Path("target.gif"), link = folder.Path("link.gif");
    WriteAll(target, "old");
    ASSERT_EQ(symlink("target.gif", link.c_str()), 0);
    BlockList list;
    ASSERT_TRUE(NewDocument(&list));
    faults.writesUntilFailure = 0;
    EXPECT_FALSE(WriteGifFile(list, link.c_str()));
    faults.writesUntilFailure = Faults::kNever;
    EXPECT_EQ(folder.Names(), std::vector<std::string>{"target.gif"});
    EXPECT_EQ(ReadAll(target), Bytes()) << "it was truncated before";
}

namespace {

// Runs `work` in a process of its own, kills that after so many microseconds (0: lets it end), and returns whether it
// came to its end.
bool RunToItsEnd(const std::function<void()>& work, useconds_t killAfter) {
    pid_t child = fork();
    if (child == 0) {
        work();
        _exit(0);
    }
    if (killAfter) {
        usleep(killAfter);
        kill(child, SIGKILL);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status) || WEXITSTATUS(status) == 0 || WEXITSTATUS(status) == Faults::kDied);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// A document of `bytes` bytes and more that is read whole.
Bytes LargeDocument(char fill, size_t bytes) {
    return GifBytes().Header("GIF89a", 5, 4, 0x81).Comment(std::string(bytes, fill)).Add({0x3B});
}

}  // namespace

// Dying at any write leaves the old file. At any other moment, too, the file is the old one or the new one.
TEST(GifWriterPosix, WholeSavesSurviveBeingKilled) {
    TempFolder folder;
    const std::string path = folder.Path("a.gif");
    const Bytes old = LargeDocument('o', 100), fresh = LargeDocument('f', 3 << 20);
    LoadedGif list(fresh, Manner::kWhole);
    std::string reason;
    auto save = [&] { (void)WriteWholeGifFile(list, path.c_str(), &reason); };
    long writes = 0;
    for (bool saved = false; !saved; ++writes) {
        WriteAll(path, old);
        faults.deadly = true;
        faults.writesUntilFailure = writes;
        saved = RunToItsEnd(save, 0);
        faults = {};
        EXPECT_EQ(ReadAll(path), saved ? fresh : old) << writes;
    }
    EXPECT_EQ(writes, 5) << "one for each megabyte begun, and the run that dies of none";
    bool wasKilled = false;
    for (useconds_t after = 100; after < 1000000; after += after / 2) {
        WriteAll(path, old);
        bool saved = RunToItsEnd(save, after);
        wasKilled |= !saved;
        const Bytes found = ReadAll(path);
        EXPECT_TRUE(found == fresh || (found == old && !saved)) << after;
        if (saved) break;
    }
    EXPECT_TRUE(wasKilled);
}

TEST(GifWriterPosix, WholeSavesLeaveTheOldFileOnAFullDisk) {
    TempFolder folder;
    const std::string path = folder.Path("a.gif");
    const Bytes old = LargeDocument('o', 100);
    LoadedGif list(LargeDocument('f', 3 << 20), Manner::kWhole);
    for (long write = 0; write < 4; ++write) {
        WriteAll(path, old);
        faults.writesUntilFailure = write;
        std::string reason;
        EXPECT_FALSE(WriteWholeGifFile(list, path.c_str(), &reason)) << write;
        faults = {};
        EXPECT_EQ(reason, "No space left on device");
        EXPECT_EQ(ReadAll(path), old) << write;
        EXPECT_EQ(folder.Names(), std::vector<std::string>{"a.gif"});
    }
}

// Files as a POSIX system has them: links, rights, pipes and signals.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <functional>
#include <thread>

#include "platform/file.h"
#include "platform/interrupts.h"
#include "tests/support/cli_runner.h"
#include "tests/support/gif_bytes.h"

namespace fs = std::filesystem;

namespace {

const Bytes kOld = {1, 2, 3}, kNew = {4, 5, 6, 7};

class FilePosix : public testing::Test {
protected:
    FilePosix() { WriteAll(path_, kOld); }
    ~FilePosix() override { fs::permissions(folder_.Path(""), fs::perms::owner_all); }

    struct stat Status(const std::string& path) {
        struct stat status = {};
        EXPECT_EQ(lstat(path.c_str(), &status), 0) << path;
        return status;
    }

    TempFolder folder_;
    std::string path_ = folder_.Path("target");
};

// Replaces the file's content; gives the reason when that fails.
std::string Replace(const std::string& path, const Bytes& content = kNew, bool* folderRefused = nullptr) {
    File file;
    bool done = file.CreateReplacement(path.c_str()) && file.Write(content.data(), content.size()) && file.Close();
    if (folderRefused) *folderRefused = file.FolderRefused();
    return done ? "" : file.Reason();
}

// Runs `work` in a process of its own; gives its exit status, or 128 and the signal that ended it.
int InAnotherProcess(const std::function<int()>& work) {
    pid_t child = fork();
    if (child == 0) _exit(work());
    int status = 0;
    waitpid(child, &status, 0);
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

// The same without root's right to everything.
int AsNobody(const std::function<int()>& work) {
    constexpr uid_t kNobody = 65534;
    return InAnotherProcess([&] {
        bool isRoot = geteuid() == 0;
        if (isRoot && (setresgid(kNobody, kNobody, kNobody) != 0 || setresuid(kNobody, kNobody, kNobody) != 0))
            return 127;
        prctl(PR_SET_DUMPABLE, 1);  // otherwise /proc/self stays root's
        return work();
    });
}

GifBytes SmallGif() {
    return GifBytes().Header("GIF89a", 2, 2, 0x81).SmallImage().Add({0x3B});
}

}  // namespace

TEST_F(FilePosix, ReplacementsKeepModeAndOwner) {
    ASSERT_TRUE(geteuid() != 0 || chown(path_.c_str(), 1234, 2345) == 0);
    ASSERT_EQ(chmod(path_.c_str(), 0640), 0);
    struct stat before = Status(path_);
    ASSERT_EQ(Replace(path_), "");
    struct stat after = Status(path_);
    EXPECT_EQ(ReadAll(path_), kNew);
    EXPECT_NE(after.st_ino, before.st_ino) << "written over, not replaced";
    EXPECT_EQ(after.st_mode, before.st_mode);
    EXPECT_EQ(after.st_uid, before.st_uid);
    EXPECT_EQ(after.st_gid, before.st_gid);

    mode_t previous = umask(027);
    EXPECT_EQ(Replace(folder_.Path("fresh")), "");
    umask(previous);
    EXPECT_EQ(Status(folder_.Path("fresh")).st_mode & 07777, 0640u);
}

TEST_F(FilePosix, LinksStayWhereTheyAre) {
    fs::create_directory(folder_.Path("sub"));
    const std::string direct = folder_.Path("direct"), chain = folder_.Path("sub/chain"), self = folder_.Path("self"),
                      dangling = folder_.Path("dangling"), open = folder_.Path("open");
    fs::create_symlink("target", direct);
    fs::create_symlink("../direct", chain);
    fs::create_symlink("self", self);
    fs::create_symlink(folder_.Path("sub/made"), dangling);
    Bytes content = {0};
    for (const std::string& link : {direct, chain}) {
        ++content[0];
        EXPECT_EQ(Replace(link, content), "");
        EXPECT_TRUE(fs::is_symlink(link));
        EXPECT_EQ(ReadAll(path_), content);
        EXPECT_FALSE(fs::is_symlink(path_));
    }
    EXPECT_EQ(Replace(dangling), "");
    EXPECT_TRUE(fs::is_symlink(dangling));
    EXPECT_EQ(ReadAll(folder_.Path("sub/made")), kNew);
    EXPECT_EQ(Replace(self), strerror(ELOOP));
    EXPECT_TRUE(fs::is_symlink(self));

    // What somebody has open, standard output say, is written to and not pulled away from under them.
    int file = ::open(path_.c_str(), O_RDWR);
    fs::create_symlink("/proc/self/fd/" + std::to_string(file), open);
    EXPECT_EQ(Replace(open), "");
    Bytes seen(kNew.size() + 1);
    EXPECT_EQ(read(file, seen.data(), seen.size()), static_cast<ssize_t>(kNew.size()));
    close(file);
}

TEST_F(FilePosix, EveryNameOfAFileShowsTheNewContent) {
    const std::string name = folder_.Path("name");
    fs::create_hard_link(path_, name);
    for (const Bytes& content : {kNew, Bytes(100000, 9), Bytes{8}, Bytes{}}) {
        bool folderRefused = true;
        EXPECT_EQ(Replace(name, content, &folderRefused), "");
        EXPECT_FALSE(folderRefused);
        EXPECT_TRUE(ReadAll(path_) == content);
        EXPECT_EQ(Status(path_).st_nlink, 2u);
    }
    EXPECT_EQ(folder_.Names().size(), 2u);
}

TEST_F(FilePosix, WhatTheFolderOrTheFileRefuses) {
    const std::string other = folder_.Path("other"), fresh = folder_.Path("fresh");
    WriteAll(other, kOld);
    ASSERT_EQ(chmod(path_.c_str(), 0666), 0);
    ASSERT_EQ(chmod(other.c_str(), 0444), 0);
    ASSERT_EQ(chmod(folder_.Path("").c_str(), 0555), 0);
    const std::string denied = strerror(EACCES);
    EXPECT_EQ(AsNobody([&] { return Replace(fresh) == denied; }), 1) << "a new file";
    EXPECT_EQ(AsNobody([&] { return Replace(other) == denied; }), 1) << "a file that can't be written";
    EXPECT_EQ(AsNobody([&] {
                  bool folderRefused = false;
                  return Replace(path_, kNew, &folderRefused).empty() && folderRefused;
              }),
              1);
    EXPECT_EQ(ReadAll(path_), kNew);

    // A folder that takes new files, but not with the owner of this one; and a file that nobody may write.
    ASSERT_EQ(chmod(folder_.Path("").c_str(), 0777), 0);
    struct stat before = Status(path_);
    EXPECT_EQ(AsNobody([&] { return Replace(path_, kOld).empty(); }), 1);
    EXPECT_EQ(AsNobody([&] { return Replace(other) == denied; }), 1);
    EXPECT_EQ(ReadAll(path_), kOld);
    EXPECT_EQ(Status(path_).st_uid, before.st_uid);
    EXPECT_EQ(ReadAll(other), kOld);
    EXPECT_EQ(folder_.Names(), (std::vector<std::string>{"other", "target"}));
}

TEST_F(FilePosix, NoSpaceLeavesTheOldContent) {
    const Bytes large(300000, 7);
    const std::string name = folder_.Path("name");
    for (bool inPlace : {false, true}) {
        if (inPlace) fs::create_hard_link(path_, name);
        EXPECT_EQ(InAnotherProcess([&] {
                      rlimit most = {100000, 100000};
                      return setrlimit(RLIMIT_FSIZE, &most) == 0 && Replace(path_, large) == strerror(EFBIG);
                  }),
                  1);
        EXPECT_EQ(ReadAll(path_), kOld);
        EXPECT_EQ(folder_.Names().size(), inPlace ? 2u : 1u);
    }
}

TEST_F(FilePosix, SignalsLeaveNothingBehind) {
    const Bytes large(8 << 20, 7);
    pid_t child = fork();
    while (child == 0)
        if (!Replace(path_, large).empty()) _exit(1);
    while (folder_.Names().size() < 2) std::this_thread::yield();
    kill(child, SIGTERM);
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), SIGTERM);
    EXPECT_EQ(folder_.Names().size(), 1u);
    Bytes left = ReadAll(path_);
    EXPECT_TRUE(left == kOld || left == large);
}

TEST(HoldInterruptsPosix, PutsSignalsOff) {
    static volatile sig_atomic_t arrived;
    arrived = 0;
    auto previous = signal(SIGTERM, [](int) { arrived = 1; });
    {
        HoldInterrupts hold;
        EXPECT_FALSE(HoldInterrupts::Pending());
        raise(SIGTERM);
        EXPECT_TRUE(HoldInterrupts::Pending());
        EXPECT_EQ(arrived, 0);
    }
    EXPECT_EQ(arrived, 1);
    signal(SIGTERM, SIG_IGN);
    {
        HoldInterrupts hold;
        raise(SIGTERM);
        EXPECT_FALSE(HoldInterrupts::Pending()) << "it is ignored, as by nohup";
    }
    signal(SIGTERM, previous);
}

TEST_F(FilePosix, PipesAreReadToTheirEndAndWrittenDirectly) {
    Bytes content(300001);
    for (size_t i = 0; i < content.size(); ++i) content[i] = static_cast<uint8_t>(i * 31 + i / 97);
    const std::string pipe = folder_.Path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    std::string failure;
    std::thread writer([&] { failure = Replace(pipe, content); });
    File file;
    ASSERT_TRUE(file.OpenForReading(pipe.c_str()));
    Bytes read(content.size() + 1);
    EXPECT_EQ(file.Read(read.data(), read.size()), content.size());
    writer.join();
    EXPECT_EQ(failure, "");
    EXPECT_TRUE(fs::is_fifo(pipe));
    for (size_t at : {size_t{70000}, size_t{5}, content.size() - 1}) {
        file.Seek(at);
        EXPECT_EQ(ReadByte(file), content[at]);
    }
    EXPECT_EQ(ReadByte(file), -1);
    EXPECT_FALSE(file.HasFailed());
}

TEST_F(FilePosix, CommandsSayTheSystemsReason) {
    const std::string gif = folder_.Path("a.gif"), secret = folder_.Path("secret.gif"), broken = "/proc/self/mem";
    WriteAll(gif, SmallGif());
    WriteAll(secret, SmallGif());
    ASSERT_EQ(chmod(folder_.Path("").c_str(), 0755), 0);
    ASSERT_EQ(chmod(secret.c_str(), 0), 0);
    ASSERT_EQ(chmod(path_.c_str(), 0666), 0);
    const std::tuple<Words, int, std::string> cases[] = {
        {{"list", secret}, 1, secret + ": can't be opened: Permission denied"},
        {{"list", broken}, 1, broken + ": can't be read: Input/output error"},
        {{"save", broken, path_}, 1, broken + ": can't be read: Input/output error"},
        {{"insert", gif, path_, "--at=0", "--kind=image", "--keep", broken},
         1,
         broken + ": can't be read: Input/output error"},
        {{"build", "-o", path_, gif, secret, "--skip-corrupted"}, 1, secret + ": can't be opened: Permission denied"},
        {{"save", gif, "/dev/full"}, 1, "/dev/full: can't be written: No space left on device"},
        {{"extract", gif, "1", "/dev/full"}, 1, "/dev/full: can't be written: No space left on device"},
        {{"save", gif, folder_.Path("new")}, 1, folder_.Path("new") + ": can't be written: Permission denied"},
        {{"save", gif, ""}, 1, ": can't be written: No such file or directory"},
        {{"extract", gif, "1", path_}, 0, path_ + ": note: written in place, as its folder takes no new file for it"},
    };
    for (const auto& [words, status, error] : cases) {
        const std::string expected = "zephyr: " + error + "\n";
        ASSERT_EQ(chmod(folder_.Path("").c_str(), geteuid() == 0 ? 0755 : 0555), 0);
        int code = AsNobody([&, &words = words, &status = status] {
            CliRun run = RunCli(words);
            if (run.err != expected) fprintf(stderr, "%s", run.err.c_str());
            return run.status == status && run.err == expected;
        });
        EXPECT_EQ(code, 1) << expected;
    }
}

TEST_F(FilePosix, NothingIsPrintedIntoTheFileThatStandardOutputIs) {
    const std::string gif = folder_.Path("a.gif");
    WriteAll(gif, SmallGif());
    for (Words words : {Words{"optimise", gif}, Words{"repair", gif}, Words{"cost", gif, "image"}}) {
        words.push_back("-");
        const std::string expected = RunCli(words).out;
        words.back() = "/dev/stdout";
        EXPECT_EQ(RunCli(words).out, expected) << words[0];
    }
}

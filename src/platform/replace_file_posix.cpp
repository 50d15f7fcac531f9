#include <fcntl.h>
#include <linux/magic.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <string>

#include "platform/file_system.h"
#include "platform/interrupts.h"
#include "platform/replace_file.h"

namespace {

constexpr int kMostLinks = 40;                       // as many as the system itself follows
constexpr int kMostNames = 100;                      // tried for a new file
constexpr size_t kPieceBytes = size_t{1024} * 1024;  // written between two looks at interrupts

class Descriptor {
public:
    explicit Descriptor(int file) : file_(file) {}
    ~Descriptor() { Close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    bool IsOpen() const { return file_ >= 0; }
    int Get() const { return file_; }
    bool Close() {
        int file = file_;
        file_ = -1;
        return file < 0 || close(file) == 0;
    }

private:
    int file_;
};

// With its slash, or empty for the current folder.
std::string FolderOf(const std::string& path) {
    return path.substr(0, path.rfind('/') + 1);
}

// The links there stand for files that somebody has open, whatever their text says.
bool IsInProc(const std::string& path) {
    struct statfs system;
    std::string folder = FolderOf(path);
    return statfs(folder.empty() ? "." : folder.c_str(), &system) == 0 && system.f_type == PROC_SUPER_MAGIC;
}

// Goes on to where symbolic links lead, a file or the place for one. Stops at a link to an open file. Returns 0 or the
// error.
int FollowLinks(std::string* path, bool* isOpenFile) {
    *isOpenFile = false;
    for (int i = 0; i < kMostLinks; ++i) {
        struct stat status;
        if (lstat(path->c_str(), &status) != 0 || !S_ISLNK(status.st_mode)) return 0;
        *isOpenFile = IsInProc(*path);
        if (*isOpenFile) return 0;
        char text[PATH_MAX];
        ssize_t length = readlink(path->c_str(), text, sizeof text);
        if (length < 0) return errno;
        std::string next(text, static_cast<size_t>(length));
        *path = next[0] == '/' ? next : FolderOf(*path) + next;
    }
    return ELOOP;
}

int WritePart(int file, ContentPart part, bool mayStop) {
    while (!part.empty()) {
        if (mayStop && HoldInterrupts::Pending()) return EINTR;
        ptrdiff_t written = SystemWrite(file, part.data(), std::min(part.size(), kPieceBytes));
        if (written < 0) return errno;
        if (written == 0) return EIO;
        part = part.subspan(static_cast<size_t>(written));
    }
    return 0;
}

int WriteContent(int file, FileContent content, bool mayStop) {
    for (ContentPart part : content)
        if (int error = WritePart(file, part, mayStop)) return error;
    return 0;
}

int Sync(int file) {
    return fsync(file) == 0 ? 0 : errno;
}

// Opens a new file in the folder, readable by nobody else, or as usual when it `replaces` nothing.
int OpenFresh(int folder, bool replaces, std::string* name) {
    for (int i = 0; i < kMostNames; ++i) {
        uint64_t random;
        if (getentropy(&random, sizeof random) != 0) return -1;
        char text[32];
        snprintf(text, sizeof text, ".zephyr-%016llx", static_cast<unsigned long long>(random));
        *name = text;
        int file = openat(folder, text, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, replaces ? 0600 : 0666);
        if (file >= 0 || errno != EEXIST) return file;
    }
    return -1;
}

int CarryOver(const struct stat& from, int to) {
    struct stat status;
    if (fstat(to, &status) != 0) return errno;
    bool sameOwner = status.st_uid == from.st_uid && status.st_gid == from.st_gid;
    if (!sameOwner && fchown(to, from.st_uid, from.st_gid) != 0) return errno;
    return fchmod(to, from.st_mode & 07777) == 0 ? 0 : errno;
}

// Fills the new file and gives it the name. `old` is what it replaces, if anything.
int FillAndRename(int folder, Descriptor* file, const std::string& fresh, const std::string& name,
                  const struct stat* old, FileContent content, bool flushes) {
    if (int error = old ? CarryOver(*old, file->Get()) : 0) return error;
    if (int error = WriteContent(file->Get(), content, true)) return error;
    if (int error = flushes ? Sync(file->Get()) : 0) return error;
    if (!file->Close()) return errno;
    return renameat(folder, fresh.c_str(), folder, name.c_str()) == 0 ? 0 : errno;
}

int WriteBeside(const std::string& path, const struct stat* old, FileContent content, bool flushes) {
    std::string folderPath = FolderOf(path);
    std::string name = path.substr(folderPath.size());
    if (name.empty()) return ENOENT;
    // By number, so that the fresh name adds nothing to the length of the path.
    Descriptor folder(open(folderPath.empty() ? "." : folderPath.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!folder.IsOpen()) return errno;
    HoldInterrupts hold;
    std::string fresh;
    Descriptor file(OpenFresh(folder.Get(), old != nullptr, &fresh));
    if (!file.IsOpen()) return errno;
    int error = FillAndRename(folder.Get(), &file, fresh, name, old, content, flushes);
    if (error) unlinkat(folder.Get(), fresh.c_str(), 0);
    return error;
}

// No new files there, not with this owner, or not in the place of this one (it is mounted by itself).
bool IsRefusal(int error) {
    return error == EACCES || error == EPERM || error == EROFS || error == EBUSY;
}

// Makes sure that the disk takes the content before the old one is touched.
int Reserve(int file, off_t oldBytes, off_t bytes) {
    if (bytes == 0) return 0;
    int error = posix_fallocate(file, 0, bytes);
    // File systems that know no reservation have it written out, which works behind the end only.
    bool isUnknown = error == EBADF || error == EINVAL || error == EOPNOTSUPP;
    if (isUnknown) error = bytes > oldBytes ? posix_fallocate(file, oldBytes, bytes - oldBytes) : 0;
    if (error && ftruncate(file, oldBytes) != 0) return errno;
    return error;
}

int WriteInPlace(int file, const struct stat& old, FileContent content) {
    HoldInterrupts hold;
    const auto bytes = static_cast<off_t>(BytesOf(content));
    if (int error = Reserve(file, old.st_size, bytes)) return error;
    if (int error = WriteContent(file, content, false)) return error;
    return ftruncate(file, bytes) == 0 ? Sync(file) : errno;
}

}  // namespace

int ReplaceFileContent(const char* path, FileContent content, bool flushesNew, bool* folderRefused) {
    *folderRefused = false;
    std::string target = path;
    bool isOpenFile;
    // Opened by its own name, so that the system's rules for following links hold; a file that the user must not write
    // is not replaced either.
    Descriptor old(open(path, O_WRONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
    if (!old.IsOpen() && errno != ENOENT) return errno;
    if (int error = FollowLinks(&target, &isOpenFile)) return error;
    if (!old.IsOpen()) return WriteBeside(target, nullptr, content, flushesNew);

    struct stat status;
    if (fstat(old.Get(), &status) != 0) return errno;
    if (!isOpenFile && status.st_nlink == 1) {
        int error = WriteBeside(target, &status, content, true);
        if (!IsRefusal(error)) return error;
        *folderRefused = true;
    }
    return WriteInPlace(old.Get(), status, content);
}

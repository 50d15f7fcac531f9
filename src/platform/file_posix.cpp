#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "platform/faults.h"
#include "platform/file_system.h"

const int kSystemNoMemory = ENOMEM;
const int kSystemFileTooLarge = EFBIG;

namespace {

bool GetMode(int file, mode_t* mode) {
    struct stat status;
    if (fstat(file, &status) != 0) return false;
    *mode = status.st_mode;
    return true;
}

// Closes without losing the reason why something failed.
int CloseAfter(int file, int error) {
    close(file);
    errno = error;
    return -1;
}

bool Fails(long& remaining, int error) {
    if (!FaultDue(remaining)) return false;
    errno = error;
    return true;
}

}  // namespace

intptr_t SystemOpenForReading(const char* path, bool* isSeekable) {
    int file = open(path, O_RDONLY | O_CLOEXEC);
    if (file < 0) return -1;
    mode_t mode = 0;
    if (!GetMode(file, &mode)) return CloseAfter(file, errno);
    if (S_ISDIR(mode)) return CloseAfter(file, EISDIR);
    *isSeekable = S_ISREG(mode) || S_ISBLK(mode);
    return file;
}

intptr_t SystemCreate(const char* path, bool* isOrdinary) {
    int file = open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    mode_t mode = 0;
    *isOrdinary = file >= 0 && GetMode(file, &mode) && S_ISREG(mode);
    return file;
}

ptrdiff_t SystemRead(intptr_t file, void* to, size_t bytes) {
    if (Fails(faults.readsUntilFailure, EIO)) return -1;
    ptrdiff_t came;
    do came = read(static_cast<int>(file), to, bytes);
    while (came < 0 && errno == EINTR);
    return came;
}

ptrdiff_t SystemWrite(intptr_t file, const void* from, size_t bytes) {
    if (Fails(faults.writesUntilFailure, ENOSPC)) return -1;
    ptrdiff_t written;
    do written = write(static_cast<int>(file), from, bytes);
    while (written < 0 && errno == EINTR);
    return written;
}

bool SystemSeek(intptr_t file, uint64_t position) {
    if (Fails(faults.seeksUntilFailure, EIO)) return false;
    return lseek(static_cast<int>(file), static_cast<off_t>(position), SEEK_SET) >= 0;
}

uint64_t SystemSize(intptr_t file) {
    struct stat status;
    return fstat(static_cast<int>(file), &status) == 0 ? static_cast<uint64_t>(status.st_size) : 0;
}

bool SystemClose(intptr_t file) {
    return close(static_cast<int>(file)) == 0;
}

bool SystemIsSpecial(const char* path) {
    struct stat status;
    return stat(path, &status) == 0 && !S_ISREG(status.st_mode);
}

void SystemDelete(const char* path) {
    unlink(path);
}

int SystemLastError() {
    return errno;
}

std::string SystemErrorText(int error) {
    return strerror(error);
}

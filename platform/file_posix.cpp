#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "platform/file_system.h"

namespace {

bool GetMode(int file, mode_t* mode) {
    struct stat status;
    if (fstat(file, &status) != 0) return false;
    *mode = status.st_mode;
    return true;
}

}  // namespace

intptr_t SystemOpenForReading(const char* path) {
    int file = open(path, O_RDONLY | O_CLOEXEC);
    mode_t mode = 0;
    if (file >= 0 && (!GetMode(file, &mode) || S_ISDIR(mode))) {
        close(file);
        file = -1;
    }
    return file;
}

intptr_t SystemCreate(const char* path, bool* isOrdinary) {
    int file = open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    mode_t mode = 0;
    *isOrdinary = file >= 0 && GetMode(file, &mode) && S_ISREG(mode);
    return file;
}

ptrdiff_t SystemRead(intptr_t file, void* to, size_t bytes) {
    ptrdiff_t came;
    do came = read(static_cast<int>(file), to, bytes);
    while (came < 0 && errno == EINTR);
    return came;
}

ptrdiff_t SystemWrite(intptr_t file, const void* from, size_t bytes) {
    ptrdiff_t written;
    do written = write(static_cast<int>(file), from, bytes);
    while (written < 0 && errno == EINTR);
    return written;
}

bool SystemSeek(intptr_t file, uint64_t position) {
    return lseek(static_cast<int>(file), static_cast<off_t>(position), SEEK_SET) >= 0;
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

bool SystemReplace(const char* from, const char* to) {
    return rename(from, to) == 0;
}

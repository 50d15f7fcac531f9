#include <algorithm>

#include "platform/faults.h"
#include "platform/file_system.h"
#include "platform/wide_text_win32.h"
#include "platform/windows_api.h"

const int kSystemNoMemory = ERROR_NOT_ENOUGH_MEMORY;
const int kSystemFileTooLarge = ERROR_FILE_TOO_LARGE;

namespace {

// INVALID_HANDLE_VALUE is -1.
intptr_t Open(const char* path, DWORD access, DWORD share, DWORD disposition) {
    HANDLE file =
        CreateFileW(WideFromUtf8(path).c_str(), access, share, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
    return reinterpret_cast<intptr_t>(file);
}

HANDLE HandleOf(intptr_t file) {
    return reinterpret_cast<HANDLE>(file);
}

bool Fails(long& remaining, DWORD error) {
    if (!FaultDue(remaining)) return false;
    SetLastError(error);
    return true;
}

DWORD Piece(size_t bytes) {
    return static_cast<DWORD>(std::min<size_t>(bytes, 1 << 30));
}

}  // namespace

intptr_t SystemOpenForReading(const char* path, bool* isSeekable) {
    intptr_t file = Open(path, GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING);
    *isSeekable = HandleOf(file) != INVALID_HANDLE_VALUE && GetFileType(HandleOf(file)) == FILE_TYPE_DISK;
    return file;
}

intptr_t SystemCreate(const char* path, bool* isOrdinary) {
    intptr_t file = Open(path, GENERIC_WRITE, 0, CREATE_ALWAYS);
    *isOrdinary = HandleOf(file) != INVALID_HANDLE_VALUE && GetFileType(HandleOf(file)) == FILE_TYPE_DISK;
    return file;
}

ptrdiff_t SystemRead(intptr_t file, void* to, size_t bytes) {
    if (Fails(faults.readsUntilFailure, ERROR_READ_FAULT)) return -1;
    DWORD came = 0;
    if (ReadFile(HandleOf(file), to, Piece(bytes), &came, nullptr)) return static_cast<ptrdiff_t>(came);
    return GetLastError() == ERROR_BROKEN_PIPE ? 0 : -1;  // so a pipe says that its writer has closed it
}

ptrdiff_t SystemWrite(intptr_t file, const void* from, size_t bytes) {
    if (Fails(faults.writesUntilFailure, ERROR_DISK_FULL)) return -1;
    DWORD written = 0;
    return WriteFile(HandleOf(file), from, Piece(bytes), &written, nullptr) ? static_cast<ptrdiff_t>(written) : -1;
}

bool SystemSeek(intptr_t file, uint64_t position) {
    if (Fails(faults.seeksUntilFailure, ERROR_SEEK)) return false;
    LARGE_INTEGER distance;
    distance.QuadPart = static_cast<LONGLONG>(position);
    return SetFilePointerEx(HandleOf(file), distance, nullptr, FILE_BEGIN) != 0;
}

uint64_t SystemSize(intptr_t file) {
    LARGE_INTEGER size;
    return GetFileSizeEx(HandleOf(file), &size) ? static_cast<uint64_t>(size.QuadPart) : 0;
}

bool SystemClose(intptr_t file) {
    return CloseHandle(HandleOf(file)) != 0;
}

bool SystemIsSpecial(const char* path) {
    DWORD attributes = GetFileAttributesW(WideFromUtf8(path).c_str());
    return attributes != INVALID_FILE_ATTRIBUTES &&
           (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE)) != 0;
}

void SystemDelete(const char* path) {
    DeleteFileW(WideFromUtf8(path).c_str());
}

int SystemLastError() {
    return static_cast<int>(GetLastError());
}

std::string SystemErrorText(int error) {
    constexpr DWORD kMostCharacters = 512;
    wchar_t text[kMostCharacters];
    DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                  static_cast<DWORD>(error), 0, text, kMostCharacters, nullptr);
    while (length && (text[length - 1] <= L' ' || text[length - 1] == L'.')) --length;
    return length ? Utf8FromWide({text, length}) : "error " + std::to_string(error);
}

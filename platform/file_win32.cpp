#include <algorithm>

#include "platform/file_system.h"
#include "platform/wide_text.h"
#include "platform/windows_api.h"

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

DWORD Piece(size_t bytes) {
    return static_cast<DWORD>(std::min<size_t>(bytes, 1 << 30));
}

}  // namespace

intptr_t SystemOpenForReading(const char* path) {
    return Open(path, GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING);
}

intptr_t SystemCreate(const char* path, bool* isOrdinary) {
    intptr_t file = Open(path, GENERIC_WRITE, 0, CREATE_ALWAYS);
    *isOrdinary = HandleOf(file) != INVALID_HANDLE_VALUE && GetFileType(HandleOf(file)) == FILE_TYPE_DISK;
    return file;
}

ptrdiff_t SystemRead(intptr_t file, void* to, size_t bytes) {
    DWORD came = 0;
    return ReadFile(HandleOf(file), to, Piece(bytes), &came, nullptr) ? static_cast<ptrdiff_t>(came) : -1;
}

ptrdiff_t SystemWrite(intptr_t file, const void* from, size_t bytes) {
    DWORD written = 0;
    return WriteFile(HandleOf(file), from, Piece(bytes), &written, nullptr) ? static_cast<ptrdiff_t>(written) : -1;
}

bool SystemSeek(intptr_t file, uint64_t position) {
    LARGE_INTEGER distance;
    distance.QuadPart = static_cast<LONGLONG>(position);
    return SetFilePointerEx(HandleOf(file), distance, nullptr, FILE_BEGIN) != 0;
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

bool SystemReplace(const char* from, const char* to) {
    return MoveFileExW(WideFromUtf8(from).c_str(), WideFromUtf8(to).c_str(), MOVEFILE_REPLACE_EXISTING) != 0;
}

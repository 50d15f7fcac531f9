#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string>

#include "platform/file_system.h"
#include "platform/interrupts.h"
#include "platform/replace_file.h"
#include "platform/wide_text_win32.h"
#include "platform/windows_api.h"

namespace {

constexpr int kMostNames = 100;                      // tried for a new file
constexpr size_t kPieceBytes = size_t{1024} * 1024;  // written between two looks at interrupts

class Handle {
public:
    explicit Handle(HANDLE file) : file_(file) {}
    ~Handle() { Close(); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    bool IsOpen() const { return file_ != INVALID_HANDLE_VALUE; }
    HANDLE Get() const { return file_; }
    bool Close() {
        HANDLE file = file_;
        file_ = INVALID_HANDLE_VALUE;
        return file == INVALID_HANDLE_VALUE || CloseHandle(file);
    }

private:
    HANDLE file_;
};

HANDLE OpenForWriting(const std::wstring& path, DWORD disposition) {
    return CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
}

int WritePart(HANDLE file, ContentPart part, bool mayStop) {
    while (!part.empty()) {
        if (mayStop && HoldInterrupts::Pending()) return ERROR_OPERATION_ABORTED;
        size_t most = std::min(part.size(), kPieceBytes);
        ptrdiff_t written = SystemWrite(reinterpret_cast<intptr_t>(file), part.data(), most);
        if (written < 0) return SystemLastError();
        if (written == 0) return ERROR_WRITE_FAULT;
        part = part.subspan(static_cast<size_t>(written));
    }
    return 0;
}

int WriteContent(HANDLE file, FileContent content, bool mayStop) {
    for (ContentPart part : content)
        if (int error = WritePart(file, part, mayStop)) return error;
    return 0;
}

int Sync(HANDLE file) {
    return FlushFileBuffers(file) ? 0 : SystemLastError();
}

// Opens a new file beside `path`, whose own path goes to `fresh`.
HANDLE OpenFresh(const std::wstring& path, std::wstring* fresh) {
    std::random_device random;
    for (int i = 0; i < kMostNames; ++i) {
        char name[32];
        snprintf(name, sizeof name, "zephyr-%08x%08x", random(), random());
        *fresh = path.substr(0, path.find_last_of(L"\\/:") + 1) + WideFromUtf8(name);
        HANDLE file = OpenForWriting(*fresh, CREATE_NEW);
        if (file != INVALID_HANDLE_VALUE || GetLastError() != ERROR_FILE_EXISTS) return file;
    }
    return INVALID_HANDLE_VALUE;
}

// ReplaceFileW keeps owner, rights and attributes of the old file; some file systems do not know it.
bool MoveOver(const std::wstring& from, const std::wstring& to, bool replaces) {
    if (replaces && ReplaceFileW(to.c_str(), from.c_str(), nullptr, REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr, nullptr))
        return true;
    return MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
}

int WriteBeside(const std::wstring& path, bool replaces, FileContent content, bool flushes) {
    HoldInterrupts hold;
    std::wstring fresh;
    Handle file(OpenFresh(path, &fresh));
    if (!file.IsOpen()) return SystemLastError();
    int error = WriteContent(file.Get(), content, true);
    if (!error && flushes) error = Sync(file.Get());
    if (!file.Close() && !error) error = SystemLastError();
    if (!error && !MoveOver(fresh, path, replaces)) error = SystemLastError();
    if (error) DeleteFileW(fresh.c_str());
    return error;
}

bool SetSize(HANDLE file, uint64_t bytes) {
    LARGE_INTEGER end;
    end.QuadPart = static_cast<LONGLONG>(bytes);
    return SetFilePointerEx(file, end, nullptr, FILE_BEGIN) && SetEndOfFile(file);
}

int WriteInPlace(HANDLE file, FileContent content) {
    HoldInterrupts hold;
    LARGE_INTEGER oldBytes, start = {};
    const uint64_t bytes = BytesOf(content);
    if (!GetFileSizeEx(file, &oldBytes)) return SystemLastError();
    // A larger size reserves the space, before the old content is touched.
    if (bytes > static_cast<uint64_t>(oldBytes.QuadPart) && !SetSize(file, bytes)) return SystemLastError();
    if (!SetFilePointerEx(file, start, nullptr, FILE_BEGIN)) return SystemLastError();
    if (int error = WriteContent(file, content, false)) return error;
    return SetSize(file, bytes) ? Sync(file) : SystemLastError();
}

bool HasOneName(HANDLE file) {
    BY_HANDLE_FILE_INFORMATION information;
    return GetFileInformationByHandle(file, &information) && information.nNumberOfLinks == 1;
}

}  // namespace

int ReplaceFileContent(const char* path, FileContent content, bool flushesNew, bool* folderRefused) {
    *folderRefused = false;
    std::wstring target = WideFromUtf8(path);
    DWORD attributes = GetFileAttributesW(target.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) return WriteBeside(target, false, content, flushesNew);
    // A file that the user must not write is not replaced either. The system refuses to open one that is marked as
    // read-only; Wine opens it for the superuser.
    if (attributes & FILE_ATTRIBUTE_READONLY) return ERROR_ACCESS_DENIED;
    Handle old(OpenForWriting(target, OPEN_EXISTING));
    if (!old.IsOpen()) return SystemLastError();
    bool isLink = (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    if (!isLink && HasOneName(old.Get())) {
        old.Close();
        int error = WriteBeside(target, true, content, true);
        if (error != ERROR_ACCESS_DENIED) return error;
        *folderRefused = true;
        Handle again(OpenForWriting(target, OPEN_EXISTING));
        return again.IsOpen() ? WriteInPlace(again.Get(), content) : SystemLastError();
    }
    return WriteInPlace(old.Get(), content);
}

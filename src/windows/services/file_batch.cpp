#include "windows/services/file_batch.h"

#include <utility>

#include "platform/file_system.h"
#include "platform/wide_text_win32.h"
#include "platform/windows_api.h"
#include "windows/services/file_presence.h"

namespace {

// A name beside `path` that nothing has.
std::wstring FreeName(const std::wstring& path, const wchar_t* ending) {
    for (unsigned number = 0;; ++number) {
        std::wstring name = path + ending + std::to_wstring(number);
        if (!IsThere(name)) return name;
    }
}

std::string LastReason() {
    return SystemErrorText(SystemLastError());
}

bool Move(const std::wstring& from, const std::wstring& to) {
    return MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_WRITE_THROUGH) != FALSE;
}

// What the user must not write is not replaced either, though it could be moved out of the way; nor is a folder.
bool MayReplace(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes == INVALID_FILE_ATTRIBUTES ||
           !(attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY));
}

}  // namespace

FileBatch::~FileBatch() {
    for (const Entry& entry : entries_)
        if (!entry.isThere) DeleteFileW(entry.waiting.c_str());
}

bool FileBatch::Fail(const std::string& path, std::string reason) {
    failedPath_ = path;
    reason_ = std::move(reason);
    return false;
}

bool FileBatch::Add(const std::string& path, std::span<const uint8_t> content) {
    const std::wstring target = WideFromUtf8(path);
    if (!MayReplace(target)) return Fail(path, SystemErrorText(ERROR_ACCESS_DENIED));
    entries_.push_back({path, target, FreeName(target, L".new"), {}});
    File file;
    if (file.Create(Utf8FromWide(entries_.back().waiting).c_str()) && file.Write(content.data(), content.size()) &&
        file.Close())
        return true;
    return Fail(path, file.Reason());
}

bool FileBatch::Put(Entry* entry) {
    if (IsThere(entry->target)) {
        std::wstring old = FreeName(entry->target, L".old");
        if (!Move(entry->target, old)) return Fail(entry->path, LastReason());
        entry->old = std::move(old);
    }
    entry->isThere = Move(entry->waiting, entry->target);
    return entry->isThere || Fail(entry->path, LastReason());
}

void FileBatch::TakeBack() {
    for (Entry& entry : entries_) {
        if (entry.isThere) entry.isThere = !Move(entry.target, entry.waiting);
        if (!entry.old.empty()) Move(entry.old, entry.target);
    }
}

bool FileBatch::Commit() {
    for (Entry& entry : entries_)
        if (!Put(&entry)) return TakeBack(), false;
    for (const Entry& entry : entries_)
        if (!entry.old.empty()) DeleteFileW(entry.old.c_str());
    return true;
}

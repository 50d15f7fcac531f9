#include "windows/services/clipboard.h"

#include <cstring>

namespace {

constexpr int kAttempts = 20;  // another program has it open for a moment at most
constexpr DWORD kPauseMilliseconds = 10;

class OpenedClipboard {
public:
    explicit OpenedClipboard(HWND owner) {
        for (int attempt = 0; !isOpen_ && attempt < kAttempts; ++attempt) {
            if (attempt > 0) Sleep(kPauseMilliseconds);
            isOpen_ = OpenClipboard(owner) != FALSE;
        }
    }
    ~OpenedClipboard() {
        if (isOpen_) CloseClipboard();
    }
    OpenedClipboard(const OpenedClipboard&) = delete;
    OpenedClipboard& operator=(const OpenedClipboard&) = delete;

    explicit operator bool() const { return isOpen_; }

private:
    bool isOpen_ = false;
};

HGLOBAL CopyOf(std::span<const uint8_t> bytes) {
    HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes.size());
    void* place = memory ? GlobalLock(memory) : nullptr;
    if (!place) return GlobalFree(memory), nullptr;
    memcpy(place, bytes.data(), bytes.size());
    GlobalUnlock(memory);
    return memory;
}

bool Put(const ClipboardPart& part, HGLOBAL copy) {
    if (copy && SetClipboardData(part.format, copy)) return true;  // it is the system's now
    GlobalFree(copy);
    return false;
}

}  // namespace

bool PutOnClipboard(HWND owner, std::span<const ClipboardPart> parts) {
    HGLOBAL first = CopyOf(parts[0].bytes);
    OpenedClipboard clipboard(owner);
    if (!first || !clipboard || !EmptyClipboard()) {
        GlobalFree(first);
        return false;
    }
    const bool isThere = Put(parts[0], first);
    for (const ClipboardPart& part : parts.subspan(1)) Put(part, CopyOf(part.bytes));
    return isThere;
}

std::vector<UINT> FormatsOnClipboard(HWND owner) {
    const OpenedClipboard clipboard(owner);
    std::vector<UINT> formats;
    if (!clipboard) return formats;
    for (UINT format = 0; (format = EnumClipboardFormats(format)) != 0;) formats.push_back(format);
    return formats;
}

MemoryHandle TakeFromClipboard(HWND owner, UINT format, size_t* bytes) {
    OpenedClipboard clipboard(owner);
    HGLOBAL there = clipboard ? GetClipboardData(format) : nullptr;
    const void* from = there ? GlobalLock(there) : nullptr;
    if (!from) return nullptr;
    *bytes = GlobalSize(there);
    MemoryHandle copy = AllocateMemory(*bytes);
    if (WriteLock lock(&copy); lock) memcpy(lock.Bytes(), from, *bytes);
    GlobalUnlock(there);
    return copy;
}

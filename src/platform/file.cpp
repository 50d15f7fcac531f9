#include "platform/file.h"

#include <algorithm>
#include <cstring>
#include <deque>
#include <new>
#include <utility>

#include "platform/file_system.h"
#include "platform/replace_file.h"

namespace {
constexpr int kUnknownError = -1;  // a failure without a number of the system's
}

File::~File() {
    Discard();
}

// Forgets the file before and its failures.
void File::Start() {
    Discard();
    failed_ = folderRefused_ = false;
    flushesNew_ = true;
    error_ = 0;
    windowStart_ = systemPosition_ = 0;
}

bool File::Fail(int error) {
    failed_ = true;
    if (error_ == 0) error_ = error ? error : kUnknownError;
    return false;
}

std::string File::Reason() const {
    return HasFailed() ? SystemErrorText(error_) : std::string();
}

bool File::AllocateBuffer() {
    buffer_ = AllocateScratch(kBufferBytes);
    bufferBytes_ = kBufferBytes;
    window_ = buffer_.get();
    return buffer_ || Fail(kSystemNoMemory);
}

bool File::GrowBuffer(uint64_t bytes) {
    std::unique_ptr<uint8_t[]> larger = AllocateScratch(bytes);
    if (!larger) return Fail(kSystemNoMemory);
    memcpy(larger.get(), buffer_.get(), filled_);
    buffer_ = std::move(larger);
    bufferBytes_ = static_cast<size_t>(bytes);
    return true;
}

bool File::OpenForReading(const char* path) {
    Start();
    if (!AllocateBuffer()) return false;
    bool isSeekable = false;
    system_ = SystemOpenForReading(path, &isSeekable);
    if (system_ == kClosed) return Fail(SystemLastError());
    if (!isSeekable) ReadStream();
    return true;
}

// Takes the whole stream into memory. A failure is one of reading, which those who read will find.
void File::ReadStream() {
    ptrdiff_t came = 0;
    do {
        filled_ += static_cast<size_t>(came);
        if (filled_ == kMostStreamBytes) Fail(kSystemFileTooLarge);
        if (filled_ == bufferBytes_ && !failed_) GrowBuffer(2 * uint64_t{bufferBytes_});
        came = failed_ ? 0 : SystemRead(system_, buffer_.get() + filled_, bufferBytes_ - filled_);
    } while (came > 0);
    if (came < 0) Fail(SystemLastError());
    if (failed_) filled_ = 0;
    content_ = window_ = buffer_.get();
    contentBytes_ = filled_;
}

void File::OpenMemory(const void* content, size_t bytes) {
    Start();
    content_ = window_ = static_cast<const uint8_t*>(content);
    contentBytes_ = filled_ = bytes;
}

bool File::Create(const char* path) {
    Start();
    if (!AllocateBuffer()) return false;
    bool isOrdinary = false;
    system_ = SystemCreate(path, &isOrdinary);
    if (system_ == kClosed) return Fail(SystemLastError());
    if (isOrdinary) createdPath_ = path;
    writing_ = true;
    return true;
}

bool File::CreateReplacement(const char* path) {
    if (SystemIsSpecial(path)) return Create(path);
    Start();
    if (!AllocateBuffer()) return false;
    replacedPath_ = path;
    writing_ = gathering_ = true;
    return true;
}

bool File::CreateMemory() {
    Start();
    if (!AllocateBuffer()) return false;
    writing_ = gathering_ = inMemory_ = true;
    return true;
}

void File::Fill() {
    windowStart_ += filled_;
    next_ = filled_ = 0;
    if (failed_ || writing_) return;
    if (content_) {
        if (windowStart_ >= contentBytes_) return;
        window_ = content_ + windowStart_;
        filled_ = contentBytes_ - static_cast<size_t>(windowStart_);
        return;
    }
    if (system_ == kClosed) return;
    ptrdiff_t came = -1;
    if (systemPosition_ == windowStart_ || SystemSeek(system_, windowStart_)) {
        systemPosition_ = windowStart_;
        came = SystemRead(system_, buffer_.get(), kBufferBytes);
    }
    if (came < 0) Fail(SystemLastError());
    if (came <= 0) return;
    filled_ = static_cast<size_t>(came);
    systemPosition_ += filled_;
}

int File::ReadByteAfterFill() {
    Fill();
    return filled_ ? window_[next_++] : -1;
}

size_t File::Read(void* to, size_t bytes) {
    auto* out = static_cast<uint8_t*>(to);
    size_t done = 0;
    while (done < bytes) {
        if (next_ == filled_) Fill();
        if (filled_ == 0) break;
        size_t piece = std::min(bytes - done, filled_ - next_);
        memcpy(out + done, window_ + next_, piece);
        next_ += piece;
        done += piece;
    }
    return done;
}

// What the system says of the size is a start; the file may grow or shrink meanwhile, or not know its size.
MemoryHandle File::ReadRest(uint64_t most, size_t* bytes) {
    *bytes = 0;
    const uint64_t start = Position();
    uint64_t size = content_ ? contentBytes_ : SystemSize(system_);
    uint64_t room = std::clamp<uint64_t>(size > start ? size - start : 0, 1, most);
    MemoryHandle memory;
    for (;;) {
        MemoryHandle larger = AllocateMemory(room);
        WriteLock lock(&larger);
        if (!lock) return Fail(kSystemNoMemory), nullptr;
        if (MemoryLock old(memory); old) memcpy(lock.Bytes(), old.Bytes(), *bytes);
        memory = larger;
        *bytes += Read(lock.Bytes() + *bytes, static_cast<size_t>(room) - *bytes);
        int next = *bytes == room ? ReadByte() : -1;
        if (failed_) return nullptr;
        if (next < 0) return memory;
        if (room == most) return Fail(kSystemFileTooLarge), nullptr;
        Seek(start + *bytes);
        room = std::min(2 * room, most);
    }
}

void File::Seek(uint64_t position) {
    if (position >= windowStart_ && position <= windowStart_ + filled_) {
        next_ = static_cast<size_t>(position - windowStart_);
        return;
    }
    windowStart_ = position;
    next_ = filled_ = 0;
}

void File::FlushBuffer() {
    size_t done = 0;
    while (!failed_ && done < filled_) {
        ptrdiff_t written = SystemWrite(system_, buffer_.get() + done, filled_ - done);
        if (written <= 0)
            Fail(SystemLastError());
        else
            done += static_cast<size_t>(written);
    }
    filled_ = 0;
}

void File::MakeRoom() {
    if (gathering_)
        GrowBuffer(2 * uint64_t{bufferBytes_});
    else
        FlushBuffer();
}

bool File::Write(const void* from, size_t bytes) {
    if (!writing_) return false;
    const auto* in = static_cast<const uint8_t*>(from);
    while (bytes > 0 && !failed_) {
        size_t piece = std::min(bytes, bufferBytes_ - filled_);
        memcpy(buffer_.get() + filled_, in, piece);
        if (gathering_ && !inMemory_ && !AddPart(nullptr, filled_, piece)) return false;
        filled_ += piece;
        in += piece;
        bytes -= piece;
        if (filled_ == bufferBytes_) MakeRoom();
    }
    return !failed_;
}

// What goes on where the last part ends makes that longer.
bool File::AddPart(const MemoryHandle& kept, size_t start, size_t bytes) {
    if (!parts_.empty() && parts_.back().kept == kept && parts_.back().start + parts_.back().bytes == start) {
        parts_.back().bytes += bytes;
        return true;
    }
    try {
        parts_.push_back({kept, start, bytes});
        return true;
    } catch (const std::bad_alloc&) {
        return Fail(kSystemNoMemory);
    }
}

bool File::WriteKept(const MemoryHandle& memory, size_t start, size_t bytes) {
    constexpr size_t kWorthAPart = 4096;
    const bool goesOn = !parts_.empty() && parts_.back().kept == memory;
    if (gathering_ && !inMemory_ && !failed_ && (goesOn || parts_.empty() || bytes >= kWorthAPart))
        return AddPart(memory, start, bytes);
    MemoryLock lock(memory);
    return lock && Write(lock.Bytes() + start, bytes);
}

void File::Replace() {
    std::vector<ContentPart> content;
    std::deque<MemoryLock> locks;  // cppcheck-suppress variableScope ; they hold until all is written
    try {
        for (const Part& part : parts_) {
            const uint8_t* bytes = part.kept ? locks.emplace_back(part.kept).Bytes() : buffer_.get();
            if (!bytes) return static_cast<void>(Fail(kSystemNoMemory));
            content.emplace_back(bytes + part.start, part.bytes);
        }
    } catch (const std::bad_alloc&) {
        return static_cast<void>(Fail(kSystemNoMemory));
    }
    if (int error = ReplaceFileContent(replacedPath_.c_str(), content, flushesNew_, &folderRefused_)) Fail(error);
}

bool File::Close() {
    bool wasOpen = writing_ || system_ != kClosed;
    if (writing_ && !failed_) {
        if (!gathering_)
            FlushBuffer();
        else if (!inMemory_)
            Replace();
    }
    return CloseSystemFile() && wasOpen && !failed_;
}

void File::Discard() {
    failed_ = true;
    CloseSystemFile();
}

// Forgets everything about the file but whether it failed. A created one that did goes.
bool File::CloseSystemFile() {
    if (system_ != kClosed && !SystemClose(system_)) Fail(SystemLastError());
    if (failed_ && !createdPath_.empty()) SystemDelete(createdPath_.c_str());
    system_ = kClosed;
    createdPath_.clear();
    parts_.clear();
    buffer_.reset();
    content_ = window_ = nullptr;
    next_ = filled_ = 0;
    writing_ = gathering_ = inMemory_ = false;
    return !failed_;
}

int WriteByte(File& file, int value) {
    auto byte = static_cast<uint8_t>(value);
    return file.Write(&byte, 1) ? value : -1;
}

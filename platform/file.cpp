#include "platform/file.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "platform/faults.h"
#include "platform/file_system.h"

File::~File() {
    Discard();
}

bool File::AllocateBuffer() {
    if (FaultDue(faults.allocationsUntilFailure)) return false;
    buffer_.reset(new (std::nothrow) uint8_t[kBufferBytes]);
    return buffer_ != nullptr;
}

bool File::OpenForReading(const char* path) {
    Discard();
    if (!AllocateBuffer()) return false;
    system_ = SystemOpenForReading(path);
    writing_ = failed_ = false;
    window_ = buffer_.get();
    windowStart_ = systemPosition_ = 0;
    return system_ != kClosed;
}

void File::OpenMemory(const void* content, size_t bytes) {
    Discard();
    content_ = window_ = static_cast<const uint8_t*>(content);
    contentBytes_ = filled_ = bytes;
    windowStart_ = 0;
}

bool File::Create(const char* path) {
    Discard();
    if (!AllocateBuffer()) return false;
    bool isOrdinary = false;
    system_ = SystemCreate(path, &isOrdinary);
    if (system_ == kClosed) return false;
    if (isOrdinary) createdPath_ = path;
    writing_ = true;
    failed_ = false;
    return true;
}

bool File::CreateReplacement(const char* path) {
    if (SystemIsSpecial(path)) return Create(path);
    if (!Create((std::string(path) + ".zephyr-new").c_str())) return false;
    replacedPath_ = path;
    return true;
}

void File::Fill() {
    windowStart_ += filled_;
    next_ = filled_ = 0;
    if (content_ && windowStart_ < contentBytes_) {
        window_ = content_ + windowStart_;
        filled_ = contentBytes_ - static_cast<size_t>(windowStart_);
    }
    if (system_ == kClosed || writing_) return;
    if (systemPosition_ != windowStart_) {
        if (!SystemSeek(system_, windowStart_)) return;
        systemPosition_ = windowStart_;
    }
    ptrdiff_t came = SystemRead(system_, buffer_.get(), kBufferBytes);
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
        ptrdiff_t written =
            FaultDue(faults.writesUntilFailure) ? -1 : SystemWrite(system_, buffer_.get() + done, filled_ - done);
        if (written <= 0)
            failed_ = true;
        else
            done += static_cast<size_t>(written);
    }
    filled_ = 0;
}

bool File::Write(const void* from, size_t bytes) {
    if (system_ == kClosed || !writing_) return false;
    const auto* in = static_cast<const uint8_t*>(from);
    while (bytes > 0 && !failed_) {
        size_t piece = std::min(bytes, kBufferBytes - filled_);
        memcpy(buffer_.get() + filled_, in, piece);
        filled_ += piece;
        in += piece;
        bytes -= piece;
        if (filled_ == kBufferBytes) FlushBuffer();
    }
    return !failed_;
}

bool File::Close() {
    bool wasOpen = system_ != kClosed;
    if (wasOpen && writing_) FlushBuffer();
    return CloseSystemFile() && wasOpen && !failed_;
}

void File::Discard() {
    failed_ = true;
    CloseSystemFile();
}

// Forgets everything about the file but whether it failed. A created one that did goes, one that did not takes its
// place.
bool File::CloseSystemFile() {
    if (system_ != kClosed && !SystemClose(system_)) failed_ = true;
    if (!failed_ && !replacedPath_.empty()) failed_ = !SystemReplace(createdPath_.c_str(), replacedPath_.c_str());
    if (failed_ && !createdPath_.empty()) SystemDelete(createdPath_.c_str());
    system_ = kClosed;
    createdPath_.clear();
    replacedPath_.clear();
    buffer_.reset();
    content_ = window_ = nullptr;
    next_ = filled_ = 0;
    writing_ = false;
    return !failed_;
}

int WriteByte(File& file, int value) {
    auto byte = static_cast<uint8_t>(value);
    return file.Write(&byte, 1) ? value : -1;
}

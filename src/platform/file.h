// Files read and written front to back, with seeking while reading. Buffered, so that single bytes are cheap.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "platform/memory.h"

// One open file. Paths are UTF-8 on every system. At the end of its scope a file that is being read is closed; one that
// was created and never closed is discarded.
class File {
public:
    File() = default;
    ~File();
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    // Opens an existing file (not a folder) for reading from its start. What can't be moved about in (a pipe, a
    // terminal) is read into memory to its end first. False when it can't be opened.
    [[nodiscard]] bool OpenForReading(const char* path);

    // Reads from `bytes` bytes at `content` as if they were a file. The caller keeps them alive and unchanged.
    void OpenMemory(const void* content, size_t bytes);

    // Creates the file at `path` for writing, emptying an existing one. False when it can't be created.
    [[nodiscard]] bool Create(const char* path);

    // As Create, but the content is kept in memory, and what stands at `path` is replaced only by a successful Close
    // (replace_file.h says how). What is no ordinary file (a device, a pipe) is written to directly.
    [[nodiscard]] bool CreateReplacement(const char* path);

    // Of a replacement that replaces nothing: Close does not wait until it is on the disk. For results of which there
    // are many, and that can be made again.
    void NeedNotOutliveCrash() { flushesNew_ = false; }

    // Creates a "file" that is kept in memory alone, until the object goes or opens another one.
    [[nodiscard]] bool CreateMemory();

    // What was written to it so far; valid until the next write.
    std::span<const uint8_t> Written() const { return {buffer_.get(), filled_}; }

    // Reads up to `bytes` bytes into `to`; returns how many came: fewer only at the end of the file or on an error.
    // After the first error nothing more comes, and HasFailed tells it from the end.
    size_t Read(void* to, size_t bytes);

    // Reads all that is left into memory of its own; `*bytes` becomes how much that is. None, and HasFailed tells, when
    // the file can't be read, has more than `most` bytes left, or memory runs out.
    [[nodiscard]] MemoryHandle ReadRest(uint64_t most, size_t* bytes);

    // The next byte (0 to 255), or -1 at the end of the file or on a read error, as above.
    int ReadByte() { return next_ < filled_ ? window_[next_++] : ReadByteAfterFill(); }

    // Where the next read starts, in bytes from the start of the file; may lie behind its end after a Seek.
    uint64_t Position() const { return windowStart_ + next_; }
    void Seek(uint64_t position);

    // Appends `bytes` bytes. After the first failure (full disk, say) every later write fails too.
    bool Write(const void* from, size_t bytes);

    // Appends bytes of `memory`, which nobody may change before Close: a replacement does not copy them.
    bool WriteKept(const MemoryHandle& memory, size_t start, size_t bytes);

    // Writes what is still buffered and closes. False when any write to this file has failed; the file is then deleted.
    bool Close();

    // Whether opening, reading or writing has failed since the file was opened or created, and why, in the system's
    // words. The end of a file is no failure. After Discard: whether there was one before.
    bool HasFailed() const { return error_ != 0; }
    std::string Reason() const;

    // After a successful Close of a replacement: the folder took no file beside the old one, which was written over.
    bool FolderRefused() const { return folderRefused_; }

    // Closes a file that was created and deletes it, as nobody wants half a file. What is no ordinary file (a device, a
    // pipe) is only closed.
    void Discard();

private:
    static constexpr size_t kBufferBytes = size_t{64} * 1024;
    static constexpr size_t kMostStreamBytes = size_t{1} << 30;  // what a pipe may bring
    static constexpr intptr_t kClosed = -1;

    // A part of a replacement: of memory that is kept, or of the buffer.
    struct Part {
        MemoryHandle kept;
        size_t start, bytes;
    };

    void Start();
    bool Fail(int error);
    bool AllocateBuffer();
    bool GrowBuffer(uint64_t bytes);
    void ReadStream();
    int ReadByteAfterFill();
    void Fill();
    void FlushBuffer();
    void MakeRoom();
    bool AddPart(const MemoryHandle& kept, size_t start, size_t bytes);
    void Replace();
    bool CloseSystemFile();

    std::unique_ptr<uint8_t[]> buffer_;
    size_t bufferBytes_ = 0;
    std::string createdPath_;           // of an ordinary file being written; empty otherwise
    std::string replacedPath_;          // of a file that is written in the end, all at once
    std::vector<Part> parts_;           // of such a file, so far
    intptr_t system_ = kClosed;         // the system's descriptor or handle
    const uint8_t* content_ = nullptr;  // the whole "file" after OpenMemory, or of a stream
    size_t contentBytes_ = 0;
    const uint8_t* window_ = nullptr;  // what is being read: buffer_, or a stretch of content_
    uint64_t windowStart_ = 0;         // file offset of window_[0]
    uint64_t systemPosition_ = 0;      // file offset at which the system reads next
    size_t next_ = 0;                  // index of the next byte to read in the window
    size_t filled_ = 0;                // bytes in the window, or waiting to be written
    bool writing_ = false;
    bool gathering_ = false;  // what is written, until the end
    bool inMemory_ = false;   // and it stays there
    bool flushesNew_ = true;  // before Close returns
    bool failed_ = false;     // and nothing more is read or written
    bool folderRefused_ = false;
    int error_ = 0;  // the system's number for the first failure
};

// The next byte of the file (0 to 255), or -1 at its end or on a read error.
inline int ReadByte(File& file) {
    return file.ReadByte();
}

// Writes one byte (0 to 255). Returns the value, or -1 when the write fails.
int WriteByte(File& file, int value);

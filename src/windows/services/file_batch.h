// Several files that are there together or not at all.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "platform/file.h"

// Files wait under other names beside where they are to be; without a Commit they go with the object.
class FileBatch {
public:
    FileBatch() = default;
    ~FileBatch();
    FileBatch(const FileBatch&) = delete;
    FileBatch& operator=(const FileBatch&) = delete;

    // Adds a file that is to be at `path` (UTF-8). False when it can't be written, or would replace a file that is
    // marked as read-only, or a folder.
    [[nodiscard]] bool Add(const std::string& path, std::span<const uint8_t> content);

    // Puts all of them where they are to be, in place of what is there. False when one can't be put there: then all is
    // as it was before.
    [[nodiscard]] bool Commit();

    // After a failure: the file that it was about, and the system's words, if it has any.
    const std::string& FailedPath() const { return failedPath_; }
    const std::string& Reason() const { return reason_; }

private:
    struct Entry {
        std::string path;
        std::wstring target, waiting, old;  // `old`: where that waits that was there before; empty when there was none
        bool isThere = false;               // it has been put there
    };

    bool Put(Entry* entry);
    void TakeBack();
    bool Fail(const std::string& path, std::string reason);

    std::vector<Entry> entries_;
    std::string failedPath_, reason_;
};

#include "gif/gif_writer.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "gif/block_writers.h"
#include "gif/descriptor.h"

namespace {

// Whatever version a file had, it is saved as the one that has all kinds of blocks.
constexpr bool kQuirkAlwaysGif89a = true;

// Names of blocks are read, shown and dropped.
constexpr bool kQuirkBlockNamesDropped = true;

// A saved file tells who made it, even where the document does not.
constexpr bool kQuirkSavedFileIsSigned = true;

// The editor saves straight over its target, through links too, and removes what a failed write has left.
constexpr bool kQuirkSaveOverTarget = true;

// The comment that tells who made a file.
std::string IdentityComment(const Identity& user) {
    return "FILE IDENTITY\r\nCreated or modified by\r\n" + user.owner + "\r\n" + user.organisation;
}

bool WriteHeader(File& file, const Block& header) {
    uint8_t bytes[kHeaderDescriptorBytes];
    memcpy(bytes, header.descriptor, sizeof bytes);
    if (kQuirkAlwaysGif89a) memcpy(bytes, kSignature, kSignatureBytes);
    return file.Write(bytes, sizeof bytes) && WritePalette(file, header, GetHeaderFields(header).packed);
}

bool WriteBlock(File& file, const Block& block) {
    switch (block.kind) {
        case kImageBlock: return WriteImageBlock(file, block);
        case kControlBlock: return WriteControlBlock(file, block);
        case kPlainTextBlock: return WritePlainTextBlock(file, block);
        case kApplicationBlock: return WriteApplicationBlock(file, block);
        case kCommentBlock: return WriteCommentBlock(file, block);
        case kLoopBlock: return WriteLoopBlock(file, block);
        case kUnknownBlock: return WriteUnknownBlock(file, block);
        case kBlockNamesBlock: return kQuirkBlockNamesDropped || WriteApplicationBlock(file, block);
        default: return true;  // the header stands already
    }
}

// Looks for a COMMENT with exactly that text. False when a block can't be read.
bool FindIdenticalComment(const BlockList& list, std::string_view text, bool* found) {
    *found = false;
    for (const Block& block : list.All()) {
        if (block.kind != kCommentBlock || block.dataLength != text.size()) continue;
        MemoryLock lock(block.data);
        if (!lock) return false;
        *found = memcmp(lock.Bytes(), text.data(), text.size()) == 0;
        if (*found) break;
    }
    return true;
}

bool WriteIdentity(File& file, const BlockList& list, const Identity& user) {
    if (!kQuirkSavedFileIsSigned) return true;
    std::string identity = IdentityComment(user);
    bool isThere;
    if (!FindIdenticalComment(list, identity, &isThere)) return false;
    if (isThere) return true;
    Block comment;
    comment.kind = kCommentBlock;
    return SetBlockText(&comment, identity.data(), static_cast<uint32_t>(identity.size())) &&
           WriteCommentBlock(file, comment);
}

bool WriteDocument(File& file, const BlockList& list, const Block& header, const Identity& user) {
    return WriteHeader(file, header) &&
           std::ranges::all_of(list.All(), [&](const Block& block) { return WriteBlock(file, block); }) &&
           WriteIdentity(file, list, user) && WriteByte(file, kTrailer) >= 0;
}

}  // namespace

bool HasIdenticalComment(const BlockList& list, std::string_view text) {
    bool found;
    return FindIdenticalComment(list, text, &found) && found;
}

bool WriteGif(const BlockList& list, File& file, const Identity& user) {
    const Block* header = FindHeader(list);
    return header && WriteDocument(file, list, *header, user);
}

bool WriteGifFile(const BlockList& list, const char* path) {
    const Block* header = FindHeader(list);
    File file;
    if (!header || !(kQuirkSaveOverTarget ? file.Create(path) : file.CreateReplacement(path))) return false;
    return WriteDocument(file, list, *header, GetUserIdentity()) && file.Close();
}

bool WriteWholeGif(const BlockList& list, File& file, const Identity*) {
    return WriteGif(list, file, {});
}

bool WriteWholeGifFile(const BlockList& list, const char* path, std::string* reason) {
    File file;
    if (file.CreateReplacement(path) && WriteWholeGif(list, file, nullptr) && file.Close()) return true;
    *reason = file.Reason();
    return false;
}

#include "gif/gif_writer.h"

#include <cstring>

#include "gif/block_writers.h"
#include "gif/descriptor.h"
#include "platform/identity.h"

namespace {

// The comment that tells who made a file. Its length is bounded by that of the two names.
struct IdentityComment {
    char text[64 + 2 * kIdentityBytes];

    IdentityComment() {
        Identity user;
        GetUserIdentity(&user);
        strcpy(text, "FILE IDENTITY\r\nCreated or modified by\r\n");
        strcat(text, user.owner);
        strcat(text, "\r\n");
        strcat(text, user.organisation);
    }
};

bool WriteHeader(File& file, const Block& header) {
    uint8_t bytes[kHeaderDescriptorBytes];
    memcpy(bytes, header.descriptor, sizeof bytes);
    memcpy(bytes, kSignature, kSignatureBytes);
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
        default: return true;  // the header stands already; block names are not saved
    }
}

// Looks for a COMMENT with exactly that text. False when a block can't be read.
bool FindIdenticalComment(const BlockList& list, const char* text, bool* found) {
    size_t length = strlen(text);
    *found = false;
    bool sawAll = ForEachBlock(list, [&](const Block& block, uint32_t) {
        if (block.kind != kCommentBlock || block.dataLength != length) return true;
        MemoryLock lock(block.data);
        *found = lock && memcmp(lock.Bytes(), text, length) == 0;
        return lock && !*found;
    });
    return sawAll || *found;
}

bool WriteIdentity(File& file, const BlockList& list) {
    IdentityComment identity;
    bool isThere;
    if (!FindIdenticalComment(list, identity.text, &isThere)) return false;
    if (isThere) return true;
    Block comment = {};
    comment.kind = kCommentBlock;
    bool written = SetBlockText(&comment, identity.text, static_cast<uint32_t>(strlen(identity.text))) &&
                   WriteCommentBlock(file, comment);
    FreeBlock(&comment);
    return written;
}

bool GetHeader(const BlockList& list, Block* header) {
    int index = FindHeader(list);
    return index >= 0 && GetBlock(list, header, static_cast<uint32_t>(index));
}

bool WriteDocument(File& file, const BlockList& list, const Block& header) {
    return WriteHeader(file, header) &&
           ForEachBlock(list, [&](const Block& block, uint32_t) { return WriteBlock(file, block); }) &&
           WriteIdentity(file, list) && WriteByte(file, kTrailer) >= 0;
}

}  // namespace

bool HasIdenticalComment(const BlockList& list, const char* text) {
    bool found;
    return FindIdenticalComment(list, text, &found) && found;
}

bool WriteGif(const BlockList& list, File& file) {
    Block header;
    return GetHeader(list, &header) && WriteDocument(file, list, header);
}

bool WriteGifFile(const BlockList& list, const char* path) {
    Block header;
    File file;
    return GetHeader(list, &header) && file.Create(path) && WriteDocument(file, list, header) && file.Close();
}

#include "gif/identity_comment.h"

#include <cstring>
#include <string>

#include "gif/block_writers.h"

namespace {

std::string IdentityComment(const Identity& user) {
    return "FILE IDENTITY\r\nCreated or modified by\r\n" + user.owner + "\r\n" + user.organisation;
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

}  // namespace

bool HasIdenticalComment(const BlockList& list, std::string_view text) {
    bool found;
    return FindIdenticalComment(list, text, &found) && found;
}

bool WriteIdentity(File& file, const BlockList& list, const Identity& user, Manner manner) {
    std::string identity = IdentityComment(user);
    bool isThere;
    if (!FindIdenticalComment(list, identity, &isThere)) return false;
    if (isThere) return true;
    Block comment;
    comment.kind = kCommentBlock;
    return SetBlockText(&comment, identity.data(), static_cast<uint32_t>(identity.size())) &&
           WriteCommentBlock(file, comment, manner);
}

#include "gif/gif_writer.h"

#include <algorithm>
#include <cstring>

#include "gif/block_writers.h"
#include "gif/descriptor.h"
#include "gif/identity_comment.h"
#include "gif/whole_writer.h"

namespace {

// Whatever version a file had, it is saved as the one that has all kinds of blocks.
constexpr bool kQuirkAlwaysGif89a = true;

// Names of blocks are read, shown and dropped.
constexpr bool kQuirkBlockNamesDropped = true;

// A saved file tells who made it, even where the document does not.
constexpr bool kQuirkSavedFileIsSigned = true;

// The editor saves straight over its target, through links too, and removes what a failed write has left.
constexpr bool kQuirkSaveOverTarget = true;

bool WriteHeader(File& file, const Block& header) {
    uint8_t bytes[kHeaderDescriptorBytes];
    memcpy(bytes, header.descriptor, sizeof bytes);
    if (kQuirkAlwaysGif89a) memcpy(bytes, kSignature, kSignatureBytes);
    return file.Write(bytes, sizeof bytes) && WritePalette(file, header, GetHeaderFields(header).packed);
}

bool WriteBlock(File& file, const Block& block) {
    switch (block.kind) {
        // Without pixels there is nothing to encode, but maybe what the file had.
        case kImageBlock: return block.data ? WriteImageBlock(file, block) : WriteSource(file, block, true);
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

bool WriteDocument(File& file, const BlockList& list, const Block& header, const Identity& user) {
    return WriteHeader(file, header) &&
           std::ranges::all_of(list.All(), [&](const Block& block) { return WriteBlock(file, block); }) &&
           (!kQuirkSavedFileIsSigned || WriteIdentity(file, list, user, Manner::kClassic)) &&
           WriteByte(file, kTrailer) >= 0;
}

}  // namespace

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

bool WriteWholeGif(const BlockList& list, File& file, const Identity* names) {
    return FindHeader(list) && WriteWholeDocument(list, file, names);
}

bool WriteWholeGifFile(const BlockList& list, const char* path, std::string* reason) {
    File file;
    if (file.CreateReplacement(path) && WriteWholeGif(list, file, nullptr) && file.Close()) return true;
    *reason = file.Reason();
    return false;
}

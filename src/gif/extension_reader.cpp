#include "gif/extension_reader.h"

#include <cstring>

#include "gif/descriptor.h"
#include "gif/sub_blocks.h"
#include "gif/text_reader.h"

namespace {

// Of a foreign application block of the standard size only identifier and code are read. The length byte of its data is
// then taken for the start of a block, and ends the load unless it happens to be one.
constexpr bool kQuirkForeignApplicationEndsLoad = true;

bool ReadDescriptor(File& file, Block* block, size_t bytes) {
    return file.Read(block->descriptor, bytes) == bytes;
}

bool IsApplication(const Block& block, const char* identifierAndCode) {
    return memcmp(block.descriptor + kIdentifierOffset, identifierAndCode, kIdentifierBytes + kAuthenticationBytes) ==
           0;
}

bool ReadApplication(Block* block, File& file) {
    uint64_t start = file.Position();
    if (!ReadDescriptor(file, block, kApplicationDescriptorBytes)) return false;
    if (IsApplication(*block, kLoopApplication)) {
        block->kind = kLoopBlock;
        file.Seek(start);
        return ReadDescriptor(file, block, kLoopDescriptorBytes);
    }
    if (IsApplication(*block, kNamesApplication)) {
        block->kind = kBlockNamesBlock;
        return ReadText(file, block);
    }
    block->kind = kApplicationBlock;
    const bool leaveData = kQuirkForeignApplicationEndsLoad && block->descriptor[0] <= kApplicationDescriptorBytes;
    return leaveData || ReadText(file, block);
}

}  // namespace

bool ReadExtension(Block* block, File& file) {
    switch (ReadByte(file)) {
        case kPlainTextLabel:
            block->kind = kPlainTextBlock;
            return ReadDescriptor(file, block, kPlainTextDescriptorBytes) && ReadText(file, block);
        case kControlLabel: block->kind = kControlBlock; return ReadDescriptor(file, block, kControlDescriptorBytes);
        case kCommentLabel: block->kind = kCommentBlock; return ReadComment(file, block);
        case kApplicationLabel: return ReadApplication(block, file);
        default: return false;
    }
}

void SkipExtension(File& file) {
    switch (ReadByte(file)) {
        case kPlainTextLabel: file.Seek(file.Position() + kPlainTextDescriptorBytes); return SkipSubBlocks(file);
        case kControlLabel: return file.Seek(file.Position() + kControlDescriptorBytes);
        case kApplicationLabel: file.Seek(file.Position() + kApplicationDescriptorBytes); return SkipSubBlocks(file);
        default: return SkipSubBlocks(file);
    }
}

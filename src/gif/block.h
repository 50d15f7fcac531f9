// One block of a GIF document, a value: a copy shares texts, pixels and colours with the original, and keeps them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "imaging/image_bitmap.h"
#include "imaging/palette.h"
#include "platform/memory.h"

struct BlockList;

enum BlockKind : uint16_t {
    kEmptyBlock = 0,
    kHeaderBlock = 1,
    kImageBlock = 2,
    kControlBlock = 3,
    kPlainTextBlock = 4,
    kApplicationBlock = 5,
    kCommentBlock = 6,
    kLoopBlock = 7,
    kBlockNamesBlock = 8,
    kUnknownBlock = 9,
};

constexpr int kDescriptorBytes = 17;
constexpr uint32_t kMaxTextBytes = 32767;  // text kept of one block; what a file holds beyond that is dropped

// Where in its `aux` a block's bytes stand. All zero for a block that did not come from a file read whole.
struct SourcePlace {
    uint32_t start = 0;  // of the bytes that start no block and stand before this one
    uint32_t stray = 0;  // so many; the block's own follow them
    uint32_t bytes = 0;  // the block's own; 0 once it was changed: it is encoded then
};

struct Block {
    uint16_t kind = kEmptyBlock;
    uint16_t position = 0;     // index in the list
    uint16_t paletteBits = 0;  // working copies of the control and plain-text editors: bit count of `palette`
    uint8_t descriptor[kDescriptorBytes] = {};  // the bytes of the file, see descriptor.h
    bool isCutOff = false;                      // by the end of the file: what follows `source` would join this block
    uint32_t dataLength = 0;                    // bytes of text in `data`, without the terminating NUL
    MemoryHandle
        data;  // IMAGE: the bitmap, none when it can't be had; text kinds: the bytes, NUL-terminated; otherwise none
    SourcePlace source;
    MemoryHandle aux;            // the file that it was read from, in the whole manner (source_bytes.h); otherwise none
    MemoryHandle name;           // optional block name, NUL-terminated
    Palette palette;             // HEADER: the global colour table; IMAGE: its local one, black without one
    BlockList* owner = nullptr;  // the list that the record was made for
};

// Drops what the block holds and makes it an EMPTY one.
void FreeBlock(Block* block);

// Replaces the block's name by a copy of `text`. False, with the name unchanged, when memory runs out.
bool SetBlockName(std::string_view text, Block* block);

// The same for a text in UTF-8; what Windows-1252 lacks becomes "?".
bool SetBlockNameFromUtf8(std::string_view utf8, Block* block);

constexpr size_t kNameBytes = 261;  // longer names are not shown

// The block's name, which may be empty; nothing when it has none, it can't be read, or it is too long to be shown.
std::optional<std::string> GetBlockName(const Block& block);

// Replaces the block's text by a copy of `length` bytes. False, with the text unchanged, when memory runs out.
bool SetBlockText(Block* block, const void* text, uint32_t length);

// The bytes of a block's text; empty when there are none or they can't be read.
std::string GetBlockText(const Block& block);

// The first line of a text block, for display: leading blanks and control bytes skipped, at most `maximum` (and 260)
// bytes up to the first carriage return, other control bytes turned into blanks. Empty when there is no readable text.
std::string GetBlockTextLine(const Block& block, int maximum);

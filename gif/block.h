// One block of a GIF document: a fixed-size record that is copied by value.
#pragma once

#include <cstdint>
#include <string_view>

#include "imaging/image_bitmap.h"
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

// A block in a list owns `data`, `aux` and `name`. Copies taken with GetBlock share them; the one written back with
// PutBlock is the owner.
struct Block {
    uint16_t kind;         // BlockKind
    MemoryHandle data;     // IMAGE: the bitmap; text kinds: the bytes, NUL-terminated; otherwise none
    MemoryHandle aux;      // a second handle, released with the block
    uint32_t dataLength;   // bytes of text in `data`, without the terminating NUL
    uint16_t position;     // index in the list
    uint16_t paletteBits;  // working copies of the control and plain-text editors: bit count of `palette`
    RgbTriples palette;    // HEADER: the global colour table; IMAGE: its local one, all zero without one
    MemoryHandle name;     // optional block name, NUL-terminated
    uint8_t descriptor[kDescriptorBytes];  // the bytes of the file, see descriptor.h
    BlockList* owner;                      // the list that the record was made for
};

// Releases the block's handles and zeroes the record.
void FreeBlock(Block* block);

// Replaces the block's name by a copy of `text`. False, with the name unchanged, when memory runs out.
bool SetBlockName(std::string_view text, Block* block);

// The same for a text in UTF-8; what Windows-1252 lacks becomes "?".
bool SetBlockNameFromUtf8(std::string_view utf8, Block* block);

constexpr int kNameBytes = 261;  // longer names are not shown

// Copies the block's name into `text` (kNameBytes bytes). False, with an empty text, when the block has no name, it
// can't be read, or it does not fit.
bool GetBlockName(char* text, const Block& block);

// Replaces the block's text by a copy of `length` bytes. False, with the text unchanged, when memory runs out.
bool SetBlockText(Block* block, const void* text, uint32_t length);

// The first line of a text block, for display: leading blanks and control bytes skipped, at most `maximum` (and 260)
// bytes up to the first carriage return, other control bytes turned into blanks. Empty when there is no readable text.
// The result lies in a shared buffer that the next call overwrites.
const char* GetBlockTextLine(const Block& block, int maximum);

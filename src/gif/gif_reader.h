// Reading GIF files into block lists.
#pragma once

#include <string>
#include <vector>

#include "gif/block_list.h"
#include "platform/file.h"

enum ReadResult {
    kReadFailed = 0,  // the file can't be opened or read, is broken, or memory has run out
    kReadDone = 1,
    kReadNotGif = 2,  // no "GIF" signature at the start, nor behind a prefix of 128 bytes
};

// What is wrong with a file that was read whole, or unusual. DescribeDamage has the words.
enum class DamageKind : uint8_t {
    kPrefix,             // bytes before the signature: harmless
    kStrayBytes,         // between blocks, where none starts
    kPaletteCut,         // the file ends in a colour table
    kOddSize,            // of `detail` bytes, has a block's fixed part
    kMoreSubBlocks,      // than a control block has
    kBlockCut,           // the file ends in the block
    kNoPalette,          // neither the image nor the document has colours: all black
    kCodeSize,           // `detail` is the image's minimum code size, which no image may have
    kBadCode,            // the image's data makes no sense after `detail` pixels
    kBadCodeBehind,      // the same behind its last pixel: harmless
    kPixelsMissing,      // the image's data ends after `detail` pixels
    kPictureTooLarge,    // for the memory: the image has no pixels here
    kNoTrailer,          // the file ends without one
    kBytesAfterTrailer,  // harmless; `detail` of them
};
struct Damage {
    uint32_t offset = 0;  // in the file
    int32_t block = -1;   // the block that it concerns, or -1
    uint32_t detail = 0;
    DamageKind kind = DamageKind::kStrayBytes;
};

// One plain sentence for it, in English, without a full stop: "the file ends inside this image, after row 3 of 40".
std::string DescribeDamage(const Damage& damage);

// Whether nothing of what the file shows is lost by it.
bool IsHarmless(const Damage& damage);

// How a load ended, for callers that want to tell more than success.
struct ReadReport {
    bool reachedTrailer =
        false;                // false: the file ended, the reader met a byte that starts no block, or left data unread
    bool dataUnread = false;  // of an application block not our own: what follows was taken from within its data
    bool fileEnded = false;   // instead of going on with a block or the trailer
    bool couldNotOpen = false;    // only with kReadFailed
    bool couldNotRead = false;    // only with kReadFailed: the system could not go on reading the file
    bool imageLeftBlank = false;  // there was no memory to decode some image, whose pixels are all of index 0
    std::string reason;           // the system's words for couldNotOpen and couldNotRead
    std::vector<Damage> damages;  // of a file read whole, in the order of the file
};

// Reads the GIF file at `path` (UTF-8) into `list`, which must come fresh from CreateBlockList. After a failure `list`
// may still hold the blocks read so far: the caller shows or destroys them. `report` may be null.
//
// Whole: every file with a signature and 13 bytes of header can be read, however damaged, and every byte of it is kept.
// Every block then knows its own (source_bytes.h). kReadFailed only when it can't be opened, read or held in memory.
ReadResult ReadGifFile(BlockList* list, const char* path, ReadReport* report = nullptr,
                       Manner manner = Manner::kClassic);

// As ReadGifFile, from a file that is already open and stands at its start.
ReadResult ReadGif(BlockList* list, File& file, ReadReport* report = nullptr, Manner manner = Manner::kClassic);

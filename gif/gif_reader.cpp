#include "gif/gif_reader.h"

#include <cstring>

#include "gif/block_names.h"
#include "gif/descriptor.h"
#include "gif/extension_reader.h"
#include "gif/gif_header.h"
#include "gif/sub_blocks.h"

namespace {

// Appends the block, or releases it when it was not read well or there is no room.
bool Keep(BlockList* list, Block* block, bool wasRead) {
    if (wasRead && AppendBlock(list, block)) return true;
    FreeBlock(block);
    return false;
}

// The header is block 0 as long as a document is read: nothing is searched, however many images come.
int GlobalPaletteOfHeader(const BlockList& list, RgbTriple* palette) {
    Block header;
    if (!GetBlock(list, &header, 0)) return 0;
    memcpy(palette, header.palette, kPaletteBytes);
    uint8_t packed = GetHeaderFields(header).packed;
    return (packed & kHasPalette) ? DepthOfPacked(packed) : 0;
}

bool ReadAndKeepImage(BlockList* list, File& file, ReadReport* report) {
    RgbTriples globalPalette;
    int globalDepth = GlobalPaletteOfHeader(*list, globalPalette);
    Block block = {};
    ImageResult result = ReadImage(file, &block, globalPalette, globalDepth);
    // Memory that was short for a moment costs the picture, not the document.
    report->imageLeftBlank |= result == kImageLeftBlank;
    if (!Keep(list, &block, result != kImageFailed)) return false;
    SkipSubBlocks(file);
    return true;
}

bool ReadAndKeepExtension(BlockList* list, File& file, ReadReport* report) {
    Block block = {};
    bool wasRead = ReadExtension(&block, file);
    report->dataUnread |= wasRead && block.kind == kApplicationBlock && !block.data;
    return Keep(list, &block, wasRead);
}

// Reads blocks until something else comes: the trailer, the end of the file, or a byte that starts no block.
bool ReadBlocks(BlockList* list, File& file, ReadReport* report) {
    for (;;) {
        int introducer = ReadByte(file);
        report->reachedTrailer = introducer == kTrailer && !report->dataUnread;
        report->fileEnded = introducer < 0;
        if (introducer == kImageIntroducer) {
            if (!ReadAndKeepImage(list, file, report)) return false;
        } else if (introducer == kExtensionIntroducer) {
            if (!ReadAndKeepExtension(list, file, report)) return false;
        } else {
            return true;
        }
    }
}

ReadResult ReadDocument(BlockList* list, File& file, ReadReport* report) {
    Block header = {};
    HeaderResult result = ReadGifHeader(file, &header);
    if (result == kHeaderNotGif) return kReadNotGif;
    if (!Keep(list, &header, result == kHeaderRead)) return kReadFailed;
    if (!ReadBlocks(list, file, report)) return kReadFailed;
    return RenumberBlocks(list) && ApplyBlockNames(list) ? kReadDone : kReadFailed;
}

}  // namespace

ReadResult ReadGif(BlockList* list, File& file, ReadReport* report) {
    ReadReport unwanted;
    if (!report) report = &unwanted;
    *report = {};
    ReadResult result = ReadDocument(list, file, report);
    if (!file.HasFailed()) return result;
    // To the reader of bytes it looked like the end of the file.
    report->couldNotRead = true;
    report->reason = file.Reason();
    return kReadFailed;
}

ReadResult ReadGifFile(BlockList* list, const char* path, ReadReport* report) {
    File file;
    if (file.OpenForReading(path)) return ReadGif(list, file, report);
    if (report) {
        *report = {};
        report->couldNotOpen = true;
        report->reason = file.Reason();
    }
    return kReadFailed;
}

#include "gif/gif_reader.h"

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

bool ReadAndKeepImage(BlockList* list, File& file, ReadReport* report) {
    RgbTriples globalPalette;
    int globalDepth = FindGlobalPalette(*list, globalPalette);
    Block block = {};
    ImageResult result = ReadImage(file, &block, globalPalette, globalDepth);
    // Memory that was short for a moment costs the picture, not the document.
    report->imageLeftBlank |= result == kImageLeftBlank;
    if (!Keep(list, &block, result != kImageFailed)) return false;
    SkipSubBlocks(file);
    return true;
}

bool ReadAndKeepExtension(BlockList* list, File& file) {
    Block block = {};
    return Keep(list, &block, ReadExtension(&block, file));
}

// Reads blocks until something else comes: the trailer, the end of the file, or a byte that starts no block.
bool ReadBlocks(BlockList* list, File& file, ReadReport* report) {
    for (;;) {
        int introducer = ReadByte(file);
        report->reachedTrailer = introducer == kTrailer;
        if (introducer == kImageIntroducer) {
            if (!ReadAndKeepImage(list, file, report)) return false;
        } else if (introducer == kExtensionIntroducer) {
            if (!ReadAndKeepExtension(list, file)) return false;
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

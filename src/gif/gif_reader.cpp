#include "gif/gif_reader.h"

#include <utility>

#include "gif/block_names.h"
#include "gif/descriptor.h"
#include "gif/extension_reader.h"
#include "gif/gif_header.h"
#include "gif/sub_blocks.h"
#include "gif/whole_reader.h"

namespace {

bool ReadAndKeepImage(BlockList* list, File& file, ReadReport* report) {
    Block block;
    // The header is block 0 as long as a document is read: nothing is searched, however many images come.
    ImageResult result = ReadImage(file, &block, PaletteOfHeader(list->blocks[0]));
    // Memory that was short for a moment costs the picture, not the document.
    report->imageLeftBlank |= result == kImageLeftBlank;
    if (result == kImageFailed || !AppendBlock(list, std::move(block))) return false;
    SkipSubBlocks(file);
    return true;
}

bool ReadAndKeepExtension(BlockList* list, File& file, ReadReport* report) {
    Block block;
    if (!ReadExtension(&block, file)) return false;
    report->dataUnread |= block.kind == kApplicationBlock && !block.data;
    return AppendBlock(list, std::move(block));
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
    Block header;
    HeaderResult result = ReadGifHeader(file, &header);
    if (result == kHeaderNotGif) return kReadNotGif;
    if (result != kHeaderRead || !AppendBlock(list, std::move(header))) return kReadFailed;
    if (!ReadBlocks(list, file, report)) return kReadFailed;
    RenumberBlocks(list);
    return ApplyBlockNames(list) ? kReadDone : kReadFailed;
}

}  // namespace

ReadResult ReadGif(BlockList* list, File& file, ReadReport* report, Manner manner) {
    ReadReport unwanted;
    if (!report) report = &unwanted;
    *report = {};
    ReadResult result = manner == Manner::kWhole ? ReadWholeGif(list, file, report) : ReadDocument(list, file, report);
    if (!file.HasFailed()) return result;
    // To the reader of bytes it looked like the end of the file.
    report->couldNotRead = true;
    report->reason = file.Reason();
    return kReadFailed;
}

ReadResult ReadGifFile(BlockList* list, const char* path, ReadReport* report, Manner manner) {
    File file;
    if (file.OpenForReading(path)) return ReadGif(list, file, report, manner);
    if (report) {
        *report = {};
        report->couldNotOpen = true;
        report->reason = file.Reason();
    }
    return kReadFailed;
}

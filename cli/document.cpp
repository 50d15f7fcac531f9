#include "cli/document.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "cli/options.h"
#include "gif/gif_writer.h"
#include "gif/logical_screen.h"

void Complain(const std::string& path, const std::string& what) {
    fprintf(stderr, "zephyr: %s: %s\n", path.c_str(), what.c_str());
}

ReadResult Document::Open(const std::string& path) {
    if (!CreateBlockList(&list)) {
        Complain(path, "out of memory");
        return kReadFailed;
    }
    ReadReport report;
    ReadResult result = ReadGifFile(&list, path.c_str(), &report);
    if (report.couldNotOpen)
        Complain(path, "can't be opened");
    else if (result == kReadFailed)
        Complain(path, "corrupt GIF data, or not enough memory");
    else if (result == kReadNotGif)
        Complain(path, "not a GIF file");
    else if (!report.reachedTrailer)
        Complain(path, "note: loading ended before the trailer; blocks behind that point are not in the document");
    return result;
}

bool FindBlock(const BlockList& list, const std::string& path, const std::string& text, Block* block, uint32_t* index) {
    if (ParseNumber(text, UINT32_MAX, index) && GetBlock(list, block, *index)) return true;
    Complain(path, "no block " + text);
    return false;
}

bool SaveDocument(BlockList* list, const std::string& path) {
    FitLogicalScreen(list);
    if (WriteGifFile(*list, path.c_str())) return true;
    Complain(path, "can't be written");
    return false;
}

#include "cli/document.h"

#include "cli/complaints.h"
#include "cli/options.h"

ReadResult Document::Open(const std::string& path) {
    if (!CreateBlockList(&list)) {
        Complain(path, "out of memory");
        return kReadFailed;
    }
    ReadReport report;
    ReadResult result = ReadGifFile(&list, path.c_str(), &report);
    if (report.couldNotOpen)
        Complain(path, WhyNotOpened(path, report.reason));
    else if (report.couldNotRead)
        Complain(path, WhyNotRead(report.reason));
    else if (result == kReadFailed)
        Complain(path, "corrupt GIF data, or not enough memory");
    else if (result == kReadNotGif)
        Complain(path, "not a GIF file");
    else if (report.imageLeftBlank)
        Complain(path, "not enough memory for its pictures");
    else if (!report.reachedTrailer)
        Complain(path, "note: loading ended before the trailer; blocks behind that point are not in the document");
    // The editor opens such a document, whose pictures somebody sees. Here a blank one would be passed on unseen.
    return report.imageLeftBlank ? kReadFailed : result;
}

bool FindBlock(const BlockList& list, const std::string& path, const std::string& text, Block* block, uint32_t* index) {
    if (ParseNumber(text, UINT32_MAX, index) && GetBlock(list, block, *index)) return true;
    Complain(path, "no block " + text + "; they are numbered 0 to " + std::to_string(int64_t{list.count} - 1));
    return false;
}

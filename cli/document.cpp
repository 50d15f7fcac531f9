#include "cli/document.h"

#include "cli/complaints.h"
#include "cli/options.h"

namespace {
constexpr char kNotComplete[] = "loading ended before the trailer";
}

bool Document::Open(const std::string& path, const Options& options) {
    bool strict = options.Has("--strict");
    Read(path, strict);
    return result == kReadDone && (report.reachedTrailer || !strict);
}

void Document::Read(const std::string& path, bool strict) {
    if (!CreateBlockList(&list)) return Complain(path, "out of memory");
    result = ReadGifFile(&list, path.c_str(), &report);
    if (report.couldNotOpen)
        Complain(path, WhyNotOpened(path, report.reason));
    else if (report.couldNotRead)
        Complain(path, WhyNotRead(report.reason));
    else if (result == kReadFailed)
        Complain(path, "corrupt GIF data, or not enough memory");
    else if (result == kReadNotGif)
        Complain(path, "not a GIF file");
    else if (report.imageLeftBlank)
        RefuseBlankImage(path);
    else if (!report.reachedTrailer && strict)
        Complain(path, kNotComplete + std::string(" (") + WhereLoadEnded(*this) + "), which --strict does not allow");
    else if (!report.reachedTrailer)
        Complain(path, "note: " + std::string(kNotComplete) + "; blocks behind that point are not in the document");
}

// The editor opens such a document, whose pictures somebody sees. Here a blank one would be passed on unseen.
void Document::RefuseBlankImage(const std::string& path) {
    Complain(path, "not enough memory for its pictures");
    result = kReadFailed;
}

std::string WhereLoadEnded(const Document& document) {
    const ReadReport& report = document.report;
    if (document.result == kReadNotGif) return "no GIF file";
    if (document.result == kReadFailed) return report.couldNotOpen ? "not opened" : "failure";
    if (report.reachedTrailer) return "trailer";
    if (report.dataUnread) return "application block";
    return report.fileEnded ? "end of file" : "unknown byte";
}

bool FindBlock(const BlockList& list, const std::string& path, uint32_t index, Block* block) {
    if (GetBlock(list, block, index)) return true;
    Complain(path, "no block " + std::to_string(index) + "; they are numbered 0 to " +
                       std::to_string(int64_t{list.count} - 1));
    return false;
}

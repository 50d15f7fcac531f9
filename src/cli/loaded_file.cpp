#include "cli/loaded_file.h"

#include "cli/complaints.h"
#include "cli/options.h"

namespace {
constexpr char kNotComplete[] = "loading ended before the trailer";
}

bool LoadedFile::Open(const std::string& path, const Options& options) {
    path_ = path;
    bool strict = options.Has("--strict");
    Read(strict);
    return result == kReadDone && (report.reachedTrailer || !strict);
}

void LoadedFile::Read(bool strict) {
    if (!CreateBlockList(&list)) return Complain(path_, "out of memory");
    result = ReadGifFile(&list, path_.c_str(), &report);
    if (report.couldNotOpen)
        Complain(path_, WhyNotOpened(path_, report.reason));
    else if (report.couldNotRead)
        Complain(path_, WhyNotRead(report.reason));
    else if (result == kReadFailed)
        Complain(path_, "corrupt GIF data, or not enough memory");
    else if (result == kReadNotGif)
        Complain(path_, "not a GIF file");
    else if (report.imageLeftBlank)
        RefuseBlankImage();
    else if (!report.reachedTrailer && strict)
        Complain(path_, kNotComplete + std::string(" (") + WhereLoadEnded() + "), which --strict does not allow");
    else if (!report.reachedTrailer)
        Complain(path_, "note: " + std::string(kNotComplete) + "; blocks behind that point are not in the document");
}

// The editor opens such a document, whose pictures somebody sees. Here a blank one would be passed on unseen.
void LoadedFile::RefuseBlankImage() {
    Complain(path_, "not enough memory for its pictures");
    result = kReadFailed;
}

std::string LoadedFile::WhereLoadEnded() const {
    if (result == kReadNotGif) return "no GIF file";
    if (result == kReadFailed) return report.couldNotOpen ? "not opened" : "failure";
    if (report.reachedTrailer) return "trailer";
    if (report.dataUnread) return "application block";
    return report.fileEnded ? "end of file" : "unknown byte";
}

Block* LoadedFile::At(uint32_t index) {
    if (index < list.count) return &list.blocks[index];
    Complain(path_, "no block " + std::to_string(index) + "; they are numbered 0 to " +
                        std::to_string(int64_t{list.count} - 1));
    return nullptr;
}

Block* LoadedFile::ImageAt(uint32_t index) {
    Block* block = At(index);
    if (!block || block->kind == kImageBlock) return block;
    Complain(path_, "block " + std::to_string(index) + " is not an image");
    return nullptr;
}

#include "cli/loaded_file.h"

#include <algorithm>

#include "cli/complaints.h"
#include "cli/input_file.h"
#include "cli/output_file.h"

namespace {

constexpr char kNotComplete[] = "loading ended before the trailer";
constexpr size_t kMostDamagesTold = 20;

void TellDamages(const std::string& path, const std::vector<Damage>& damages) {
    const size_t told = std::min(damages.size(), kMostDamagesTold);
    for (const Damage& damage : std::span(damages).first(told))
        Complain(path, std::string(IsHarmless(damage) ? "note: " : "") + "at byte " + std::to_string(damage.offset) +
                           ": " + DescribeDamage(damage));
    if (told < damages.size()) Complain(path, "and " + std::to_string(damages.size() - told) + " more places");
}

}  // namespace

bool LoadedFile::Open(const std::string& path, const Options& options) {
    path_ = NameOfInput(path);
    manner_ = options.DocumentManner();
    bool strict = options.Has("--strict");
    Read(path);
    if (result == kReadDone) TellWhatIsMissing(strict);
    return result == kReadDone && (IsComplete() || !strict);
}

void LoadedFile::Read(const std::string& path) {
    if (!CreateBlockList(&list)) return Complain(path_, "out of memory");
    if (path == kStandardStream) {
        if (!ReadStandardInput()) return;
    } else {
        result = ReadGifFile(&list, path.c_str(), &report, manner_);
    }
    if (report.couldNotOpen)
        Complain(path_, WhyNotOpened(path_, report.reason));
    else if (report.couldNotRead)
        Complain(path_, WhyNotRead(report.reason));
    else if (result == kReadFailed)
        Complain(path_, manner_ == Manner::kWhole ? "not enough memory" : "corrupt GIF data, or not enough memory");
    else if (result == kReadNotGif)
        Complain(path_, "not a GIF file");
    else if (report.imageLeftBlank)
        RefuseBlankImage();
}

bool LoadedFile::ReadStandardInput() {
    BlockData content;
    std::string why;
    if (!ReadInputFile(kStandardStream, &content, &why)) {
        Complain(path_, why);
        return false;
    }
    File file;
    file.OpenMemory(content.bytes.get(), content.count);
    result = ReadGif(&list, file, &report, manner_);
    return true;
}

bool LoadedFile::IsComplete() const {
    if (manner_ == Manner::kWhole) return std::ranges::all_of(report.damages, IsHarmless);
    return report.reachedTrailer;
}

void LoadedFile::TellWhatIsMissing(bool strict) const {
    if (manner_ == Manner::kWhole) {
        if (tellsDamages) TellDamages(path_, report.damages);
        if (strict && !IsComplete()) Complain(path_, "it is damaged, which --strict does not allow");
    } else if (!report.reachedTrailer && strict) {
        Complain(path_, kNotComplete + std::string(" (") + WhereLoadEnded() + "), which --strict does not allow");
    } else if (!report.reachedTrailer) {
        Complain(path_, "note: " + std::string(kNotComplete) + "; blocks behind that point are not in the document");
    }
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

Block* LoadedFile::ImageAt(uint32_t index) {
    Block* block = &list.blocks[index];
    if (block->kind == kImageBlock && block->data) return block;
    const char* why = block->kind == kImageBlock ? " has no picture that can be decoded" : " is not an image";
    Complain(path_, "block " + std::to_string(index) + why);
    return nullptr;
}

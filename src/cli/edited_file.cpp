#include "cli/edited_file.h"

#include <algorithm>

#include "cli/complaints.h"
#include "cli/save_document.h"

namespace {

// Whether something was found; complains otherwise.
bool IsFound(const std::vector<uint32_t>& found, const std::string& path, const std::string& why) {
    if (found.empty()) Complain(path, why);
    return !found.empty();
}

}  // namespace

std::string ReadSelection(const Options& options, size_t first, const char* otherwise, Selection* selection) {
    const Words& operands = options.Operands();
    std::string words;
    for (size_t i = first; i < operands.size(); ++i) words += (i > first ? "," : "") + operands[i];
    return selection->Parse(operands.size() > first ? words : otherwise);
}

std::string ReadPlace(const Options& options, Selection* place) {
    const std::string* at = options.Value("--at");
    return at ? place->Parse(*at) : "give --at and the number of a block";
}

bool EditedFile::Find(const Selection& selection, std::vector<uint32_t>* blocks) const {
    std::string why;
    *blocks = selection.Find(file_.list, &why);
    return IsFound(*blocks, In(), why);
}

bool EditedFile::FindFrameNumbers(const Selection& selection, std::vector<uint32_t>* frames) const {
    std::string why;
    *frames = selection.FindFrameNumbers(FindFrames(file_.list).size(), &why);
    return IsFound(*frames, In(), why);
}

bool EditedFile::FindPlace(const Selection& place, uint32_t* index) const {
    std::vector<uint32_t> found;
    if (!Find(place, &found)) return false;
    *index = *std::ranges::max_element(found);
    return true;
}

int EditedFile::Finish(const EditOutcome& outcome, const TouchedBlocks& touched) {
    if (!outcome) {
        Complain(In(), outcome.refusal);
        return kExitFailed;
    }
    for (const std::string& note : outcome.notes) Complain(In(), "note: " + note);
    return SaveDocument(&file_.list, options_.Operands()[1], options_, touched);
}

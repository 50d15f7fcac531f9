#include "cli/picture_series.h"

#include <filesystem>

#include "cli/complaints.h"
#include "cli/frame_words.h"

namespace fs = std::filesystem;

namespace {

bool Exists(const std::string& path) {
    std::error_code unknown;
    return fs::exists(fs::path(std::u8string(path.begin(), path.end())), unknown);
}

bool IsSeries(const std::string& word, NumberedName* names) {
    return names->Parse(word).empty() && names->HasNumber() && !Exists(word);
}

std::string AddSeries(const NumberedName& names, std::optional<uint32_t> start, Words* files) {
    uint32_t number = start.value_or(Exists(names.For(0)) ? 0 : 1);
    if (!Exists(names.For(number)))
        return start ? "there is no " + names.For(number)
                     : "there is neither " + names.For(0) + " nor " + names.For(1) + " (--start N begins elsewhere)";
    for (; Exists(names.For(number)); ++number) files->push_back(names.For(number));
    if (Exists(names.For(number + 1)))
        Complain(names.For(number),
                 "note: not there, so the series ends before it, although " + names.For(number + 1) + " follows");
    return "";
}

}  // namespace

std::string FindPictures(const Words& words, std::optional<uint32_t> start, Words* files) {
    bool hasSeries = false;
    for (const std::string& word : words) {
        NumberedName names;
        if (!IsSeries(word, &names)) {
            files->push_back(word);
            continue;
        }
        hasSeries = true;
        if (std::string wrong = AddSeries(names, start, files); !wrong.empty()) return wrong;
    }
    return start && !hasSeries ? "--start is for a series, such as frame-%03d.png" : "";
}

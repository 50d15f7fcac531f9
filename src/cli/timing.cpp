// zephyr timing: how long frames are shown.
#include "editing/timing.h"
#include "cli/commands.h"
#include "cli/edit_command.h"
#include "gif/descriptor.h"

namespace {

constexpr unsigned kMostTotal = 4294967295u;

struct TimingOption {
    const char* option;
    Retiming::Kind kind;
    unsigned most;
};
constexpr TimingOption kTimingOptions[] = {{"--delay", Retiming::kDelay, kMostDelay},
                                           {"--total", Retiming::kTotal, kMostTotal},
                                           {"--least", Retiming::kLeast, kMostDelay}};
constexpr char kScale[] = "--scale";

// A number above 0 as "2", "1.5" or "0.25", of at most nine digits.
bool ParseFactor(const std::string& text, Retiming* how) {
    const size_t point = text.find('.');
    std::string digits = text;
    size_t places = 0;
    if (point != std::string::npos) {
        digits.erase(point, 1);
        places = digits.size() - point;
        if (point == 0 || places == 0) return false;
    }
    constexpr unsigned kMostFactor = 999999999;
    if (digits.size() > 9 || !ParseNumber(digits, kMostFactor, &how->value) || how->value == 0) return false;
    for (; places > 0; --places) how->divisor *= 10;
    how->kind = Retiming::kScale;
    return true;
}

// Returns what is wrong with the words, or an empty text.
std::string ReadRetiming(const Options& options, Retiming* how) {
    int given = 0;
    how->divisor = 1;
    for (const TimingOption& known : kTimingOptions) {
        const std::string* value = options.Value(known.option);
        if (!value) continue;
        ++given;
        how->kind = known.kind;
        if (!ParseNumber(*value, known.most, &how->value))
            return "give " + std::string(known.option) + " and hundredths of a second from 0 to " +
                   std::to_string(known.most) + ", not " + *value;
    }
    if (const std::string* factor = options.Value(kScale)) {
        ++given;
        if (!ParseFactor(*factor, how)) return "give --scale and a number above 0 as in 1.5, not " + *factor;
    }
    return given == 1 ? "" : "give one of --delay, --scale, --total and --least";
}

class TimingEdit : public Edit {
public:
    std::string Read(const Options& options, const Words& operands) override {
        std::string wrong = ReadRetiming(options, &how_);
        return wrong.empty() ? ReadSelection(operands, "frame", &frames_) : wrong;
    }

    EditAnswer Change(LoadedFile* file) override {
        std::string why;
        const std::vector<uint32_t> frames = frames_.FindFrameNumbers(FindFrames(file->list).size(), &why);
        if (frames.empty()) return EditOutcome::Refused(why);
        return Retime(frames, how_, &file->list);
    }

private:
    Retiming how_ = {};
    Selection frames_;
};

}  // namespace

const char kTimingHelp[] =
    "Usage: zephyr timing [OPTION...] IN OUT [SELECTION...] --delay N\n"
    "       zephyr timing [OPTION...] IN OUT [SELECTION...] --scale FACTOR\n"
    "       zephyr timing [OPTION...] IN OUT [SELECTION...] --total N\n"
    "       zephyr timing [OPTION...] IN OUT [SELECTION...] --least N\n"
    "       zephyr timing --in-place [OPTION...] [SELECTION...] --delay N -- FILE...\n"
    "\n"
    "Loads the GIF file IN, changes how long frames are shown and writes the result\n"
    "to OUT, all other blocks as they were. N is in hundredths of a second. SELECTION\n"
    "chooses frames as in 0, 2-4, last or frame:3; without it all of them are meant.\n"
    "\n"
    "  --delay N  show each of them so long\n"
    "  --scale FACTOR\n"
    "             show them FACTOR times as long (1.5, 0.25)\n"
    "  --total N  show all of them together so long; each keeps its share\n"
    "  --least N  show those with a shorter delay so long\n"
    "\n"
    "Delays count as the file has them, also those of 0 and 1, for which players take\n"
    "10. What rounding takes from one frame the next ones get, so that the sum is\n"
    "right. A frame without a control gets one. No delay is longer than 65535.\n";

int RunTiming(const Words& words) {
    TimingEdit timing;
    return RunEdit({"timing", {}, {"--delay", "--scale", "--total", "--least"}}, words, &timing);
}

// zephyr build: a new animation from picture files.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>

#include "cli/commands.h"
#include "cli/complaints.h"
#include "cli/names.h"
#include "cli/options.h"
#include "cli/picture_series.h"
#include "cli/progress.h"
#include "cli/save_document.h"
#include "cli/usage.h"
#include "editing/animation_build.h"
#include "gif/descriptor.h"

namespace {

constexpr int kUsualDelay = 100;
constexpr size_t kFewestFiles = 2;
constexpr double kLeastRate = 0.01, kMostRate = 100;  // frames a second
constexpr uint32_t kMostPlayedRate = 50;              // that browsers keep to

struct MatchingName {
    const char* name;
    PaletteMatching matching;
};
constexpr MatchingName kMatchings[] = {
    {"super", PaletteMatching::kSuperPalette},     {"first", PaletteMatching::kFirstPalette},
    {"photo", PaletteMatching::kPhotorealistic},   {"drawn", PaletteMatching::kDrawn},
    {"sixteen", PaletteMatching::kSixteenColours},
};

const MatchingName* FindMatching(const std::string& name) {
    for (const MatchingName& known : kMatchings)
        if (name == known.name) return &known;
    return nullptr;
}

constexpr char kTooManyDelays[] = "--delays has more delays than there are frames";

bool ParseRate(const std::string& text, uint32_t* framesInThousandSeconds) {
    double rate = 0;
    const char* end = text.data() + text.size();
    auto [stopped, error] = std::from_chars(text.data(), end, rate, std::chars_format::fixed);
    if (error != std::errc() || stopped != end || !(rate >= kLeastRate && rate <= kMostRate)) return false;
    *framesInThousandSeconds = static_cast<uint32_t>(std::lround(rate * 1000));
    return true;
}

bool ParseDelays(const std::string& text, std::vector<uint16_t>* delays) {
    for (size_t at = 0; at <= text.size();) {
        const size_t comma = std::min(text.find(',', at), text.size());
        unsigned delay;
        if (!ParseNumber(text.substr(at, comma - at), kMostDelay, &delay)) return false;
        delays->push_back(static_cast<uint16_t>(delay));
        at = comma + 1;
    }
    return true;
}

// Takes how long each frame shows. Returns what is wrong with that, or an empty text.
std::string TakeTiming(const Options& options, AnimationSettings* settings) {
    const std::string *delay = options.Value("--delay"), *delays = options.Value("--delays"),
                      *rate = options.Value("--fps");
    if ((delay != nullptr) + (delays != nullptr) + (rate != nullptr) > 1)
        return "give one of --delay, --delays and --fps";
    if (delay) {
        unsigned number;
        if (!ParseNumber(*delay, kMostDelay, &number)) return "--delay takes a number from 0 to 65535";
        settings->delayHundredths = static_cast<int>(number);
    }
    if (delays && !ParseDelays(*delays, &settings->delays))
        return "--delays takes numbers from 0 to 65535 with commas between, such as 10,20,10";
    if (rate && !ParseRate(*rate, &settings->framesInThousandSeconds)) return "--fps takes a number from 0.01 to 100";
    settings->keepsSourceDelays = !delay && !delays && !rate;
    return "";
}

// Takes the settings from the options. Returns what is wrong with them; empty when they are fine.
std::string TakeSettings(const Options& options, AnimationSettings* settings) {
    settings->forWeb = options.Has("--web");
    settings->loops = options.Has("--loop");
    settings->delayHundredths = kUsualDelay;
    if (const std::string* name = options.Value("--match")) {
        const MatchingName* known = FindMatching(*name);
        if (!known) return "--match takes super, first, photo, drawn or sixteen";
        settings->matching = known->matching;
    }
    settings->centres = options.Has("--centre");
    if (options.Has("--all-frames")) settings->taken = FramesTaken::kAll;
    return TakeTiming(options, settings);
}

// The files, and among them those of the series. Returns what is wrong, or an empty text.
std::string TakeFiles(const Options& options, const AnimationSettings& settings, Words* files) {
    std::optional<uint32_t> start;
    if (const std::string* text = options.Value("--start")) {
        unsigned number;
        if (!ParseNumber(*text, INT32_MAX, &number)) return "--start takes the number of the first picture";
        start = number;
    }
    const bool mayBeOne = settings.taken == FramesTaken::kAll;
    if (options.Operands().empty()) return mayBeOne ? "give at least one file" : "give at least two files";
    std::string error = FindPictures(options.Operands(), start, files);
    if (!error.empty() || mayBeOne) return error;
    if (files->size() < kFewestFiles) return "give at least two files";
    return settings.delays.size() > files->size() ? kTooManyDelays : "";
}

// The options' answers, and for people at a terminal a line that is written over and over.
class BuildAnswers : public Questions {
public:
    explicit BuildAnswers(bool skipCorrupted) : skipCorrupted_(skipCorrupted) {}

    bool MayStop() const override { return false; }
    PaletteChoice ChoosePalette(const Block&) override { return PaletteChoice::kCancel; }  // no build asks
    bool MayLeaveOut(const std::string&, Failure why) override { return skipCorrupted_ && IsFaultOfPicture(why); }
    void OnFile(size_t number, size_t count) override { progress_.OnFrame(number, count); }

private:
    bool skipCorrupted_;
    Progress progress_;
};

// Why there is no animation, in a line about one of the files.
std::string WhyNotBuilt(const BuildResult& result, const std::string& file) {
    std::string noPicture = WhyNoPicture(file, result.why, result.reason);
    bool mayBeSkipped = IsFaultOfPicture(result.why);
    switch (result.outcome) {
        case BuildOutcome::kFirstFileUnreadable:
            return mayBeSkipped ? noPicture + ", so there is no palette to match" : noPicture;
        case BuildOutcome::kFileRefused:
            return mayBeSkipped ? noPicture + " (--skip-corrupted leaves such files out)" : noPicture;
        case BuildOutcome::kStoppedByUser: return "stopped";
        default: return "out of memory";
    }
}

// Tells on standard error what went wrong or was left out. False when there is no animation to be saved.
bool Report(const BuildResult& result, const Words& files, const std::string& out) {
    for (size_t skipped : result.skipped) Complain(files[skipped], "note: no readable picture, left out");
    if (result.outcome != BuildOutcome::kDone) {
        Complain(files[result.file], WhyNotBuilt(result, files[result.file]));
        return false;
    }
    if (result.skipped.size() < files.size()) return true;
    Complain(out, "not written, as none of the files is a readable picture");
    return false;
}

BuildResult Build(const AnimationSettings& settings, const Words& files, bool skipCorrupted, BlockList* document) {
    BuildAnswers answers(skipCorrupted);
    return BuildAnimation(settings, files, document, answers);
}

}  // namespace

const char kBuildHelp[] =
    "Usage: zephyr build -o OUT [OPTION...] FILE FILE...\n"
    "\n"
    "Makes an animation from the pictures in the files, in the order given, and\n"
    "writes it to OUT. Files are PNG, JPEG, BMP, or GIF, of which the first image\n"
    "counts. frame-%03d.png stands for frame-000.png, frame-001.png and so on, from\n"
    "0 or 1 until one is missing.\n"
    "\n"
    "  --fps N              show N frames a second (0.01 to 100)\n"
    "  --delay N            show each frame for N hundredths of a second (0 to\n"
    "                       65535, default 100)\n"
    "  --delays N,N,...     the same for one frame after the other, and again from\n"
    "                       the first number when there are more frames\n"
    "  --loop               repeat for ever; otherwise the animation plays once\n"
    "  --match MANNER       whose colours the frames get:\n"
    "       super             one palette made from all frames (the default)\n"
    "       first             the palette of the first file\n"
    "       photo             a fixed palette, dithered: for photographs\n"
    "       drawn             a fixed palette, the nearest colours: for drawings\n"
    "       sixteen           sixteen standard colours\n"
    "  --web                for photo and drawn: the 216 web colours, not 256\n"
    "  --centre             put smaller pictures in the middle of the largest;\n"
    "                       otherwise in its upper left corner\n"
    "  --all-frames         of an animated GIF take every frame, as browsers show it,\n"
    "                       with its own delay unless one is given\n"
    "  --start N            begin a series with number N\n"
    "  --skip-corrupted     leave out files without a readable picture; otherwise\n"
    "                       the first one ends the command, as a file that can't be\n"
    "                       opened always does\n"
    "  --owner NAME, --organisation NAME\n"
    "                       add a file-identity comment with these names; one that\n"
    "                       is not given is that which Windows is registered to,\n"
    "                       elsewhere empty\n"
    "  --classic            write as the editor does by default: always with that\n"
    "                       comment\n"
    "\n"
    "Pixels of less than half opacity are transparent in the animation, all others\n"
    "opaque. When a picture is transparent, or --centre finds pictures of different\n"
    "sizes, each frame is taken away before the next one shows.\n";

int RunBuild(const Words& words) {
    Options options(words, {"--web", "--loop", "--skip-corrupted", "--centre", "--all-frames"},
                    {"-o", "--match", "--delay", "--delays", "--fps", "--start", "--owner", "--organisation"});
    AnimationSettings settings;
    Words files;
    std::string error = options.Error();
    if (error.empty()) error = TakeSettings(options, &settings);
    const std::string* out = options.Value("-o");
    if (error.empty() && !out) error = "give the file to write with -o OUT";
    if (error.empty()) error = TakeFiles(options, settings, &files);
    if (error.empty()) error = WrongNames(options);
    if (!error.empty() || !out) return WrongUsage("build", error);

    BlockList document;
    const BuildResult result = Build(settings, files, options.Has("--skip-corrupted"), &document);
    if (!Report(result, files, *out)) return kExitFailed;
    if (settings.delays.size() > result.frames) {
        Complain(*out, std::string("not written: ") + kTooManyDelays);
        return kExitFailed;
    }
    if (settings.framesInThousandSeconds > kMostPlayedRate * 1000)
        Complain(*out,
                 "note: browsers show frames of less than 2 hundredths of a second for 10: 50 a second are the most");
    document.flags |= kMadeHere;
    return SaveDocument(&document, *out, options);
}

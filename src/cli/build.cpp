// zephyr build: a new animation from picture files.
#include <algorithm>
#include <cstdio>

#include "cli/commands.h"
#include "cli/complaints.h"
#include "cli/names.h"
#include "cli/options.h"
#include "cli/save_document.h"
#include "cli/terminal.h"
#include "cli/usage.h"
#include "editing/animation_build.h"

namespace {

constexpr unsigned kMostDelay = 65535;  // hundredths of a second
constexpr int kUsualDelay = 100;
constexpr size_t kFewestFiles = 2;

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
    if (const std::string* text = options.Value("--delay")) {
        unsigned delay;
        if (!ParseNumber(*text, kMostDelay, &delay)) return "--delay takes a number from 0 to 65535";
        settings->delayHundredths = static_cast<int>(delay);
    }
    return "";
}

// The options' answers, and for people at a terminal a line that is written over and over.
class BuildAnswers : public Questions {
public:
    explicit BuildAnswers(bool skipCorrupted) : skipCorrupted_(skipCorrupted), shown_(ErrorsGoToTerminal()) {}
    ~BuildAnswers() override {
        if (width_ > 0) fprintf(stderr, "\r%*s\r", width_, "");
    }

    PaletteChoice ChoosePalette(const Block&) override { return PaletteChoice::kCancel; }  // no build asks
    bool MayLeaveOut(const std::string&, Failure why) override { return skipCorrupted_ && IsCorrupted(why); }
    void OnFile(size_t number, size_t count) override {
        if (shown_) width_ = fprintf(stderr, "\rframe %zu of %zu", number, count);
    }

    // A file that the system does not give is a mistake, and never left out.
    static bool IsCorrupted(Failure why) { return why != Failure::kCantOpen && why != Failure::kCantRead; }

private:
    bool skipCorrupted_;
    bool shown_;
    int width_ = 0;  // of what is to be wiped in the end; blanks do that on every terminal
};

// Why there is no animation, in a line about one of the files.
std::string WhyNotBuilt(const BuildResult& result, const std::string& file) {
    std::string noPicture = WhyNoPicture(file, result.why, result.reason);
    bool mayBeSkipped = BuildAnswers::IsCorrupted(result.why);
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
    for (size_t skipped : result.skipped) Complain(files[skipped], "note: no readable GIF picture, left out");
    if (result.outcome != BuildOutcome::kDone) {
        Complain(files[result.file], WhyNotBuilt(result, files[result.file]));
        return false;
    }
    if (result.skipped.size() < files.size()) return true;
    Complain(out, "not written, as none of the files is a readable GIF picture");
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
    "Makes an animation from the first image of each GIF file FILE, in the order\n"
    "given, and writes it to OUT.\n"
    "\n"
    "  --match MANNER       whose colours the frames get:\n"
    "       super             one palette made from all frames (the default)\n"
    "       first             the palette of the first file\n"
    "       photo             a fixed palette, dithered: for photographs\n"
    "       drawn             a fixed palette, the nearest colours: for drawings\n"
    "       sixteen           sixteen standard colours\n"
    "  --web                for photo and drawn: the 216 web colours, not 256\n"
    "  --loop               repeat for ever; otherwise the animation plays once\n"
    "  --delay N            show each frame for N hundredths of a second (0 to\n"
    "                       65535, default 100)\n"
    "  --skip-corrupted     leave out files without a readable picture; otherwise\n"
    "                       the first one ends the command, as a file that can't be\n"
    "                       opened always does\n"
    "  --owner NAME, --organisation NAME\n"
    "                       add a file-identity comment with these names; one that\n"
    "                       is not given is that which Windows is registered to,\n"
    "                       elsewhere empty\n"
    "  --classic            write as the editor does by default: always with that\n"
    "                       comment\n";

int RunBuild(const Words& words) {
    Options options(words, {"--web", "--loop", "--skip-corrupted"},
                    {"-o", "--match", "--delay", "--owner", "--organisation"});
    AnimationSettings settings;
    std::string error = options.Error();
    if (error.empty()) error = TakeSettings(options, &settings);
    const std::string* out = options.Value("-o");
    const Words& files = options.Operands();
    if (error.empty() && !out) error = "give the file to write with -o OUT";
    if (error.empty() && files.size() < kFewestFiles) error = "give at least two files";
    if (error.empty()) error = WrongNames(options);
    if (!error.empty() || !out) return WrongUsage("build", error);

    BlockList document;
    BuildResult result = Build(settings, files, options.Has("--skip-corrupted"), &document);
    if (!Report(result, files, *out)) return kExitFailed;
    document.flags |= kMadeHere;
    return SaveDocument(&document, *out, options);
}

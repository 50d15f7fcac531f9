// zephyr build: a new animation from picture files.
#include <algorithm>
#include <cstdio>

#include "cli/answers.h"
#include "cli/commands.h"
#include "cli/complaints.h"
#include "cli/document.h"
#include "cli/names.h"
#include "cli/options.h"
#include "cli/save_document.h"
#include "cli/terminal.h"
#include "cli/usage.h"
#include "editing/animation_build.h"
#include "platform/file.h"
#include "platform/prompts.h"

namespace {

constexpr unsigned kMostDelay = 65535;  // hundredths of a second
constexpr int kUsualDelay = 100;
constexpr size_t kFewestFiles = 2;

struct Manner {
    const char* name;
    PaletteMatching matching;
};
constexpr Manner kManners[] = {
    {"super", PaletteMatching::kSuperPalette},     {"first", PaletteMatching::kFirstPalette},
    {"photo", PaletteMatching::kPhotorealistic},   {"drawn", PaletteMatching::kDrawn},
    {"sixteen", PaletteMatching::kSixteenColours},
};

const Manner* FindManner(const std::string& name) {
    for (const Manner& known : kManners)
        if (name == known.name) return &known;
    return nullptr;
}

// Takes the settings from the options. Returns what is wrong with them; empty when they are fine.
std::string TakeSettings(const Options& options, AnimationSettings* settings) {
    settings->forWeb = options.Has("--web");
    settings->loops = options.Has("--loop");
    settings->delayHundredths = kUsualDelay;
    if (const std::string* name = options.Value("--match")) {
        const Manner* manner = FindManner(*name);
        if (!manner) return "--match takes super, first, photo, drawn or sixteen";
        settings->matching = manner->matching;
    }
    if (const std::string* text = options.Value("--delay")) {
        unsigned delay;
        if (!ParseNumber(*text, kMostDelay, &delay)) return "--delay takes a number from 0 to 65535";
        settings->delayHundredths = static_cast<int>(delay);
    }
    return "";
}

// A line that is written over and over, for people only.
class ProgressLine {
public:
    ProgressLine() : shown_(ErrorsGoToTerminal()) {}
    ~ProgressLine() {
        if (width_ > 0) fprintf(stderr, "\r%*s\r", width_, "");
    }
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    void Show(int frame, int count) {
        if (!shown_) return;
        width_ = fprintf(stderr, "\rframe %d of %d", frame, count);
    }

private:
    bool shown_;
    int width_ = 0;  // of what is to be wiped in the end; blanks do that on every terminal
};

// Damaged files may be skipped, but a file that the system does not give is a mistake. False, told on standard error.
bool CanBeOpened(const std::string& path) {
    File file;
    if (file.OpenForReading(path.c_str())) return true;
    Complain(path, WhyNotOpened(path, file.Reason()));
    return false;
}

BuildResult Build(const AnimationSettings& settings, const Words& files, bool skipCorrupted, Document* document) {
    AnswerYesNo answer(skipCorrupted ? kAnswerYes : kAnswerNo);
    ProgressLine line;
    return BuildAnimation(nullptr, settings, files, &document->list,
                          [&](int frame, int count) { line.Show(frame, count); });
}

// Tells on standard error what went wrong or was left out. False when there is no animation to be saved.
bool Report(const BuildResult& result, const Words& files, const std::string& out) {
    for (size_t skipped : result.skipped) {
        if (!CanBeOpened(files[skipped])) return false;
        Complain(files[skipped], "note: " + WhyNoPicture(files[skipped]) + ", left out");
    }
    switch (result.outcome) {
        case BuildOutcome::kDone:
            if (result.skipped.size() < files.size()) return true;
            Complain(out, "not written, as none of the files is a readable GIF picture");
            return false;
        case BuildOutcome::kFirstFileUnreadable:
            Complain(files[0], WhyNoPicture(files[0]) + ", so there is no palette to match");
            return false;
        case BuildOutcome::kCorruptedFileRefused:
            Complain(files[result.file],
                     WhyNoPicture(files[result.file]) + " (--skip-corrupted leaves such files out)");
            return false;
        case BuildOutcome::kStoppedByUser: Complain(files[result.file], "stopped"); return false;
        case BuildOutcome::kOutOfMemory:
        case BuildOutcome::kListFailed: break;
    }
    Complain(files[result.file], "out of memory");
    return false;
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
    "                       names for the file-identity comment; by default those\n"
    "                       that Windows is registered to, elsewhere empty\n";

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
    if (!error.empty()) return WrongUsage("build", error);
    if (!std::all_of(files.begin(), files.end(), CanBeOpened)) return kExitFailed;

    Document document;
    BuildResult result = Build(settings, files, options.Has("--skip-corrupted"), &document);
    if (!Report(result, files, *out)) return kExitFailed;
    return SaveDocument(&document.list, *out, options);
}

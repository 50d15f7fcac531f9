// zephyr reverse, thin and cut: other frames, or in another order.
#include "cli/commands.h"
#include "cli/edited_file.h"
#include "cli/names.h"
#include "cli/usage.h"
#include "editing/frame_operations.h"

namespace {

using FrameOperation = EditOutcome (*)(std::span<const uint32_t> frames, BlockList* list);

// One that works on chosen frames: all of them when nothing is said and `isAllMeant`.
int RunOnFrames(const char* command, const Words& words, bool isAllMeant, FrameOperation operation) {
    Options options(words, {"--strict", "--fit-screen"}, {"--owner", "--organisation"});
    if (!options.Error().empty()) return WrongUsage(command, options.Error());
    if (std::string wrong = WrongNames(options); !wrong.empty()) return WrongUsage(command, wrong);
    if (options.Operands().size() < 2) return WrongUsage(command, "give IN and OUT");
    if (options.Operands().size() < 3 && !isAllMeant) return WrongUsage(command, "give IN, OUT and frames");
    Selection selection;
    if (std::string wrong = ReadSelection(options, 2, "frame", &selection); !wrong.empty())
        return WrongUsage(command, wrong);
    EditedFile file(options);
    std::vector<uint32_t> frames;
    if (!file.Open() || !file.FindFrameNumbers(selection, &frames)) return kExitFailed;
    return file.Finish(operation(frames, file.List()));
}

}  // namespace

const char kReverseHelp[] =
    "Usage: zephyr reverse [OPTION...] IN OUT [SELECTION...]\n"
    "\n"
    "Loads the GIF file IN, lets its frames come in the opposite order and writes the\n"
    "result to OUT. SELECTION chooses frames as in 0, 2-4, last or frame:3, which are\n"
    "exchanged with each other; without it all of them are meant.\n"
    "\n"
    "A frame is an image with the controls before it; all else stays where it is.\n"
    "Frames look as they did: one that would look different behind the frame that it\n"
    "has now is composed anew, all others keep their bytes.\n"
    "\n"
    "  --fit-screen, --owner NAME, --organisation NAME, --strict, --classic\n"
    "             as with the command delete\n";

int RunReverse(const Words& words) {
    return RunOnFrames("reverse", words, true, ReverseFrames);
}

const char kCutHelp[] =
    "Usage: zephyr cut [OPTION...] IN OUT SELECTION...\n"
    "\n"
    "Loads the GIF file IN, keeps the chosen frames, in the order of IN, and writes\n"
    "the result to OUT. SELECTION chooses frames as in 0, 2-4, last or frame:3. All\n"
    "that is no frame stays.\n"
    "\n"
    "A frame is an image with the controls before it. Frames look as they did: one\n"
    "that would look different behind the frame that it has now is composed anew, all\n"
    "others keep their bytes.\n"
    "\n"
    "  --fit-screen, --owner NAME, --organisation NAME, --strict, --classic\n"
    "             as with the command delete\n";

int RunCut(const Words& words) {
    return RunOnFrames("cut", words, false, CutFrames);
}

const char kThinHelp[] =
    "Usage: zephyr thin [OPTION...] IN OUT --every N\n"
    "\n"
    "Loads the GIF file IN, keeps the first of every N frames and writes the result\n"
    "to OUT. A frame that is kept is shown for as long as players show those N\n"
    "together (a delay of 0 or 1 counts as 10), so that the animation takes as long\n"
    "as before.\n"
    "All that is no frame stays.\n"
    "\n"
    "A frame is an image with the controls before it. Frames look as they did: one\n"
    "that would look different behind the frame that it has now is composed anew, all\n"
    "others keep their bytes.\n"
    "\n"
    "  --fit-screen, --owner NAME, --organisation NAME, --strict, --classic\n"
    "             as with the command delete\n";

int RunThin(const Words& words) {
    Options options(words, {"--strict", "--fit-screen"}, {"--every", "--owner", "--organisation"});
    if (!options.Error().empty()) return WrongUsage("thin", options.Error());
    if (std::string wrong = WrongNames(options); !wrong.empty()) return WrongUsage("thin", wrong);
    if (options.Operands().size() != 2) return WrongUsage("thin", "give IN and OUT");
    const std::string* text = options.Value("--every");
    unsigned every = 0;
    if (!text || !ParseNumber(*text, UINT32_MAX, &every) || every == 0)
        return WrongUsage("thin", "give --every and a number of frames from 1 on");
    EditedFile file(options);
    if (!file.Open()) return kExitFailed;
    return file.Finish(ThinFrames(every, file.List()));
}

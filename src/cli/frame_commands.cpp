// zephyr reverse, thin and cut: other frames, or in another order.
#include "cli/commands.h"
#include "cli/edit_command.h"
#include "editing/frame_operations.h"

namespace {

// Work on chosen frames: all of them when nothing is said.
class FrameEdit : public Edit {
public:
    using Operation = EditOutcome (*)(std::span<const uint32_t> frames, BlockList* list);

    explicit FrameEdit(Operation operation) : operation_(operation) {}

    std::string Read(const Options&, const Words& operands) override {
        return ReadSelection(operands, "frame", &frames_);
    }

    EditAnswer Change(LoadedFile* file) override {
        std::string why;
        const std::vector<uint32_t> frames = frames_.FindFrameNumbers(FindFrames(file->list).size(), &why);
        if (frames.empty()) return EditOutcome::Refused(why);
        return operation_(frames, &file->list);
    }

private:
    Operation operation_;
    Selection frames_;
};

class Thinning : public Edit {
public:
    std::string Read(const Options& options, const Words&) override {
        const std::string* text = options.Value("--every");
        const bool isNumber = text && ParseNumber(*text, UINT32_MAX, &every_) && every_ > 0;
        return isNumber ? "" : "give --every and a number of frames from 1 on";
    }

    EditAnswer Change(LoadedFile* file) override { return ThinFrames(every_, &file->list); }

private:
    unsigned every_ = 0;
};

}  // namespace

const char kReverseHelp[] =
    "Usage: zephyr reverse [OPTION...] IN OUT [SELECTION...]\n"
    "       zephyr reverse --in-place [OPTION...] [SELECTION...] -- FILE...\n"
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
    FrameEdit reversal(ReverseFrames);
    return RunEdit({"reverse", {}, {}, 0, SIZE_MAX}, words, &reversal);
}

const char kCutHelp[] =
    "Usage: zephyr cut [OPTION...] IN OUT SELECTION...\n"
    "       zephyr cut --in-place [OPTION...] SELECTION... -- FILE...\n"
    "\n"
    "Loads the GIF file IN, keeps the chosen frames, in the order of IN, and writes\n"
    "the result to OUT. SELECTION chooses frames as in 0, 2-4, last or frame:3. All\n"
    "that is no frame stays.\n"
    "\n"
    "A frame is an image with the controls before it. Frames look as they did: one\n"
    "that would look different behind the frame that it has now is composed anew, all\n"
    "others keep their bytes.\n";

int RunCut(const Words& words) {
    FrameEdit cut(CutFrames);
    return RunEdit({"cut", {}, {}, 1, SIZE_MAX, " and the frames to be kept"}, words, &cut);
}

const char kThinHelp[] =
    "Usage: zephyr thin [OPTION...] IN OUT --every N\n"
    "       zephyr thin --in-place [OPTION...] --every N FILE...\n"
    "\n"
    "Loads the GIF file IN, keeps the first of every N frames and writes the result\n"
    "to OUT. A frame that is kept is shown for as long as players show those N\n"
    "together (a delay of 0 or 1 counts as 10), so that the animation takes as long\n"
    "as before.\n"
    "All that is no frame stays.\n"
    "\n"
    "A frame is an image with the controls before it. Frames look as they did: one\n"
    "that would look different behind the frame that it has now is composed anew, all\n"
    "others keep their bytes.\n";

int RunThin(const Words& words) {
    Thinning thinning;
    return RunEdit({"thin", {}, {"--every"}, 0, 0}, words, &thinning);
}

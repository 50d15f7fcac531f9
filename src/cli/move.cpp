// zephyr move: blocks in another order.
#include "cli/commands.h"
#include "cli/edit_command.h"
#include "editing/block_operations.h"

namespace {

class Moving : public Edit {
public:
    std::string Read(const Options& options, const Words& operands) override {
        looks_ = options.Has("--keep-looks") ? Looks::kKept : Looks::kLeft;
        std::string wrong = ReadSelection(operands, "", &blocks_);
        return wrong.empty() ? ReadPlace(options, &place_) : wrong;
    }

    EditAnswer Change(LoadedFile* file) override {
        std::string why;
        uint32_t at = 0;
        const std::vector<uint32_t> blocks = blocks_.Find(file->list, &why);
        if (blocks.empty() || !FindPlace(place_, file->list, &at, &why)) return EditOutcome::Refused(why);
        return MoveBlocks(blocks, at, looks_, &file->list);
    }

private:
    Selection blocks_, place_;
    Looks looks_ = Looks::kLeft;
};

}  // namespace

const char kMoveHelp[] =
    "Usage: zephyr move [OPTION...] IN OUT SELECTION... --at INDEX\n"
    "       zephyr move --in-place [OPTION...] SELECTION... --at INDEX -- FILE...\n"
    "\n"
    "Loads the GIF file IN, puts the blocks of SELECTION, in the order of its words,\n"
    "behind block number INDEX (or the last one of a selection) and writes the result\n"
    "to OUT. All numbers are those of IN. The header (0) stays the first block.\n"
    "\n"
    "  --keep-looks\n"
    "             frames look as they did: those that stand behind others than before\n"
    "             and would look different are composed anew\n";

int RunMove(const Words& words) {
    Moving moving;
    return RunEdit({"move", {"--keep-looks"}, {"--at"}, 1, SIZE_MAX, " and the blocks to be moved"}, words, &moving);
}

// zephyr delete: a document without some of its blocks.
#include "cli/commands.h"
#include "cli/edit_command.h"
#include "editing/block_operations.h"

namespace {

class Deletion : public Edit {
public:
    std::string Read(const Options& options, const Words& operands) override {
        looks_ = options.Has("--keep-looks") ? Looks::kKept : Looks::kLeft;
        return ReadSelection(operands, "", &blocks_);
    }

    EditAnswer Change(LoadedFile* file) override {
        std::string why;
        const std::vector<uint32_t> blocks = blocks_.Find(file->list, &why);
        if (blocks.empty()) return EditOutcome::Refused(why);
        return DeleteBlocks(blocks, looks_, &file->list);
    }

private:
    Selection blocks_;
    Looks looks_ = Looks::kLeft;
};

}  // namespace

const char kDeleteHelp[] =
    "Usage: zephyr delete [OPTION...] IN OUT SELECTION...\n"
    "       zephyr delete --in-place [OPTION...] SELECTION... -- FILE...\n"
    "\n"
    "Loads the GIF file IN, deletes the blocks of SELECTION and writes the result to\n"
    "OUT, all other blocks as they were. All numbers are those of IN. The header (0)\n"
    "stays.\n"
    "\n"
    "  --keep-looks\n"
    "             frames look as they did: those that stand behind others than before\n"
    "             and would look different are composed anew\n";

int RunDelete(const Words& words) {
    Deletion deletion;
    return RunEdit({"delete", {"--keep-looks"}, {}, 1, SIZE_MAX, " and the blocks to be deleted"}, words, &deletion);
}

// zephyr move: blocks in another order.
#include "cli/commands.h"
#include "cli/edited_file.h"
#include "cli/names.h"
#include "cli/usage.h"
#include "editing/block_operations.h"

const char kMoveHelp[] =
    "Usage: zephyr move [OPTION...] IN OUT SELECTION... --at INDEX\n"
    "\n"
    "Loads the GIF file IN, puts the blocks of SELECTION, in the order of its words,\n"
    "behind block number INDEX and writes the result to OUT. All numbers are those of\n"
    "IN. The header (0) stays the first block. A SELECTION is a number as 7, a range\n"
    "as 3-last, a kind as comment or image:0, or frames as frame:2-4: images with the\n"
    "controls before them; several come with commas or as several words.\n"
    "\n"
    "  --keep-looks\n"
    "             frames look as they did: those that stand behind others than before\n"
    "             and would look different are composed anew\n"
    "  --fit-screen, --owner NAME, --organisation NAME, --strict, --classic\n"
    "             as with the command delete\n";

int RunMove(const Words& words) {
    Options options(words, {"--keep-looks", "--strict", "--fit-screen"}, {"--at", "--owner", "--organisation"});
    if (!options.Error().empty()) return WrongUsage("move", options.Error());
    if (std::string wrong = WrongNames(options); !wrong.empty()) return WrongUsage("move", wrong);
    if (options.Operands().size() < 3) return WrongUsage("move", "give IN, OUT and the blocks to be moved");
    Selection blocks, place;
    if (std::string wrong = ReadSelection(options, 2, "", &blocks); !wrong.empty()) return WrongUsage("move", wrong);
    if (std::string wrong = ReadPlace(options, &place); !wrong.empty()) return WrongUsage("move", wrong);
    EditedFile file(options);
    std::vector<uint32_t> moved;
    uint32_t at = 0;
    if (!file.Open() || !file.Find(blocks, &moved) || !file.FindPlace(place, &at)) return kExitFailed;
    const Looks looks = options.Has("--keep-looks") ? Looks::kKept : Looks::kLeft;
    return file.Finish(MoveBlocks(moved, at, looks, file.List()));
}

// zephyr diff: what differs between two documents.
#include "editing/diff.h"

#include <new>

#include "cli/commands.h"
#include "cli/complaints.h"
#include "cli/loaded_file.h"
#include "cli/options.h"
#include "cli/printed_differences.h"
#include "cli/usage.h"

namespace {

// Damage is no difference, but pictures that could not be looked at may be more alike than what is printed.
void TellPicturesNotSeen(const LoadedFile& file, const std::string& path) {
    for (const Damage& damage : file.report.damages)
        if (damage.kind == DamageKind::kPictureTooLarge)
            Complain(path, "block " + std::to_string(damage.block) + ": " + DescribeDamage(damage));
}

// Returns the exit status.
int Compare(const Options& options) {
    const Words& paths = options.Operands();
    LoadedFile old, fresh;
    old.tellsDamages = fresh.tellsDamages = false;
    if (!old.Open(paths[0], options) || !fresh.Open(paths[1], options)) return kExitTrouble;
    DocumentDifferences differences;
    if (!CompareDocuments(old.list, fresh.list, &differences)) throw std::bad_alloc();
    if (options.Has("--json"))
        PrintJson(differences, old.list, fresh.list);
    else
        PrintLines(differences, old.list, fresh.list);
    if (!FlushOutput()) return kExitTrouble;
    if (differences.AreNone()) return kExitNothing;
    TellPicturesNotSeen(old, paths[0]);
    TellPicturesNotSeen(fresh, paths[1]);
    return kExitFound;
}

}  // namespace

const char kDiffHelp[] =
    "Usage: zephyr diff [--classic] [--json] OLD NEW\n"
    "\n"
    "Compares two GIF files block by block and prints, for each block that is not the\n"
    "same, its number in OLD and in NEW and what happened to it: added, taken out,\n"
    "moved, changed (each field by the name that \"zephyr set\" has for it; of pixels,\n"
    "colours and data how many differ), or encoded differently, when other bytes say\n"
    "the same. A \"-\" stands where a file does not have the block. A block that only\n"
    "has another number, as one before it was added or taken out, is the same.\n"
    "Files with the same bytes are the same, and nothing is printed.\n"
    "With --json, prints one JSON object instead: whether they are the same, the\n"
    "blocks with their numbers (before, after: null for none), differences, fields\n"
    "and bytes, and around: what stands before the signature and after the blocks.\n"
    "With --classic it compares what the editor reads by default, and no bytes.\n"
    "\n"
    "Exit status: 0 the same, 1 different, 2 trouble.\n";

int RunDiff(const Words& words) {
    Options options(words, {"--json"}, {});
    if (!options.Error().empty()) return WrongUsage("diff", options.Error());
    if (options.Operands().size() != 2) return WrongUsage("diff", "give OLD and NEW");
    return Compare(options);
}

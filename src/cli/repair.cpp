// zephyr repair: a clean file of what can be saved of a damaged one.
#include "editing/repair.h"

#include <cstdio>

#include "cli/commands.h"
#include "cli/complaints.h"
#include "cli/loaded_file.h"
#include "cli/names.h"
#include "cli/options.h"
#include "cli/output_file.h"
#include "cli/printable.h"
#include "cli/save_document.h"
#include "cli/usage.h"
#include "gif/block_line.h"

namespace {

// Where the document itself goes to standard output, this goes beside it.
void Print(FILE* out, const std::vector<RepairStep>& steps) {
    for (const RepairStep& step : steps) {
        std::string line;
        if (step.block >= 0) line = "block " + std::to_string(step.block) + " (" + FormatKindName(step.kind) + "): ";
        line += step.text;
        fprintf(out, "%s\n", Printable(line).c_str());
    }
    if (steps.empty())
        fputs("nothing to repair\n", out);
    else
        fprintf(out, "%zu %s\n", steps.size(), steps.size() == 1 ? "repair" : "repairs");
}

// Whatever is wrong with such an image, here it can't be looked at.
void TellWhatStays(const std::string& path, const std::vector<Damage>& damages) {
    for (const Damage& damage : damages)
        if (damage.kind == DamageKind::kPictureTooLarge)
            Complain(path,
                     "note: block " + std::to_string(damage.block) + " stays as it is: " + DescribeDamage(damage));
}

int RepairWhole(LoadedFile* file, const Options& options) {
    std::vector<RepairStep> steps;
    if (!RepairDocument(&file->list, file->report, &steps)) {
        Complain(options.Operands()[0], "out of memory");
        return kExitFailed;
    }
    const int status = SaveDocument(&file->list, options.Operands()[1], options);
    if (status != kExitDone) return status;
    TellWhatStays(options.Operands()[0], file->report.damages);
    Print(options.Operands()[1] == kStandardStream ? stderr : stdout, steps);
    return FlushOutput() ? kExitDone : kExitFailed;
}

}  // namespace

const char kRepairHelp[] =
    "Usage: zephyr repair [--classic] [--fit-screen] [--owner NAME]\n"
    "                     [--organisation NAME] IN OUT\n"
    "\n"
    "Writes to OUT a clean file of all that can be saved of the GIF file IN, and\n"
    "prints a line for each thing that it did. What is not damaged keeps its bytes; a\n"
    "file without damage is copied. Pictures keep what can be decoded of them, and\n"
    "index 0 where nothing can. Left out are bytes that belong to no block, images\n"
    "that can't be decoded at all with their control blocks, and extensions that the\n"
    "end of the file cuts off, but for texts.\n"
    "--fit-screen sets the logical screen to the right and bottom edge of the images.\n"
    "--owner and --organisation add a file-identity comment with these names; one\n"
    "that is not given is that which Windows is registered to, elsewhere empty.\n"
    "With --classic it reads and writes as the editor does by default, which keeps\n"
    "less, and prints nothing.\n";

int RunRepair(const Words& words) {
    Options options(words, {"--fit-screen"}, {"--owner", "--organisation"});
    if (!options.Error().empty()) return WrongUsage("repair", options.Error());
    if (std::string wrong = WrongNames(options); !wrong.empty()) return WrongUsage("repair", wrong);
    if (options.Operands().size() != 2) return WrongUsage("repair", "give IN and OUT");
    LoadedFile file;
    file.tellsDamages = !options.IsWhole();  // what is done about them is told instead
    if (!file.Open(options.Operands()[0], options)) return kExitFailed;
    return options.IsWhole() ? RepairWhole(&file, options) : SaveDocument(&file.list, options.Operands()[1], options);
}

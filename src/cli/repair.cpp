// zephyr repair: a clean file of what can be saved of a damaged one.
#include "editing/repair.h"

#include <cstdio>

#include "cli/commands.h"
#include "cli/complaints.h"
#include "cli/edit_command.h"
#include "cli/output_file.h"
#include "cli/printable.h"
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

class Repair : public Edit {
public:
    std::string Read(const Options& options, const Words&) override {
        isWhole_ = options.IsWhole();
        return "";
    }

    // The classic manner repairs by reading and writing.
    EditAnswer Change(LoadedFile* file) override {
        steps_.clear();
        if (isWhole_ && !RepairDocument(&file->list, file->report, &steps_)) return EditOutcome::OutOfMemory();
        return {};
    }

    void Report(const LoadedFile& file, const std::string& in, const std::string& out) override {
        if (!isWhole_) return;
        TellWhatStays(in, file.report.damages);
        Print(IsStandardOutput(out) ? stderr : stdout, steps_);
    }

    bool TellsDamages() const override { return !isWhole_; }  // what is done about them is told instead

private:
    bool isWhole_ = true;
    std::vector<RepairStep> steps_;
};

}  // namespace

const char kRepairHelp[] =
    "Usage: zephyr repair [OPTION...] IN OUT\n"
    "       zephyr repair --in-place [OPTION...] FILE...\n"
    "\n"
    "Writes to OUT a clean file of all that can be saved of the GIF file IN, and\n"
    "prints a line for each thing that it did. What is not damaged keeps its bytes; a\n"
    "file without damage is copied. Pictures keep what can be decoded of them, and\n"
    "index 0 where nothing can. Left out are bytes that belong to no block, images\n"
    "that can't be decoded at all with their control blocks, and extensions that the\n"
    "end of the file cuts off, but for texts.\n"
    "With --classic it reads and writes as the editor does by default, which keeps\n"
    "less, and prints nothing.\n";

int RunRepair(const Words& words) {
    Repair repair;
    return RunEdit({"repair", {}, {}, 0, 0}, words, &repair);
}

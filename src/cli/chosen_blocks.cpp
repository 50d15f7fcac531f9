#include "cli/chosen_blocks.h"

#include "cli/complaints.h"

std::string ChosenBlocks::Read(const Words& operands) {
    if (operands.size() != 3) return "give FILE, SELECTION and OUT";
    in_ = operands[0];
    out_ = operands[2];
    // A name that is no pattern is a name with a percent sign.
    if (!name_.Parse(out_).empty()) name_ = NumberedName();
    return blocks_.Parse(operands[1]);
}

int ChosenBlocks::WriteEach(
    const Options& options,
    const std::function<bool(LoadedFile& file, uint32_t index, const std::string& out)>& write) const {
    LoadedFile file;
    if (!file.Open(in_, options)) return kExitFailed;
    std::string why;
    const std::vector<uint32_t> blocks = blocks_.Find(file.list, &why);
    if (blocks.size() > 1 && !name_.HasNumber())
        why = "for " + std::to_string(blocks.size()) + " blocks give an OUT with %d in it, for their numbers";
    if (!why.empty()) {
        Complain(NameOfInput(in_), why);
        return kExitFailed;
    }
    for (uint32_t index : blocks)
        if (!write(file, index, OutFor(index))) return kExitFailed;
    return kExitDone;
}

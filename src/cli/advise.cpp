// zephyr advise: edits that make a file smaller, with their prices.
#include "size/advice.h"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <map>

#include "cli/commands.h"
#include "cli/complaints.h"
#include "cli/json.h"
#include "cli/loaded_file.h"
#include "cli/options.h"
#include "cli/printable.h"
#include "cli/shell_word.h"
#include "cli/size_table.h"
#include "cli/usage.h"
#include "size/optimise.h"

namespace {

std::string CommandOf(const Advice& advice, const std::string& path) {
    std::string command = "zephyr " + advice.verb + " " + ShellFile(path) + " OUT";
    for (const std::string* word : {&advice.blocks, &advice.value})
        if (!word->empty()) command += " " + *word;
    return command;
}

// Edits of one kind are those with the same command and field.
std::string KindOf(const Advice& advice) {
    return advice.verb + " " + advice.value.substr(0, advice.value.find('='));
}

void PrintEdit(const std::string& path, const Advice& edit) {
    const std::string loses = edit.loses.empty() ? "" : " (loses " + edit.loses + ")";
    printf("-%s %s: %s%s\n", WithThousands(edit.gain).c_str(), edit.gain == 1 ? "byte" : "bytes", edit.what.c_str(),
           loses.c_str());
    printf("    %s\n", Printable(CommandOf(edit, path)).c_str());
}

void PrintLines(const std::string& path, const std::vector<Advice>& advice) {
    std::map<std::string, size_t> told;
    size_t more = 0;
    for (const Advice& edit : advice) {
        if (++told[KindOf(edit)] <= kMostLinesAlike)
            PrintEdit(path, edit);
        else
            ++more;
    }
    if (more) printf("%zu more like these, which --json tells\n", more);
    if (advice.empty()) printf("%s: no edit makes it smaller\n", Printable(path).c_str());
}

void PrintJson(const std::string& path, const std::vector<Advice>& advice) {
    printf("{\"file\": %s, \"advice\": [", JsonText(path).c_str());
    for (const Advice& edit : advice)
        printf("%s{\"gain\": %llu, \"what\": %s, \"loses\": %s, \"command\": %s}", &edit == advice.data() ? "" : ",\n ",
               static_cast<unsigned long long>(edit.gain), JsonText(edit.what).c_str(), JsonText(edit.loses).c_str(),
               JsonText(CommandOf(edit, path)).c_str());
    puts("]}");
}

// What the search for the smallest document finds, among the edits by its gain.
bool AddOptimising(const LoadedFile& file, std::vector<Advice>* advice) {
    BlockList smaller;
    const OptimiseResult result = Optimise(file.list, file.report, {}, nullptr, &smaller);
    if (result == OptimiseResult::kNoMemory) return false;
    if (result != OptimiseResult::kSmaller) return true;
    const std::optional<uint64_t> before = WrittenBytes(file.list), after = WrittenBytes(smaller);
    if (!before || !after) return false;
    const Advice all = {*before - *after, "write all frames as small as they can be found", "", "optimise", "", ""};
    advice->insert(std::ranges::lower_bound(*advice, all.gain, std::ranges::greater(), &Advice::gain), all);
    return true;
}

}  // namespace

const char kAdviseHelp[] =
    "Usage: zephyr advise [--json] [--strict] FILE\n"
    "\n"
    "Tells what would make the GIF file FILE smaller and leave what browsers show as\n"
    "it is: images without interlacing, encoded anew, with the document's palette\n"
    "instead of an equal one, palettes without colours that nothing uses, and no\n"
    "comments, texts or blocks of other applications; and what \"zephyr optimise\"\n"
    "comes to. Each edit was tried: a line has the bytes by which the file gets\n"
    "smaller and what is lost, and below it stands the command that does it; of many\n"
    "alike the first ten are told. Edits of the same blocks do not add up. Delays,\n"
    "loops, colour profiles and damaged images are left alone.\n"
    "With --json, prints one JSON object instead: the name of the file, and all its\n"
    "advice, objects with gain, what, loses and command.\n"
    "With --strict it fails when FILE is damaged. There is no advice for --classic,\n"
    "which writes everything anew.\n";

int RunAdvise(const Words& words) {
    Options options(words, {"--json", "--strict"}, {});
    if (!options.Error().empty()) return WrongUsage("advise", options.Error());
    if (!options.IsWhole()) return WrongUsage("advise", "there is no advice for --classic, which writes all anew");
    if (options.Operands().size() != 1) return WrongUsage("advise", "give one FILE");
    const std::string& path = options.Operands()[0];
    LoadedFile file;
    if (!file.Open(path, options)) return kExitFailed;
    std::vector<Advice> advice;
    if (!FindAdvice(file.list, file.report, &advice) || !AddOptimising(file, &advice)) {
        Complain(NameOfInput(path), "not enough memory");
        return kExitFailed;
    }
    options.Has("--json") ? PrintJson(path, advice) : PrintLines(path, advice);
    return FlushOutput() ? kExitDone : kExitFailed;
}

// zephyr advise: edits that make a file smaller, with their prices.
#include "size/advice.h"

#include <cstdio>
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

namespace {

constexpr size_t kMostLikeIt = 10;  // lines of one kind of edit

std::string CommandOf(const Advice& advice, const std::string& path) {
    const std::string command = "zephyr " + advice.verb + " " + ShellFile(path) + " OUT " + advice.blocks;
    return advice.value.empty() ? command : command + " " + advice.value;
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
        if (++told[KindOf(edit)] <= kMostLikeIt)
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

}  // namespace

const char kAdviseHelp[] =
    "Usage: zephyr advise [--json] [--strict] FILE\n"
    "\n"
    "Tells what would make the GIF file FILE smaller and leave what browsers show as\n"
    "it is: images without interlacing, encoded anew, with the document's palette\n"
    "instead of an equal one, palettes without colours that nothing uses, and no\n"
    "comments, texts or blocks of other applications. Each edit was tried: a line has\n"
    "the bytes by which the file gets smaller and what is lost, and below it stands\n"
    "the command that does it; of many alike the first ten are told. Edits of the\n"
    "same blocks do not add up. Delays, loops, colour profiles and damaged images are\n"
    "left alone.\n"
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
    if (!FindAdvice(file.list, file.report, &advice)) {
        Complain(NameOfInput(path), "not enough memory");
        return kExitFailed;
    }
    options.Has("--json") ? PrintJson(path, advice) : PrintLines(path, advice);
    return FlushOutput() ? kExitDone : kExitFailed;
}

// zephyr check: what will surprise in players.
#include <cstdio>
#include <map>

#include "cli/commands.h"
#include "cli/complaints.h"
#include "cli/json.h"
#include "cli/options.h"
#include "cli/played_file.h"
#include "cli/printable.h"
#include "cli/shell_word.h"
#include "cli/usage.h"
#include "editing/findings.h"

namespace {

// The command as it is typed; empty when there is none.
std::string CommandOf(const std::string& path, const Mending& mend) {
    if (!mend.command) return "";
    return std::string("zephyr ") + mend.command + " " + ShellFile(path) + " OUT" +
           (mend.words.empty() ? "" : " " + mend.words);
}

std::string BlockWords(uint32_t index) {
    return "block " + std::to_string(index);
}

void PrintLines(const std::string& path, const std::vector<Finding>& findings) {
    std::map<std::string, size_t> told;
    for (const Finding& finding : findings) {
        if (++told[finding.check] > kMostLinesAlike) continue;
        const std::string where = finding.block < 0 ? "" : BlockWords(static_cast<uint32_t>(finding.block)) + ": ";
        printf("%s: %s%s\n", Printable(path).c_str(), where.c_str(), Printable(finding.what).c_str());
        if (finding.mend.command) printf("    %s\n", Printable(CommandOf(path, finding.mend)).c_str());
    }
    for (const auto& [check, count] : told)
        if (count > kMostLinesAlike)
            printf("%s: %s: %zu more like these, which --json tells\n", Printable(path).c_str(), check.c_str(),
                   count - kMostLinesAlike);
}

std::string JsonOf(const std::string& path, const Finding& finding) {
    std::string json = "{\"check\": " + JsonText(finding.check);
    if (finding.block >= 0) json += ", \"block\": " + std::to_string(finding.block);
    json += ", \"what\": " + JsonText(finding.what);
    if (finding.mend.command) json += ", \"mend\": " + JsonText(CommandOf(path, finding.mend));
    return json + "}";
}

void PrintJson(const std::string& path, bool isRead, const std::vector<Finding>& findings) {
    printf("{\"file\": %s, \"read\": %s, \"findings\": [", JsonText(path).c_str(), isRead ? "true" : "false");
    for (size_t i = 0; i < findings.size(); ++i) printf("%s%s", i ? ",\n " : "", JsonOf(path, findings[i]).c_str());
    fputs("]}", stdout);
}

int CheckFile(const std::string& path, const Options& options) {
    PlayedFile file;
    std::vector<Finding> findings;
    file.tellsDamages = false;  // they are findings
    bool isRead = file.OpenAnimation(path, options);
    if (isRead && !FindSurprises(file.animation, file.report, BlockWords, {}, &findings)) {
        Complain(path, "not enough memory");
        isRead = false;
    }
    if (options.Has("--json"))
        PrintJson(path, isRead, findings);
    else
        PrintLines(path, findings);
    if (!isRead) return kExitTrouble;
    return findings.empty() ? kExitNothing : kExitFound;
}

}  // namespace

const char kCheckHelp[] =
    "Usage: zephyr check [--json] [--classic] FILE...\n"
    "\n"
    "Tells what of the GIF files FILE will surprise in players: delays that browsers\n"
    "change, images beyond the screen, disposals and loop counts that players take\n"
    "differently, palettes that nobody needs, texts that browsers do not show, blocks\n"
    "of other programs, damage, and flashes that can cause seizures (more than three\n"
    "in a second over more than a quarter of the picture, or red ones: WCAG 2.3.1).\n"
    "A line tells the block, what happens where, and below it stands the command that\n"
    "mends it, if there is one.\n"
    "With --json, prints a list of objects instead, one for each FILE: its name as\n"
    "file, whether it could be read, and its findings, all of them.\n"
    "With --classic it reads as the editor does by default.\n"
    "The exit status is 0 when nothing was found, 1 when something was, and 2 when a\n"
    "FILE could not be read.\n";

int RunCheck(const Words& words) {
    Options options(words, {"--json"}, {});
    if (!options.Error().empty()) return WrongUsage("check", options.Error());
    if (options.Operands().empty()) return WrongUsage("check", "give at least one FILE");
    int status = kExitNothing;
    const char* separator = "";
    const bool isJson = options.Has("--json");
    if (isJson) putchar('[');
    for (const std::string& path : options.Operands()) {
        if (isJson) fputs(separator, stdout);
        separator = ",\n";
        status = std::max(status, CheckFile(path, options));
    }
    if (isJson) puts("]");
    return FlushOutput() ? status : kExitTrouble;
}

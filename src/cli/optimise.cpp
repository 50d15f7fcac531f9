// zephyr optimise: the smallest file that plays the same.
#include "size/optimise.h"

#include <algorithm>
#include <cstdio>

#include "animation/animation.h"
#include "cli/commands.h"
#include "cli/complaints.h"
#include "cli/loaded_file.h"
#include "cli/options.h"
#include "cli/output_file.h"
#include "cli/progress.h"
#include "cli/usage.h"
#include "gif/descriptor.h"
#include "gif/gif_writer.h"

namespace {

constexpr unsigned kMostJobs = 256;

struct EffortName {
    const char* name;
    Effort effort;
};
constexpr EffortName kEfforts[] = {{"fast", Effort::kFast}, {"normal", Effort::kNormal}, {"max", Effort::kMax}};

// Kinds of blocks that --strip takes out. What counts repeats stays, whatever its kind.
struct StripName {
    const char* name;
    uint16_t kind;
};
constexpr StripName kStripped[] = {{"comments", kCommentBlock},
                                   {"applications", kApplicationBlock},
                                   {"names", kBlockNamesBlock},
                                   {"texts", kPlainTextBlock},
                                   {"unknown", kUnknownBlock}};

struct Task {
    OptimiseOptions options;
    std::vector<uint16_t> stripped;  // kinds
};

std::string ReadEffort(const Options& options, Task* task) {
    const std::string* name = options.Value("--effort");
    if (!name) return "";
    const auto* found = std::ranges::find_if(kEfforts, [name](const EffortName& e) { return *name == e.name; });
    if (found == std::end(kEfforts)) return "--effort is fast, normal or max, not " + *name;
    task->options.effort = found->effort;
    return "";
}

std::string ReadStrip(const Options& options, Task* task) {
    const std::string* names = options.Value("--strip");
    for (size_t at = 0; names && at <= names->size();) {
        const size_t end = std::min(names->find(',', at), names->size());
        const std::string name = names->substr(at, end - at);
        const auto* found = std::ranges::find_if(kStripped, [&name](const StripName& s) { return name == s.name; });
        if (found == std::end(kStripped))
            return "--strip takes comments, applications, names, texts and unknown, not " + name;
        task->stripped.push_back(found->kind);
        at = end + 1;
    }
    return "";
}

std::string ReadJobs(const Options& options, Task* task) {
    const std::string* text = options.Value("--jobs");
    unsigned jobs = 0;
    if (!text) return "";
    if (!ParseNumber(*text, kMostJobs, &jobs) || jobs == 0)
        return "--jobs is a number of 1 to " + std::to_string(kMostJobs) + ", not " + *text;
    task->options.threads = jobs;
    return "";
}

// What is wrong with the options, or an empty text.
std::string ReadTask(const Options& options, Task* task) {
    task->options.keepFrames = options.Has("--keep-frames");
    for (auto* read : {ReadEffort, ReadStrip, ReadJobs})
        if (std::string wrong = read(options, task); !wrong.empty()) return wrong;
    return options.IsWhole() ? "" : "--classic keeps no document as it plays";
}

void Strip(const Task& task, BlockList* list) {
    std::vector<uint32_t> gone;
    for (uint32_t index = 0; index < list->count; ++index) {
        const Block& block = list->blocks[index];
        if (RepeatsOf(block) == Animation::kNoLoop &&
            std::ranges::find(task.stripped, block.kind) != task.stripped.end())
            gone.push_back(index);
    }
    RemoveBlocks(list, gone);
}

class ShownProgress : public OptimiseWatch {
public:
    void OnFrame(size_t done, size_t count) override { progress_.OnFrame(done, count); }

private:
    Progress progress_;
};

OptimiseResult OptimiseFile(const LoadedFile& file, const Task& task, BlockList* smaller) {
    ShownProgress progress;
    return Optimise(file.list, file.report, task.options, &progress, smaller);
}

void PrintSizes(const std::string& path, uint64_t before, uint64_t after) {
    const double share = before ? 100.0 * (static_cast<double>(after) / static_cast<double>(before) - 1) : 0;
    printf("%s: %llu -> %llu bytes (%+.1f %%)\n", path.c_str(), static_cast<unsigned long long>(before),
           static_cast<unsigned long long>(after), share);
}

int Run(const std::string& in, const std::string& out, const Options& options, const Task& task) {
    LoadedFile file;
    if (!file.Open(in, options)) return kExitFailed;
    const std::optional<uint64_t> before = WrittenBytes(file.list);
    Strip(task, &file.list);
    BlockList smaller;
    const OptimiseResult result = OptimiseFile(file, task, &smaller);
    const BlockList& written = result == OptimiseResult::kSmaller ? smaller : file.list;
    const std::optional<uint64_t> after = WrittenBytes(written);
    if (result == OptimiseResult::kNoMemory || !before || !after) {
        Complain(in, "not enough memory");
        return kExitFailed;
    }
    if (result == OptimiseResult::kLeftAlone)
        Complain(in, "note: its pictures are left alone: they are damaged, or players do not agree about them");
    if (!WriteOutputFile(out, [&written](File& to) { return WriteWholeGif(written, to, nullptr); })) return kExitFailed;
    PrintSizes(out, *before, *after);
    return FlushOutput() ? kExitDone : kExitFailed;
}

}  // namespace

const char kOptimiseHelp[] =
    "Usage: zephyr optimise [--effort fast|normal|max] [--keep-frames]\n"
    "                       [--strip KIND,...] [--jobs N] [--strict] IN OUT\n"
    "\n"
    "Writes to OUT the smallest file that it finds to play just as the GIF file IN,\n"
    "and prints both sizes. Both are composed and compared before anything is\n"
    "written: every canvas, every hundredth of a second. OUT is never larger than IN;\n"
    "where nothing is gained it is IN. Comments and other applications' blocks stay.\n"
    "Frames that show the same become one, unless --keep-frames is given.\n"
    "--effort is how long it searches: fast, normal (the default) or max.\n"
    "--strip takes blocks out: comments, applications (but for loops), names, texts\n"
    "and unknown, with commas between them.\n"
    "--jobs is how many processors work; all of them unless given. The file is the\n"
    "same with any number.\n"
    "What is damaged keeps its bytes, and with --strict is a failure.\n";

int RunOptimise(const Words& words) {
    Options options(words, {"--keep-frames", "--strict"}, {"--effort", "--strip", "--jobs"});
    if (!options.Error().empty()) return WrongUsage("optimise", options.Error());
    Task task;
    if (std::string wrong = ReadTask(options, &task); !wrong.empty()) return WrongUsage("optimise", wrong);
    if (options.Operands().size() != 2) return WrongUsage("optimise", "give IN and OUT");
    return Run(options.Operands()[0], options.Operands()[1], options, task);
}

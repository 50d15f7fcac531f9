// zephyr optimise: the smallest file that plays the same.
#include "size/optimise.h"
#include "size/strip.h"

#include <algorithm>
#include <cstdio>

#include "animation/animation.h"
#include "cli/commands.h"
#include "cli/complaints.h"
#include "cli/edit_command.h"
#include "cli/names.h"
#include "cli/output_file.h"
#include "cli/printable.h"
#include "cli/progress.h"
#include "gif/descriptor.h"
#include "gif/gif_writer.h"
#include "size/colour_distance.h"

namespace {

constexpr unsigned kMostJobs = 256;

struct EffortName {
    const char* name;
    Effort effort;
};
constexpr EffortName kEfforts[] = {{"fast", Effort::kFast}, {"normal", Effort::kNormal}, {"max", Effort::kMax}};

struct Task {
    OptimiseOptions options;
    uint64_t most = 0;               // bytes, of --to; 0 without
    std::vector<uint16_t> stripped;  // kinds
    std::optional<Identity> names;   // of the comment that is added
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
        const auto* found =
            std::ranges::find_if(kStrippedKinds, [&name](const StrippedKind& s) { return name == s.name; });
        if (found == std::end(kStrippedKinds))
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

std::string ReadLossy(const Options& options, Task* task) {
    const std::string* text = options.Value("--lossy");
    unsigned most = 0;
    if (!text) return "";
    if (!ParseNumber(*text, kFarthest, &most))
        return "--lossy is a number of 0 to " + std::to_string(kFarthest) + ", not " + *text;
    task->options.lossy = static_cast<int>(most);
    return "";
}

// A number of bytes, with K or M behind it of 1024 or 1024 * 1024.
std::string ReadTo(const Options& options, Task* task) {
    const std::string* text = options.Value("--to");
    if (!text) return "";
    std::string digits = *text;
    unsigned shift = 0, number = 0;
    if (!digits.empty() && (digits.back() == 'K' || digits.back() == 'M')) {
        shift = digits.back() == 'K' ? 10 : 20;
        digits.pop_back();
    }
    if (!ParseNumber(digits, UINT32_MAX, &number) || number == 0)
        return "--to is a number of bytes, as 300000, 256K or 2M, not " + *text;
    if (options.Has("--lossy")) return "--to finds what --lossy would say: give one of them";
    task->most = uint64_t{number} << shift;
    return "";
}

// What is wrong with the options, or an empty text.
std::string ReadTask(const Options& options, Task* task) {
    task->options.keepFrames = options.Has("--keep-frames");
    if (NamesAreGiven(options)) task->names = NamesOf(options);
    for (auto* read : {ReadEffort, ReadStrip, ReadJobs, ReadLossy, ReadTo})
        if (std::string wrong = read(options, task); !wrong.empty()) return wrong;
    return options.IsWhole() ? "" : "--classic keeps no document as it plays";
}

class ShownProgress : public OptimiseWatch {
public:
    void OnPlanned(size_t done, size_t count) override { progress_.OnFrame(done, count, "planning frame"); }
    void OnFrame(size_t done, size_t count) override { progress_.OnFrame(done, count); }

private:
    Progress progress_;
};

// What came out of a file.
struct Made {
    OptimiseResult result = OptimiseResult::kNothingGained;
    BlockList smaller;  // of kSmaller
    OptimiseNotes notes;
    int lossy = 0;       // as it was made
    uint64_t bytes = 0;  // of what is to be written
};

bool Make(const LoadedFile& file, const Task& task, decltype(Optimise)* optimise, int lossy, Made* made) {
    ShownProgress progress;
    OptimiseOptions options = task.options;
    options.lossy = lossy;
    *made = Made();
    made->lossy = lossy;
    made->result = optimise(file.list, file.report, options, &progress, &made->smaller, &made->notes);
    const bool isSmaller = made->result == OptimiseResult::kSmaller;
    const Identity* names = task.names ? &*task.names : nullptr;
    const std::optional<uint64_t> bytes = WrittenBytes(isSmaller ? made->smaller : file.list, names);
    made->bytes = bytes.value_or(0);
    return bytes && made->result != OptimiseResult::kNoMemory;
}

// Keeps what comes of a loss when that fits, or is the smallest so far.
bool TryLoss(const LoadedFile& file, const Task& task, int lossy, Made* best) {
    Made tried;
    if (!Make(file, task, Optimise, lossy, &tried)) return false;
    if (tried.bytes <= task.most || tried.bytes < best->bytes) *best = std::move(tried);
    return true;
}

// Looks for the least loss that fits; what does not fit with the greatest is left as large as it is. More loss nearly
// always takes fewer bytes, so that halving finds it. False when memory runs out.
bool MakeFitting(const LoadedFile& file, const Task& task, Made* made) {
    if (!Make(file, task, Optimise, 0, made)) return false;
    if (made->bytes <= task.most || made->result == OptimiseResult::kLeftAlone) return true;
    int tooLittle = 0, enough = 1;
    for (;; tooLittle = enough, enough = std::min(2 * enough, kFarthest)) {
        if (!TryLoss(file, task, enough, made)) return false;
        if (made->bytes <= task.most || enough == kFarthest) break;
    }
    while (enough - tooLittle > 1) {
        const int middle = (tooLittle + enough) / 2;
        if (!TryLoss(file, task, middle, made)) return false;
        (made->lossy == middle && made->bytes <= task.most ? enough : tooLittle) = middle;
    }
    return true;
}

void PrintSizes(FILE* out, const std::string& path, uint64_t before, const Made& made) {
    const double share = before ? 100.0 * (static_cast<double>(made.bytes) / static_cast<double>(before) - 1) : 0;
    fprintf(out, "%s: %llu -> %llu bytes (%+.1f %%)", Printable(path).c_str(), static_cast<unsigned long long>(before),
            static_cast<unsigned long long>(made.bytes), share);
    if (made.lossy)
        fprintf(out, ", lossy %d: colours up to %d of 255 off, %.2f on average", made.lossy, made.notes.loss.largest,
                made.notes.loss.mean);
    fputs("\n", out);
}

class Optimising : public Edit {
public:
    std::string Read(const Options& options, const Words&) override { return ReadTask(options, &task_); }

    EditAnswer Change(LoadedFile* file) override {
        const std::optional<uint64_t> before = WrittenBytes(file->list);
        StripBlocks(task_.stripped, &file->list);
        if (!before || !(task_.most ? MakeFitting(*file, task_, &made_)
                                    : Make(*file, task_, OptimiseWithin, task_.options.lossy, &made_)))
            return EditOutcome::OutOfMemory();
        before_ = *before;
        if (task_.most && made_.bytes > task_.most)
            return EditOutcome::Refused("does not fit: " + std::to_string(made_.bytes) +
                                        " bytes are the least that was found");
        EditAnswer answer;
        if (made_.result == OptimiseResult::kLeftAlone)
            answer.notes.push_back(std::string("its pictures are left alone, because ") + made_.notes.leftAlone);
        if (made_.result == OptimiseResult::kSmaller) file->list = std::move(made_.smaller);
        return answer;
    }

    void Report(const LoadedFile&, const std::string&, const std::string& out) override {
        PrintSizes(IsStandardOutput(out) ? stderr : stdout, NameOfOutput(out), before_, made_);
    }

private:
    Task task_;
    Made made_;
    uint64_t before_ = 0;
};

}  // namespace

const char kOptimiseHelp[] =
    "Usage: zephyr optimise [OPTION...] IN OUT\n"
    "       zephyr optimise --in-place [OPTION...] FILE...\n"
    "\n"
    "Writes to OUT the smallest file that it finds to play just as the GIF file IN,\n"
    "and prints both sizes. Both are composed and compared before anything is\n"
    "written: every canvas, every hundredth of a second. OUT is never larger than IN,\n"
    "but for a comment that --owner adds; where nothing is gained it is IN. Comments\n"
    "and other applications' blocks stay. Frames that show the same become one, unless\n"
    "--keep-frames is given. What is damaged keeps its bytes. With --fit-screen the\n"
    "screen is that of the images as they are in IN; --classic is refused.\n"
    "\n"
    "  --effort fast|normal|max\n"
    "             how long it searches; normal unless given\n"
    "  --keep-frames\n"
    "             as many frames as before, with their delays\n"
    "  --strip KIND,...\n"
    "             take blocks out: comments, applications (but for loops), names, texts\n"
    "             and unknown\n"
    "  --lossy N  let colours change: red, green and blue of no pixel in no frame are\n"
    "             more than N of 255 off, which is checked as all is; the largest and\n"
    "             the mean difference are printed\n"
    "  --to BYTES the least such change that fits into 300000, 256K or 2M; a failure\n"
    "             when nothing does\n"
    "  --jobs N   so many processors work, all of them unless given; the file is the\n"
    "             same with any number\n";

int RunOptimise(const Words& words) {
    Optimising optimising;
    return RunEdit(
        {"optimise", {"--keep-frames"}, {"--effort", "--strip", "--jobs", "--lossy", "--to"}, 0, 0, "", true}, words,
        &optimising);
}

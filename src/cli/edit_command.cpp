#include "cli/edit_command.h"

#include <algorithm>
#include <cstdio>
#include <new>

#include "cli/complaints.h"
#include "cli/names.h"
#include "cli/printable.h"
#include "cli/save_document.h"
#include "cli/usage.h"
#include "gif/logical_screen.h"

namespace {

constexpr char kInPlace[] = "--in-place";
constexpr char kDryRun[] = "--dry-run";
constexpr char kFitScreen[] = "--fit-screen";

Options::Names With(Options::Names own, const Options::Names& more) {
    own.insert(own.end(), more.begin(), more.end());
    return own;
}

Options ReadOptions(const EditForm& form, const Words& words) {
    return {words, With(form.flags, {kInPlace, kDryRun, kFitScreen, "--strict"}),
            With(form.values, {"--owner", "--organisation"})};
}

struct Paths {
    std::string in, out;
};

// The words behind the options: what the command is given, and the files that it works on.
struct Given {
    Words operands;
    std::vector<Paths> files;
};

std::string Listed(const std::string& files, const EditForm& form) {
    return "give " + files + form.wants;
}

// Returns what is wrong with the words, or an empty text.
std::string TakeFilesInPlace(const EditForm& form, const Options& options, Given* given) {
    const Words& words = options.Operands();
    // Where there is nothing else to give, all words are files.
    const size_t own = options.IsEnded() || form.mostOperands > 0 ? options.OperandsBeforeEnd() : 0;
    if (own == words.size()) return Listed("the files behind \"--\"", form);
    given->operands.assign(words.begin(), words.begin() + static_cast<std::ptrdiff_t>(own));
    for (size_t i = own; i < words.size(); ++i) {
        if (words[i] == kStandardStream) return "standard input can't be changed in place";
        given->files.push_back({words[i], words[i]});
    }
    return given->operands.size() < form.leastOperands ? Listed("the files", form) : "";
}

std::string TakeInAndOut(const EditForm& form, const Options& options, Given* given) {
    const Words& words = options.Operands();
    if (words.size() < 2 || words.size() - 2 > form.mostOperands)
        return Listed(form.leastOperands ? "IN, OUT" : "IN and OUT", form);
    if (words.size() - 2 < form.leastOperands) return Listed("IN, OUT", form);
    given->operands.assign(words.begin() + 2, words.end());
    given->files.push_back({words[0], words[1]});
    return "";
}

std::string ReadWords(const EditForm& form, const Options& options, Given* given, Edit* edit) {
    if (!options.Error().empty()) return options.Error();
    if (std::string wrong = WrongNames(options); !wrong.empty()) return wrong;
    auto take = options.Has(kInPlace) ? TakeFilesInPlace : TakeInAndOut;
    if (std::string wrong = take(form, options, given); !wrong.empty()) return wrong;
    if (given->operands.size() > form.mostOperands) return Listed("the files behind \"--\"", form);
    if (std::string wrong = edit->Read(options, given->operands); !wrong.empty()) return wrong;
    if (edit->ReadsStandardInput() && (given->files.size() > 1 || given->files[0].in == kStandardStream))
        return "standard input can be read only once";
    return "";
}

int Refuse(const EditForm& form, const std::string& in, const EditAnswer& answer) {
    if (answer.wrongWords) return WrongUsage(form.command, answer.refusal);
    Complain(answer.file.empty() ? in : answer.file, answer.refusal);
    return kExitFailed;
}

int ShowChanges(const BlockList& before, BlockList* list, const std::string& out, const Options& options,
                const TouchedBlocks& touched) {
    if (options.Has(kInPlace)) printf("%s:\n", Printable(out).c_str());
    return PrintChanges(before, list, out, options, touched);
}

int EditFile(const EditForm& form, const Options& options, const Paths& paths, Edit* edit) {
    LoadedFile file;
    file.tellsDamages = edit->TellsDamages();
    if (!file.Open(paths.in, options)) return kExitFailed;
    BlockList before;
    if (options.Has(kDryRun) && !CopyBlockList(file.list, &before)) throw std::bad_alloc();
    const std::string in = NameOfInput(paths.in);
    const bool isFitted = form.fitsFirst && options.Has(kFitScreen);
    if (isFitted && !FitLogicalScreen(&file.list)) throw std::bad_alloc();
    const Options saving = isFitted ? options.Without(kFitScreen) : options;
    EditAnswer answer = edit->Change(&file);
    if (answer.isTold) return kExitFailed;
    if (!answer) return Refuse(form, in, answer);
    for (const std::string& note : answer.notes) Complain(in, "note: " + note);
    const int status = options.Has(kDryRun) ? ShowChanges(before, &file.list, paths.out, saving, answer.touched)
                                            : SaveDocument(&file.list, paths.out, saving, answer.touched);
    if (status != kExitDone) return status;
    edit->Report(file, in, paths.out);
    return FlushOutput() ? kExitDone : kExitFailed;
}

// A file among several: whatever comes of it, it is told of by its name, and others follow.
bool EditOneOfSeveral(const EditForm& form, const Options& options, const Paths& paths, Edit* edit) {
    try {
        return EditFile(form, options, paths, edit) == kExitDone;
    } catch (const std::bad_alloc&) {
        Complain(paths.in, "not enough memory");
        return false;
    }
}

}  // namespace

void Edit::Report(const LoadedFile&, const std::string&, const std::string&) {}

int RunEdit(const EditForm& form, const Words& words, Edit* edit) {
    const Options options = ReadOptions(form, words);
    Given given;
    if (std::string wrong = ReadWords(form, options, &given, edit); !wrong.empty())
        return WrongUsage(form.command, wrong);
    if (given.files.size() == 1) return EditFile(form, options, given.files[0], edit);
    bool allDone = true;
    for (const Paths& paths : given.files) allDone = EditOneOfSeveral(form, options, paths, edit) && allDone;
    return allDone ? kExitDone : kExitFailed;
}

std::string ReadSelection(std::span<const std::string> words, const char* otherwise, Selection* selection) {
    std::string joined;
    for (const std::string& word : words) joined += (&word == words.data() ? "" : ",") + word;
    return selection->Parse(words.empty() ? otherwise : joined);
}

std::string ReadPlace(const Options& options, Selection* place) {
    const std::string* at = options.Value("--at");
    return at ? place->Parse(*at) : "give --at and the number of a block";
}

bool FindPlace(const Selection& place, const BlockList& list, uint32_t* index, std::string* why) {
    const std::vector<uint32_t> found = place.Find(list, why);
    if (found.empty()) return false;
    *index = *std::ranges::max_element(found);
    return true;
}

const char kSelectionHelp[] =
    "\n"
    "A SELECTION is a number (7, last, last-2), a range of them (3-9, 3-last), a kind\n"
    "(comment is all comments, image:0 the first image, image:1-last all others), or\n"
    "frames (frame:4, frame:3-9; frame is all): images with the controls before them.\n"
    "Several come with commas. The numbers are those that \"zephyr list\" prints. The\n"
    "kinds: header, image, control, plaintext, application, comment, loop, names,\n"
    "unknown.\n";

const char kEditHelp[] =
    "\n"
    "All commands that change documents take these options, and \"-\" as IN and OUT for\n"
    "standard input and output. IN and OUT may be the same file; it is replaced only\n"
    "when all is written.\n"
    "\n"
    "  --in-place change each of the FILEs behind \"--\"; one that can't be changed is\n"
    "             told of and stays as it is, the others follow, and the exit status\n"
    "             is 1 then\n"
    "  --dry-run  write nothing, and print what would change as \"zephyr diff\" does\n"
    "  --fit-screen\n"
    "             set the logical screen to the right and bottom edge of the images\n"
    "  --owner NAME, --organisation NAME\n"
    "             add a file-identity comment with these names; one that is not\n"
    "             given is that which Windows is registered to, elsewhere empty\n"
    "  --strict   fail, and write nothing, when IN is damaged; with --classic, when\n"
    "             its load ended before the trailer\n"
    "  --classic  read and write as the editor does by default: what is not\n"
    "             understood is dropped, every block is written anew, the screen is\n"
    "             fitted, and the comment is always there\n";

#include "cli/save_document.h"

#include <cstdio>
#include <new>

#include "cli/complaints.h"
#include "cli/names.h"
#include "cli/output_file.h"
#include "cli/printed_differences.h"
#include "gif/gif_reader.h"
#include "gif/gif_writer.h"
#include "gif/logical_screen.h"

namespace {

bool FitsScreen(const BlockList& list, const Options& options) {
    return !options.IsWhole() || (list.flags & kMadeHere) || options.Has("--fit-screen");
}

bool Write(const BlockList& list, File& file, const Options& options) {
    const Identity names = NamesOf(options);
    if (options.IsWhole()) return WriteWholeGif(list, file, NamesAreGiven(options) ? &names : nullptr);
    return WriteGif(list, file, names);
}

// What saving does to the document itself. False, with the reason on standard error, when memory runs out.
bool Prepare(BlockList* list, const std::string& path, const Options& options) {
    if (FitsScreen(*list, options) && !FitLogicalScreen(list)) {
        Complain(path, "can't be written: not enough memory");
        return false;
    }
    if (options.IsWhole() && NamesAreGiven(options)) SignForExtensions(list);  // for the comment that has the names
    return true;
}

void Warn(const BlockList& list, const std::string& path, const Options& options, const TouchedBlocks& touched) {
    WarnOfLosses(list, NameOfOutput(path), options.DocumentManner());
    if (!FitsScreen(list, options)) WarnOfImagesBeyondScreen(list, NameOfOutput(path), touched);
}

}  // namespace

int SaveDocument(BlockList* list, const std::string& path, const Options& options, const TouchedBlocks& touched) {
    if (!Prepare(list, path, options)) return kExitFailed;
    if (!WriteOutputFile(path, [&](File& file) { return Write(*list, file, options); })) return kExitFailed;
    Warn(*list, path, options, touched);
    return kExitDone;
}

int PrintChanges(const BlockList& before, BlockList* list, const std::string& path, const Options& options,
                 const TouchedBlocks& touched) {
    if (!Prepare(list, path, options)) return kExitFailed;
    File written, read;
    BlockList after;
    DocumentDifferences differences;
    if (!written.CreateMemory() || !Write(*list, written, options) || !CreateBlockList(&after)) throw std::bad_alloc();
    read.OpenMemory(written.Written().data(), written.Written().size());
    if (ReadGif(&after, read, nullptr, options.DocumentManner()) != kReadDone) throw std::bad_alloc();
    if (!CompareDocuments(before, after, &differences)) throw std::bad_alloc();
    PrintLines(differences, before, after);
    if (differences.AreNone()) puts("nothing would change");
    Warn(*list, path, options, touched);
    return kExitDone;
}

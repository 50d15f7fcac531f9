#include "cli/save_document.h"

#include "cli/complaints.h"
#include "cli/names.h"
#include "cli/output_file.h"
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

}  // namespace

int SaveDocument(BlockList* list, const std::string& path, const Options& options, const TouchedBlocks& touched) {
    const bool fits = FitsScreen(*list, options);
    if (fits && !FitLogicalScreen(list)) {
        Complain(path, "can't be written: not enough memory");
        return kExitFailed;
    }
    if (options.IsWhole() && NamesAreGiven(options)) SignForExtensions(list);  // for the comment that has the names
    if (!WriteOutputFile(path, [&](File& file) { return Write(*list, file, options); })) return kExitFailed;
    WarnOfLosses(*list, path, options.DocumentManner());
    if (!fits) WarnOfImagesBeyondScreen(*list, path, touched);
    return kExitDone;
}

#include "cli/save_document.h"

#include "cli/complaints.h"
#include "cli/output_file.h"
#include "gif/gif_writer.h"
#include "gif/logical_screen.h"
#include "platform/identity.h"
#include "platform/text_encoding.h"

namespace {

std::string NameOf(const Options& options, const char* option) {
    const std::string* name = options.Value(option);
    return name ? Windows1252FromUtf8(*name) : std::string();
}

}  // namespace

int SaveDocument(BlockList* list, const std::string& path, const Options& options) {
    SetUserIdentity(NameOf(options, "--owner").c_str(), NameOf(options, "--organisation").c_str());
    if (!FitLogicalScreen(list)) {
        Complain(path, "can't be written: not enough memory");
        return kExitFailed;
    }
    bool written = WriteOutputFile(path, [list](File& file) { return WriteGif(*list, file); });
    return written ? kExitDone : kExitFailed;
}

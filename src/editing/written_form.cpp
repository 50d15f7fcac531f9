#include "editing/written_form.h"

#include "gif/gif_writer.h"

bool ReadWrittenForm(const BlockList& list, BlockList* back, ReadReport* report) {
    File written, read;
    if (!written.CreateMemory() || !WriteWholeGif(list, written, nullptr) || written.HasFailed()) return false;
    read.OpenMemory(written.Written().data(), written.Written().size());
    return CreateBlockList(back) && ReadGif(back, read, report, Manner::kWhole) == kReadDone;
}

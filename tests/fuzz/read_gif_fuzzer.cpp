// Any bytes as a GIF file: the reader must not crash, leak or read what is not there.
#include "gif/gif_reader.h"
#include "tests/fuzz/document_check.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    File file;
    file.OpenMemory(data, size);
    BlockList list;
    if (!CreateBlockList(&list)) return 0;
    ReadGif(&list, file);
    CheckDocument(list);
    return 0;
}

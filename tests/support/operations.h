// What tests of operations on documents share.
#pragma once

#include "gif/source_bytes.h"
#include "tests/support/test_blocks.h"

inline BlockList CopyOf(const BlockList& list) {
    BlockList copy;
    EXPECT_TRUE(CopyBlockList(list, &copy));
    return copy;
}

inline Bytes SavedBytes(const BlockList& list) {
    File file;
    EXPECT_TRUE(file.CreateMemory());
    EXPECT_TRUE(WriteWholeGif(list, file, nullptr));
    return {file.Written().begin(), file.Written().end()};
}

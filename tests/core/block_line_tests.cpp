#include "gif/block_line.h"

#include <gtest/gtest.h>

#include <cstring>

#include "gif/descriptor.h"
#include "tests/support/test_blocks.h"

namespace {

void ExpectLine(const Block& block, const std::string& line) {
    char shown[kBlockLineBytes];
    memset(shown, 'x', sizeof shown);
    FormatBlockLine(shown, block);
    EXPECT_EQ(shown, line);
    char kind[kBlockLineBytes];
    FormatKindName(kind, block.kind);
    EXPECT_EQ(kind, line.substr(0, line.find(kBlockLineSeparator)));
}

Block OfKind(uint16_t kind) {
    Block block = {};
    block.kind = kind;
    return block;
}

}  // namespace

TEST(BlockLine, OfEachKind) {
    Block header = OfKind(kHeaderBlock);
    memcpy(header.descriptor, "GIF87a", 6);
    PutHeaderFields(&header, {320, 200, 0, 0, 0});
    ExpectLine(header, "HEADER\xFE GIF87a Screen (320 x 200)");

    Block control = OfKind(kControlBlock);
    PutControlFields(&control, {0, 65535, 0});
    ExpectLine(control, "CONTROL\xFE (delay 65535 1/100ths of a second)");

    Block loop = OfKind(kLoopBlock);
    PutLoopIterations(&loop, 300);
    ExpectLine(loop, "LOOP\xFE (300 iterations)");

    Block application = OfKind(kApplicationBlock);
    memcpy(application.descriptor, "\x0BXMP DataXMP", 12);
    ExpectLine(application, "APPLICATION-DEFINED\xFE (Type: XMP Data)");

    ExpectLine(OfKind(kEmptyBlock), "EMPTY BLOCK [ Internal error ]");
    ExpectLine(OfKind(kBlockNamesBlock), "BLOCK NAMES");
    ExpectLine(OfKind(kUnknownBlock), "UNKNOWN TYPE");
    ExpectLine(OfKind(4711), "UNKNOWN TYPE");
}

TEST(BlockLine, TextsShow32Characters) {
    OwnedBlock comment(MakeText(kCommentBlock, "\r\n\r\nHello\r\nWorld"));
    ExpectLine(comment, "COMMENT\xFE Hello");
    OwnedBlock plain(MakeText(kPlainTextBlock, std::string(40, '%')));
    ExpectLine(plain, "PLAIN TEXT\xFE " + std::string(32, '%'));
    ExpectLine(OfKind(kCommentBlock), "COMMENT\xFE ");
}

TEST(BlockLine, Images) {
    OwnedBlock image;
    image.kind = kImageBlock;
    PutImageFields(&image, {0, 0, 100, 50, 7});
    ExpectLine(image, "IMAGE\xFE 100 x 50, 256 colours");
    ASSERT_TRUE(SetBlockName("logo", &image));
    ExpectLine(image, "IMAGE\xFE logo 100 x 50, 256 colours");
    PutImageFields(&image, {0, 0, 65535, 65535, 0});
    std::string longest(260, 'n');
    ASSERT_TRUE(SetBlockName(longest.c_str(), &image));
    ExpectLine(image, "IMAGE\xFE " + longest + " 65535 x 65535, 2 colours");
    ASSERT_TRUE(SetBlockName((longest + "n").c_str(), &image));
    ExpectLine(image, "IMAGE\xFE 65535 x 65535, 2 colours");
}

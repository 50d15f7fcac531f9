#include "gif/block_line.h"

#include <cstring>

#include "tests/support/test_blocks.h"

namespace {

void ExpectLine(const Block& block, const std::string& line) {
    EXPECT_EQ(FormatBlockLine(block), line);
    EXPECT_EQ(FormatKindName(block.kind), line.substr(0, line.find(kBlockLineSeparator)));
}

void ExpectLine(uint16_t kind, std::string_view descriptor, const std::string& line) {
    Block block = OfKind(kind);
    memcpy(block.descriptor, descriptor.data(), descriptor.size());
    ExpectLine(block, line);
}

}  // namespace

TEST(BlockLine, OfEachKind) {
    ExpectLine(kEmptyBlock, "", "EMPTY BLOCK [ Internal error ]");
    ExpectLine(kHeaderBlock, "GIF87a\x40\x01\xC8", "HEADER\xFE GIF87a Screen (320 x 200)");
    ExpectLine(kControlBlock, "\x04\x01\xFF\xFF", "CONTROL\xFE (delay 65535 1/100ths of a second)");
    ExpectLine(kApplicationBlock, "\x0BXMP DataXMP", "APPLICATION-DEFINED\xFE (Type: XMP Data)");
    ExpectLine(kLoopBlock, "\x0BNETSCAPE2.0\x03\x01\x2C\x01", "LOOP\xFE (300 iterations)");
    ExpectLine(kCommentBlock, "", "COMMENT\xFE ");
    ExpectLine(kBlockNamesBlock, "", "BLOCK NAMES");
    ExpectLine(kUnknownBlock, "", "UNKNOWN TYPE");
    ExpectLine(4711, "", "UNKNOWN TYPE");
    ExpectLine(MakeText(kPlainTextBlock, "\r\n" + std::string(40, '%')), "PLAIN TEXT\xFE " + std::string(32, '%'));
}

TEST(BlockLine, Images) {
    Block image = OfKind(kImageBlock);
    PutImageFields(&image, {0, 0, 65535, 50, 7});
    ExpectLine(image, "IMAGE\xFE 65535 x 50, 256 colours");
    std::string longest(260, 'n');
    ASSERT_TRUE(SetBlockName(longest, &image));
    ExpectLine(image, "IMAGE\xFE " + longest + " 65535 x 50, 256 colours");
    ASSERT_TRUE(SetBlockName(longest + "n", &image));
    ExpectLine(image, "IMAGE\xFE 65535 x 50, 256 colours");
}

#include "gif/lzw_decoder.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "gif/descriptor.h"
#include "gif/sub_blocks.h"
#include "platform/faults.h"
#include "tests/support/gif_bytes.h"
#include "tests/support/literal_codec.h"
#include "tests/support/random_images.h"
#include "tests/support/test_blocks.h"

namespace {

unsigned Upto(Random& random, unsigned most) {
    return static_cast<unsigned>(random() % (most + 1));
}

// Codes as a decoder takes them, its table and code width followed along.
struct Codes {
    explicit Codes(unsigned size) : codeSize(size) { Clear(); }

    void Clear() {
        next = (1u << codeSize) + 2;
        width = codeSize + 1;
        hasPrevious = false;
    }
    void Put(unsigned code) {
        bits.Put(code, width);
        if (code == 1u << codeSize) return Clear();
        if (hasPrevious && next < 4096 && ++next >= 1u << width && width < 12) ++width;
        hasPrevious = true;
    }
    // A code that may occur here: one of the newest, or any.
    unsigned Pick(Random& random) const {
        unsigned most = next - (hasPrevious ? 0 : 1);
        unsigned code = random() % 3 ? most - Upto(random, std::min(most, 8u)) : Upto(random, most);
        return code >> 1 == 1u << (codeSize - 1) || code > 4095 ? Upto(random, (1u << codeSize) - 1) : code;
    }

    unsigned codeSize, next = 0, width = 0;
    bool hasPrevious = false;
    CodeBits bits;
};

Bytes Chain(const Bytes& data, size_t longest) {
    GifBytes chain;
    chain.SubBlocks({reinterpret_cast<const char*>(data.data()), data.size()}, longest);
    return std::move(chain);
}

// Up to `most` codes, mostly valid.
Bytes RandomStream(Random& random, unsigned codeSize, unsigned most) {
    Codes codes(codeSize);
    if (random() % 4) codes.Put(1u << codeSize);
    unsigned wild = random() % 3 ? 0 : 40;  // one in so many codes is any at all
    for (unsigned left = Upto(random, most); left > 0; --left) {
        unsigned event = Upto(random, 99);
        if (event == 0)
            codes.Put(1u << codeSize);
        else
            codes.Put(wild && random() % wild == 0 ? Upto(random, (1u << codes.width) - 1) : codes.Pick(random));
    }
    if (random() % 2) codes.Put((1u << codeSize) + 1);
    return Chain(codes.bits.Packed(), random() % 3 ? 255 : 1 + Upto(random, 254));
}

// Damages a chain, or leaves it.
void Damage(Random& random, Bytes* chain) {
    switch (random() % 4) {
        case 0: chain->resize(Upto(random, static_cast<unsigned>(chain->size()))); break;
        case 1: (*chain)[random() % chain->size()] ^= static_cast<uint8_t>(1u << random() % 8); break;
        default: break;
    }
}

// Decodes `chain` both ways into images of that shape; both must yield the same result, bitmap and end of the chain.
DecodeResult DecodeBothWays(const Bytes& chain, int codeSize, const Block& shape) {
    ImageFields f = GetImageFields(shape);
    OwnedBlock ours(MakeImage(f.width, f.height, DepthOfPacked(f.packed), f.packed & kImageInterlaced));
    OwnedBlock literal(MakeImage(f.width, f.height, DepthOfPacked(f.packed), f.packed & kImageInterlaced));
    File file, skipped;
    file.OpenMemory(chain.data(), chain.size());
    skipped.OpenMemory(chain.data(), chain.size());
    DecodeResult result = DecodeImageData(file, codeSize, ours);
    EXPECT_EQ(result, DecodeLiterally(chain, codeSize, literal));
    EXPECT_TRUE(SameBitmap(ours.data, literal.data));
    SkipSubBlocks(file);
    SkipSubBlocks(skipped);
    EXPECT_EQ(std::min<uint64_t>(file.Position(), chain.size()), std::min<uint64_t>(skipped.Position(), chain.size()));
    return result;
}

Block Shape(int width, int height, int depth, int flags = 0) {
    Block block = {};
    PutImageFields(&block, {0, 0, static_cast<uint16_t>(width), static_cast<uint16_t>(height),
                            static_cast<uint8_t>(flags | (depth - 1))});
    return block;
}

std::string ShapeText(const Block& shape, int codeSize) {
    ImageFields f = GetImageFields(shape);
    return std::to_string(f.width) + "x" + std::to_string(f.height) + " packed " + std::to_string(f.packed) +
           " code size " + std::to_string(codeSize);
}

std::string DecodedPixels(const Bytes& data, int codeSize, Block image, DecodeResult expected) {
    OwnedBlock owned(image);
    Bytes chain = Chain(data, 255);
    File file;
    file.OpenMemory(chain.data(), chain.size());
    EXPECT_EQ(DecodeImageData(file, codeSize, owned), expected);
    return PixelsOf(owned);
}

}  // namespace

TEST(LzwDecoder, RandomStreamsGiveWhatTheLiteralDecoderGives) {
    Random random(1);
    int outcomes[2] = {};
    for (int i = 0; i < 6000 && !HasFailure(); ++i) {
        unsigned codeSize = 2 + Upto(random, 6);
        bool isLarge = i % 200 == 0;
        Bytes chain = RandomStream(random, codeSize, isLarge ? 9000 : 60);
        Damage(random, &chain);
        int width = random() % 8 ? static_cast<int>(Upto(random, isLarge ? 300 : 20)) : 1;
        int depth = 1 + static_cast<int>(Upto(random, 7));
        Block shape =
            Shape(width, static_cast<int>(Upto(random, isLarge ? 200 : 9)), depth, random() % 2 ? kImageInterlaced : 0);
        SCOPED_TRACE(ShapeText(shape, static_cast<int>(codeSize)) + ", case " + std::to_string(i));
        ++outcomes[DecodeBothWays(chain, static_cast<int>(codeSize), shape)];
    }
    EXPECT_GT(outcomes[kDecodeCorrupt], 500);
    EXPECT_GT(outcomes[kDecodeDone], 3000);
}

// The fast decoder fetches and copies in steps: every place where data can end, and every sub-block size.
TEST(LzwDecoder, EndOfDataAnywhere) {
    Random random(2);
    Codes codes(3);
    for (int i = 0; i < 150; ++i) codes.Put(codes.Pick(random));
    codes.Put(9);
    Bytes whole = Chain(codes.bits.Packed(), 255);
    for (size_t bytes = 0; bytes <= whole.size(); ++bytes)
        DecodeBothWays(Bytes(whole.begin(), whole.begin() + static_cast<ptrdiff_t>(bytes)), 3, Shape(17, 31, 3));
    for (size_t longest = 1; longest <= 255; ++longest)
        DecodeBothWays(Chain(codes.bits.Packed(), longest), 3, Shape(17, 31, 3));
}

// Around the size from which on images are decoded row by row; few pixels come, so that most of it stays untouched.
TEST(LzwDecoder, HugeImages) {
    Codes codes(2);
    for (int i = 0; i < 900; ++i) codes.Put(codes.hasPrevious ? codes.next : 1);
    Bytes chain = Chain(codes.bits.Packed(), 255);
    for (int height : {1024, 1025})
        for (int flags : {0, int{kImageInterlaced}})
            EXPECT_EQ(DecodeBothWays(chain, 2, Shape(65535, height, 1, flags)), kDecodeDone);
}

TEST(LzwDecoder, RowOrderOfInterlacedImages) {
    const char* const expected[] = {
        "",          "0",           "0 0",           "0 0 2",           "0 3 2 0",
        "0 3 2 4 1", "0 3 2 4 1 5", "0 4 2 5 1 6 3", "0 4 2 5 1 6 3 7", "0 5 3 6 2 7 4 8 1"};
    for (int height = 0; height <= 9; ++height) {
        Codes codes(4);
        for (unsigned value = 0; value < static_cast<unsigned>(height); ++value) codes.Put(value);
        EXPECT_EQ(DecodedPixels(codes.bits.Packed(), 4, MakeImage(1, height, 4, kImageInterlaced), kDecodeDone),
                  expected[height]);
    }
}

TEST(LzwDecoder, PixelsThatDoNotFitTheDepth) {
    Codes codes(8);
    for (unsigned value : {0u, 2u, 0x35u}) codes.Put(value);
    EXPECT_EQ(DecodedPixels(codes.bits.Packed(), 8, MakeImage(3, 1, 1), kDecodeDone), "011");
    EXPECT_EQ(DecodedPixels(codes.bits.Packed(), 8, MakeImage(3, 1, 2), kDecodeDone), "025");
}

TEST(LzwDecoder, RefusedStreams) {
    struct Case {
        const char* what;
        std::vector<unsigned> codes;
        int codeSize;
        DecodeResult result;
        const char* pixel;
    } const cases[] = {
        {"next code right at the start", {6}, 2, kDecodeCorrupt, "0"},
        {"next code right after a clear", {4, 1, 4, 6}, 2, kDecodeCorrupt, "1"},
        {"code beyond the next", {4, 1, 7}, 2, kDecodeCorrupt, "1"},
        {"code size too small", {0}, 1, kDecodeBadCodeSize, "0"},
        {"code size too large", {0}, 9, kDecodeBadCodeSize, "0"},
        {"end code at once", {5}, 2, kDecodeDone, "0"},
        {"nothing at all", {}, 2, kDecodeDone, "0"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Codes codes(static_cast<unsigned>(c.codeSize));
        for (unsigned code : c.codes) codes.Put(code);
        EXPECT_EQ(DecodedPixels(codes.bits.Packed(), c.codeSize, MakeImage(1, 1, 2), c.result), c.pixel);
    }
}

TEST(LzwDecoder, MemoryForTheRowsAloneIsEnough) {
    GifBytes chain;
    chain.Add(Bytes{2, 0x4C, 0x0A, 0});  // clear, 1, 1, 5
    for (long failing : {0L, 1L}) {
        OwnedBlock image(MakeImage(2, 1, 2));
        File file;
        file.OpenMemory(chain.data(), chain.size());
        faults.allocationsUntilFailure = failing;
        DecodeResult result = DecodeImageData(file, 2, image);
        faults = {};
        EXPECT_EQ(result, failing == 0 ? kDecodeNoMemory : kDecodeDone);
        EXPECT_EQ(PixelsOf(image), failing == 0 ? "00" : "11");
    }
}

#include "gif/lzw_decoder.h"

#include <algorithm>

#include "gif/sub_blocks.h"
#include "platform/faults.h"
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
    Bytes Chain(size_t longest = 255) const {
        GifBytes chain;
        const Bytes& data = bits.Packed();
        chain.SubBlocks({reinterpret_cast<const char*>(data.data()), data.size()}, longest);
        return chain;
    }

    unsigned codeSize, next = 0, width = 0;
    bool hasPrevious = false;
    CodeBits bits;
};

// Up to `most` codes, mostly valid, often literals in a row, in a chain that may be cut or damaged.
Bytes RandomChain(Random& random, unsigned codeSize, unsigned most) {
    Codes codes(codeSize);
    if (random() % 4) codes.Put(1u << codeSize);
    unsigned wild = random() % 3 ? 0 : 40;  // one in so many codes is any at all
    bool isNoise = random() % 3 == 0;
    for (unsigned left = Upto(random, most); left > 0; --left) {
        bool clears = Upto(random, most) == 0;  // large ones fill the table, and most go on with it
        bool isWild = wild && random() % wild == 0;
        bool isLiteral = isNoise && random() % 16;
        codes.Put(clears      ? 1u << codeSize
                  : isWild    ? Upto(random, (1u << codes.width) - 1)
                  : isLiteral ? Upto(random, (1u << codeSize) - 1)
                              : codes.Pick(random));
    }
    if (random() % 2) codes.Put((1u << codeSize) + 1);
    Bytes chain = codes.Chain(random() % 3 ? 255 : 1 + Upto(random, 254));
    if (random() % 4 == 0) chain.resize(1 + Upto(random, static_cast<unsigned>(chain.size()) - 1));
    if (random() % 4 == 0) chain[random() % chain.size()] ^= static_cast<uint8_t>(1u << random() % 8);
    return chain;
}

// Decodes both ways; both must yield the same result, bitmap and end of the chain.
DecodeResult DecodeBothWays(const Bytes& chain, int codeSize, int width, int height, int depth, int flags = 0) {
    Block ours(MakeImage(width, height, depth, flags)), literal(MakeImage(width, height, depth, flags));
    File file, skipped;
    file.OpenMemory(chain.data(), chain.size());
    skipped.OpenMemory(chain.data(), chain.size());
    DecodeResult result = DecodeImageData(file, codeSize, &ours);
    EXPECT_EQ(result, DecodeLiterally(chain, codeSize, &literal));
    EXPECT_TRUE(SameBitmap(ours.data, literal.data)) << width << "x" << height << " depth " << depth << " " << flags;
    SkipSubBlocks(file);
    SkipSubBlocks(skipped);
    EXPECT_EQ(std::min<uint64_t>(file.Position(), chain.size()), std::min<uint64_t>(skipped.Position(), chain.size()));
    return result;
}

}  // namespace

// kQuirkFirstRowOfPassUntested and kQuirkSurplusRow among others, which the literal decoder has in a form of its own.
TEST(LzwDecoder, RandomStreamsGiveWhatTheLiteralDecoderGives) {
    Random random(1);
    int outcomes[2] = {};
    for (int i = 0; i < 6000 && !HasFailure(); ++i) {
        unsigned codeSize = 2 + Upto(random, 6);
        bool isLarge = i % 200 == 0;
        Bytes chain = RandomChain(random, codeSize, isLarge ? 9000 : 60);
        int width = random() % 8 ? static_cast<int>(Upto(random, isLarge ? 300 : 20)) : 1;
        int height = static_cast<int>(Upto(random, isLarge ? 200 : 9));
        int depth = 1 + static_cast<int>(Upto(random, 7));
        SCOPED_TRACE("case " + std::to_string(i) + ", code size " + std::to_string(codeSize));
        ++outcomes[DecodeBothWays(chain, static_cast<int>(codeSize), width, height, depth,
                                  random() % 2 ? kImageInterlaced : 0)];
    }
    EXPECT_GT(outcomes[kDecodeCorrupt], 500);
    EXPECT_GT(outcomes[kDecodeDone], 3000);
}

// kQuirkCutSubBlockDropped.
// The fast decoder fetches and copies in steps: every place where data can end, and every sub-block size.
TEST(LzwDecoder, EndOfDataAnywhere) {
    Random random(2);
    Codes codes(3);
    for (int i = 0; i < 150; ++i) codes.Put(codes.Pick(random));
    codes.Put(9);
    Bytes whole = codes.Chain();
    for (ptrdiff_t left = 0; left <= whole.end() - whole.begin(); ++left)
        DecodeBothWays(Bytes(whole.begin(), whole.end() - left), 3, 17, 31, 3);
    for (size_t longest = 1; longest <= 255; ++longest) DecodeBothWays(codes.Chain(longest), 3, 17, 31, 3);
}

// The fast decoder takes several literals at once: up to the last pixel and not beyond, across every growth of the
// codes and with a full table, also right after the clear codes.
TEST(LzwDecoder, LiteralsInARow) {
    Random random(3);
    for (unsigned codeSize = 2; codeSize <= 8; ++codeSize)
        for (int clears = 0; clears <= 2; ++clears) {
            Codes codes(codeSize);
            auto put = [&](int count) {
                for (int i = 0; i < count; ++i) codes.Put(Upto(random, (1u << codeSize) - 1));
            };
            int ahead = static_cast<int>(Upto(random, 5));
            put(ahead);
            for (int i = 0; i < clears; ++i) codes.Put(1u << codeSize);
            put(4500);
            for (int height : {3, 4, ahead + 4497, ahead + 4499, ahead + 4500, ahead + 4501})
                EXPECT_EQ(DecodeBothWays(codes.Chain(), static_cast<int>(codeSize), 1, height, 8), kDecodeDone);
            put(4500);  // far beyond the image, with a table that is full already
            EXPECT_EQ(DecodeBothWays(codes.Chain(), static_cast<int>(codeSize), 1, ahead + 4300, 8), kDecodeDone);
        }
}

// Around the size from which on images are decoded row by row; few pixels come, so that most of it stays untouched.
TEST(LzwDecoder, HugeImages) {
    Codes codes(2);
    for (int i = 0; i < 900; ++i) codes.Put(codes.hasPrevious ? codes.next : 1);
    for (int height : {1024, 1025})
        for (int flags : {0, int{kImageInterlaced}})
            EXPECT_EQ(DecodeBothWays(codes.Chain(), 2, 65535, height, 1, flags), kDecodeDone);
}

TEST(LzwDecoder, WhenNothingIsDecoded) {
    const uint8_t chain[] = {1, 1, 0};
    for (auto [codeSize, failing, result] : {std::tuple{1, Faults::kNever, kDecodeBadCodeSize},
                                             {9, Faults::kNever, kDecodeBadCodeSize},
                                             {2, 0L, kDecodeNoMemory}}) {
        Block image(MakeImage(1, 1, 2));
        File file;
        file.OpenMemory(chain, sizeof chain);
        faults.allocationsUntilFailure = failing;
        EXPECT_EQ(DecodeImageData(file, codeSize, &image), result);
        faults = {};
        EXPECT_EQ(PixelsOf(image), "0");
    }
}

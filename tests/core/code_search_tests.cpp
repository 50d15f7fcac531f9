#include "size/code_search.h"

#include <algorithm>
#include <map>
#include <memory>
#include <string>

#include "platform/faults.h"
#include "tests/support/failing_new.h"
#include "tests/support/literal_codec.h"
#include "tests/support/random_images.h"
#include "tests/support/test_blocks.h"

namespace {

constexpr Effort kEfforts[] = {Effort::kFast, Effort::kNormal, Effort::kMax};

// An image with what may be written for its pixels.
struct Sample {
    int width, height;
    Bytes pixels, free;
    std::unique_ptr<AlikeColours> alike;
    int transparent = -1;
    int codeSize;

    PixelsToEncode View() const { return {pixels, free, transparent, codeSize, alike.get()}; }
    bool Allows(size_t at, unsigned index) const {
        return index == pixels[at] || (alike && (*alike)[pixels[at]][index]) ||
               (!free.empty() && free[at] && static_cast<int>(index) == transparent);
    }
};

enum Kind { kNoise, kRuns, kRepeats, kOneColour };

Sample MakeSample(Random& random, Kind kind, int width, int height, int codeSize) {
    Sample sample = {width, height, {}, {}, nullptr, -1, codeSize};
    const auto count = static_cast<size_t>(width * height), period = static_cast<size_t>(1 + random() % 70);
    auto any = [&] { return static_cast<uint8_t>(random() % (1u << codeSize)); };
    for (size_t i = 0; i < count; ++i) {
        const bool repeats = kind == kOneColour ? i > 0 : i >= period && random() % 50;
        uint8_t pixel = any();
        if (kind == kRuns && i > 0 && random() % 5) pixel = sample.pixels[i - 1];
        if (kind == kRepeats && repeats) pixel = sample.pixels[i - period];
        if (kind == kOneColour && repeats) pixel = sample.pixels[0];
        sample.pixels.push_back(pixel);
    }
    return sample;
}

void MakeSomeFree(Random& random, Sample* sample) {
    sample->transparent = static_cast<int>(random() % (1u << sample->codeSize));
    const auto part = static_cast<unsigned>(2 + random() % 6);
    bool isFree = false;
    for (size_t i = 0; i < sample->pixels.size(); ++i) {
        if (random() % 8 == 0) isFree = random() % part != 0;
        sample->free.push_back(isFree ? 1 : 0);
    }
}

void MakeSomeAlike(Random& random, Sample* sample) {
    sample->alike = std::make_unique<AlikeColours>();
    const unsigned colours = 1u << sample->codeSize;
    for (unsigned own = 0; own < colours; ++own)
        for (auto others = random() % 4; others > 0; --others) sample->alike->at(own)[random() % colours] = true;
}

// What a decoder makes of the data; too short when there is anything wrong with it.
Bytes Decoded(const EncodedPixels& encoded, const Sample& sample) {
    EXPECT_EQ(encoded.data.at(0), sample.codeSize);
    Block image(MakeImage(sample.width, sample.height, 8));
    File file;
    file.OpenMemory(encoded.data.data() + 1, encoded.data.size() - 1);
    uint64_t count = 0;
    EXPECT_EQ(DecodeImageData(file, sample.codeSize, &image, Manner::kWhole, &count), kDecodeDone);
    Bytes pixels;
    ImageLock bitmap(image.data);
    for (int y = 0; y < sample.height; ++y)
        for (int x = 0; x < sample.width && pixels.size() < count; ++x)
            pixels.push_back(static_cast<uint8_t>(IndexAt(ImageRow(bitmap, y), x, bitmap->bitCount)));
    return pixels;
}

// What EncodeImageData writes for the pixels as they are.
Bytes EncodedPlainly(const Sample& sample) {
    Block image(MakeImage(sample.width, sample.height, sample.codeSize));
    ImageWriteLock bitmap(&image.data);
    for (size_t i = 0; i < sample.pixels.size(); ++i) {
        const auto width = static_cast<size_t>(sample.width);
        SetImagePixel(bitmap, static_cast<int>(i % width), static_cast<int>(i / width), sample.pixels[i]);
    }
    return EncodeLiterally(image);
}

// The bits that the data sub-blocks hold, those that fill the last byte included; the chain must end with the data.
uint64_t BitsInSubBlocks(const Bytes& data) {
    uint64_t bytes = 0;
    size_t at = 1;
    for (; at < data.size() && data[at]; at += 1u + data[at]) bytes += data[at];
    EXPECT_EQ(at, data.size() - 1);
    return bytes * 8;
}

EncodedPixels Search(const Sample& sample, Effort effort) {
    EncodedPixels encoded;
    EXPECT_TRUE(SearchCodes(sample.View(), effort, 0, &encoded));
    return encoded;
}

void ExpectGood(const Sample& sample, Effort effort) {
    const EncodedPixels encoded = Search(sample, effort);
    const Bytes decoded = Decoded(encoded, sample);
    ASSERT_EQ(decoded.size(), sample.pixels.size());
    for (size_t i = 0; i < decoded.size(); ++i)
        ASSERT_TRUE(sample.Allows(i, decoded[i])) << "pixel " << i << " became " << int{decoded[i]};
    // The plain encoder's end code is a bit too narrow where the codes have just become wider.
    EXPECT_LE(encoded.bits, BitsInSubBlocks(EncodedPlainly(sample)) + 1);
    EXPECT_EQ((encoded.bits + 7) / 8 * 8, BitsInSubBlocks(encoded.data));
    EXPECT_EQ(Search(sample, effort).data, encoded.data) << "the second time";
}

std::string Name(const Sample& sample, Kind kind, Effort effort) {
    return std::to_string(sample.width) + "x" + std::to_string(sample.height) + " of kind " + std::to_string(kind) +
           ", code size " + std::to_string(sample.codeSize) + ", effort " + std::to_string(static_cast<int>(effort)) +
           (sample.free.empty() ? "" : ", some free") + (sample.alike ? ", some alike" : "");
}

// The fewest bits of any stream at all: every string that is known and fits is tried everywhere, and a clear code, too.
class EveryStream {
public:
    explicit EveryStream(const Sample& sample) : sample_(sample) {}

    uint64_t FewestBits() {
        const auto codeSize = static_cast<unsigned>(sample_.codeSize);
        best_ = UINT64_MAX;
        Continue(0, Fresh(), codeSize + 1);
        return best_;
    }

private:
    struct Table {
        std::vector<Bytes> strings;
        Bytes previous;
        unsigned width;
    };

    Table Fresh() const {
        Table table = {{}, {}, static_cast<unsigned>(sample_.codeSize) + 1};
        table.strings.resize((1u << sample_.codeSize) + 2);
        for (unsigned i = 0; i < 1u << sample_.codeSize; ++i) table.strings[i] = {static_cast<uint8_t>(i)};
        return table;
    }

    void Continue(size_t at, const Table& table, uint64_t bits) {
        bits += table.width;
        if (bits >= best_) return;
        if (at == sample_.pixels.size()) {
            best_ = bits;
            return;
        }
        if (!table.previous.empty()) Continue(at, Fresh(), bits);
        std::vector<Bytes> strings = table.strings;
        if (!table.previous.empty()) {
            strings.push_back(table.previous);
            strings.back().push_back(table.previous[0]);
        }
        for (const Bytes& string : strings) {
            if (string.empty() || at + string.size() > sample_.pixels.size()) continue;
            bool fits = true;
            for (size_t i = 0; i < string.size(); ++i) fits = fits && sample_.Allows(at + i, string[i]);
            if (fits) Continue(at + string.size(), Learned(table, string), bits);
        }
    }

    static Table Learned(Table table, const Bytes& string) {
        if (!table.previous.empty()) {
            table.strings.push_back(table.previous);
            table.strings.back().push_back(string[0]);
            if (table.strings.size() >= 1u << table.width && table.width < 12) ++table.width;
        }
        table.previous = string;
        return table;
    }

    const Sample& sample_;
    uint64_t best_ = UINT64_MAX;
};

}  // namespace

TEST(CodeSearch, DecodersGetWhatIsAllowedInNoMoreBytes) {
    Random random(31);
    for (int codeSize = 2; codeSize <= 8; ++codeSize)
        for (Kind kind : {kNoise, kRuns, kRepeats, kOneColour})
            for (int choices = 0; choices < 4; ++choices)
                for (Effort effort : kEfforts) {
                    const auto width = static_cast<int>(1 + random() % 60),
                               height = static_cast<int>(1 + random() % 30);
                    Sample sample = MakeSample(random, kind, width, height, codeSize);
                    if (choices & 1) MakeSomeFree(random, &sample);
                    if (choices & 2) MakeSomeAlike(random, &sample);
                    SCOPED_TRACE(Name(sample, kind, effort));
                    ExpectGood(sample, effort);
                }
}

// So large that the table fills several times, and is kept for a while by those that try.
TEST(CodeSearch, FullTables) {
    Random random(32);
    for (int codeSize : {2, 6, 8})
        for (Kind kind : {kNoise, kRepeats})
            for (int choices : {0, 1, 2}) {
                Sample sample = MakeSample(random, kind, 200, kind == kNoise ? 100 : 400, codeSize);
                if (choices == 1) MakeSomeFree(random, &sample);
                if (choices == 2) MakeSomeAlike(random, &sample);
                for (Effort effort : {Effort::kFast, Effort::kNormal}) {
                    if (effort == Effort::kNormal && choices) continue;  // takes long
                    SCOPED_TRACE(Name(sample, kind, effort));
                    ExpectGood(sample, effort);
                }
            }
}

// Data of any length, with sub-blocks that are just full among them, and widths that grow with the last code.
TEST(CodeSearch, RowsOfEveryLength) {
    Random random(33);
    for (int codeSize : {2, 8})
        for (int width = 1; width < 700; ++width) {
            Sample sample = MakeSample(random, kNoise, width, 1, codeSize);
            SCOPED_TRACE(Name(sample, kNoise, Effort::kFast));
            ExpectGood(sample, Effort::kFast);
        }
}

// On images so small that all streams can be tried the best effort is at most one code away from the smallest.
TEST(CodeSearch, NearTheSmallestOfAllStreams) {
    Random random(34);
    int smallest = 0, tried = 0;
    for (int i = 0; i < 150; ++i) {
        Sample sample = MakeSample(random, kRuns, static_cast<int>(1 + random() % 11), 1, 2);
        for (uint8_t& pixel : sample.pixels) pixel &= 1;
        if (i % 3 == 1) MakeSomeFree(random, &sample);
        const uint64_t fewest = EveryStream(sample).FewestBits(), found = Search(sample, Effort::kMax).bits;
        SCOPED_TRACE(Name(sample, kRuns, Effort::kMax) + ", fewest " + std::to_string(fewest));
        EXPECT_GE(found, fewest);
        EXPECT_LE(found, fewest + 4);
        smallest += found == fewest;
        ++tried;
    }
    EXPECT_GE(smallest * 10, tried * 9) << smallest << " of " << tried << " were the smallest";
}

TEST(CodeSearch, NoMoreBitsThanAsked) {
    Random random(35);
    for (Effort effort : kEfforts) {
        const Sample sample = MakeSample(random, kRuns, 60, 50, 4);
        const EncodedPixels free = Search(sample, effort);
        EncodedPixels encoded;
        EXPECT_TRUE(SearchCodes(sample.View(), effort, free.bits, &encoded));
        EXPECT_EQ(encoded.data, free.data);
        EXPECT_FALSE(SearchCodes(sample.View(), effort, free.bits - 1, &encoded));
        EXPECT_TRUE(encoded.data.empty());
        EXPECT_EQ(encoded.bits, 0u);
    }
}

TEST(CodeSearch, StopsWhenToldTo) {
    Random random(36);
    const Sample sample = MakeSample(random, kNoise, 100, 100, 8);
    const std::atomic<bool> stop = true;
    PixelsToEncode image = sample.View();
    image.stop = &stop;
    for (Effort effort : kEfforts) {
        EncodedPixels encoded = {{1}, 1};
        EXPECT_FALSE(SearchCodes(image, effort, 0, &encoded));
        EXPECT_TRUE(encoded.data.empty());
    }
}

// Whichever request for memory fails: nothing at all, or what would have come of it anyway.
TEST(CodeSearch, WithoutMemory) {
    Random random(37);
    Sample sample = MakeSample(random, kRuns, 40, 20, 3);
    MakeSomeFree(random, &sample);
    MakeSomeAlike(random, &sample);
    for (Effort effort : kEfforts) {
        const EncodedPixels unharmed = Search(sample, effort);
        for (bool isNew : {true, false}) {
            long n = 0;
            for (bool reached = true; reached; ++n) {
                SCOPED_TRACE((isNew ? "request " : "allocation ") + std::to_string(n));
                EncodedPixels encoded;
                (isNew ? failingNew.untilFailure : faults.allocationsUntilFailure) = n;
                faults.onlyOne = true;
                const bool isDone = SearchCodes(sample.View(), effort, 0, &encoded);
                reached = isNew ? failingNew.untilFailure < 0 : faults.allocationsUntilFailure == Faults::kPast;
                failingNew = {};
                faults = {};
                EXPECT_EQ(encoded.data, isDone ? unharmed.data : Bytes());
                EXPECT_EQ(isDone, !reached);
            }
            EXPECT_GT(n, 2) << "nothing failed";
        }
    }
}

// Pictures of other kinds: what tests/data/pictures.py makes, whole, cut off and turned.
#include "imaging/picture_reader.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <sstream>

#include "imaging/jpeg_markers.h"
#include "platform/faults.h"
#include "tests/support/test_blocks.h"

namespace {

constexpr size_t kFewestFiles = 100;

// The imaging component makes up what is missing of a JPEG that has its end.
#ifdef _WIN32
constexpr Failure kOfBrokenJpeg = Failure::kNone;
#else
constexpr Failure kOfBrokenJpeg = Failure::kDamaged;
#endif

const std::map<std::string, Failure> kFailures = {{"kDamaged", Failure::kDamaged},
                                                  {"kDamaged where libjpeg reads", kOfBrokenJpeg},
                                                  {"kTooLarge", Failure::kTooLarge},
                                                  {"kNotSupported", Failure::kNotSupported}};

struct Expected {
    Failure failure = Failure::kNone;
    int width = 0, height = 0, tolerance = 0;
    std::string pixels;  // in hexadecimal digits
};

Expected ReadExpected(const std::string& path) {
    const Bytes bytes = ReadAll(path);
    std::istringstream lines(std::string(bytes.begin(), bytes.end()));
    Expected expected;
    std::string first;
    std::getline(lines, first);
    if (auto known = kFailures.find(first); known != kFailures.end()) {
        expected.failure = known->second;
        return expected;
    }
    std::istringstream(first) >> expected.width >> expected.height >> expected.tolerance;
    lines >> expected.pixels;
    return expected;
}

// The pixels as red, green, blue and opacity, whatever form they have.
std::vector<int> SamplesOf(const Picture& picture) {
    std::vector<int> samples;
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x) {
            const uint8_t* pixel = picture.Row(y) + static_cast<size_t>(x) * picture.PixelBytes();
            const Rgba colour = picture.IsIndexed() && *pixel >= picture.colourCount ? Rgba{0, 0, 0, 255}
                                : picture.IsIndexed()                                ? picture.colours[*pixel]
                                                      : Rgba{pixel[0], pixel[1], pixel[2], pixel[3]};
            samples.insert(samples.end(), {colour.red, colour.green, colour.blue, colour.opacity});
        }
    return samples;
}

void ExpectPicture(const Result<Picture>& picture, const Expected& expected) {
    ASSERT_EQ(picture.Why(), expected.failure);
    if (!picture || expected.pixels.empty()) return;
    ASSERT_EQ(picture->width, expected.width);
    ASSERT_EQ(picture->height, expected.height);
    const std::vector<int> samples = SamplesOf(*picture);
    ASSERT_EQ(samples.size() * 2, expected.pixels.size());
    for (size_t i = 0; i < samples.size(); ++i)
        ASSERT_NEAR(samples[i], std::stoi(expected.pixels.substr(2 * i, 2), nullptr, 16), expected.tolerance)
            << "sample " << i % 4 << " of pixel " << i / 4;
}

// The pictures of the folder, each with what reading it must give.
template <typename Test>
void ForEachPicture(Test test) {
    size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(TEST_PICTURES)) {
        if (entry.path().extension() == ".expected") continue;
        const std::string path = entry.path().string();
        SCOPED_TRACE(entry.path().filename().string());
        test(path, ReadAll(path), ReadExpected(path + ".expected"));
        ++files;
    }
    EXPECT_GT(files, kFewestFiles);
}

}  // namespace

TEST(PictureReader, EveryKindGivesItsPixelsOrSaysWhyNot) {
    ForEachPicture([](const std::string&, const Bytes& bytes, const Expected& expected) {
        ExpectPicture(ReadPicture(bytes), expected);
    });
}

// Half a picture is none, wherever the file was cut. Of a BMP file padding may be missing, and what ends runs.
TEST(PictureReader, CutOffAnywhereItIsNoPicture) {
    ForEachPicture([](const std::string& path, const Bytes& bytes, const Expected& expected) {
        if (expected.failure != Failure::kNone || bytes.size() > 3000) return;
        const bool mayLackTheEnd = path.ends_with(".bmp");
        for (size_t length = 0; length < bytes.size(); ++length) {
            const Result<Picture> picture = ReadPicture(std::span(bytes).first(length));
            if (mayLackTheEnd && length + 4 > bytes.size()) continue;
            EXPECT_FALSE(static_cast<bool>(picture)) << length << " of " << bytes.size();
        }
    });
}

TEST(PictureReader, WhatIsNoPictureIsNotTakenForOne) {
    for (const char* text : {"", "B", "BM", "BMW is a maker of cars and motorcycles", "GIF89a",
                             "\x89PNG\n\x1A\n1234567", "\xFF\xD8 no marker", "II*\0 a TIFF file"}) {
        const Bytes bytes(text, text + strlen(text));
        EXPECT_EQ(ReadPicture(bytes).Why(), Failure::kNotPicture) << text;
    }
}

TEST(PictureReader, EveryLackOfMemoryIsTold) {
    for (const char* name : {"colours-8.png", "palette-2.png", "orientation-6-big.jpg", "inks.jpg", "runs-8.bmp"}) {
        const Bytes bytes = ReadAll(std::string(TEST_PICTURES) + "/" + name);
        long n = 0;
        for (bool failed = true; failed; ++n) {
            faults.onlyOne = true;
            faults.allocationsUntilFailure = n;
            const Result<Picture> picture = ReadPicture(bytes);
            failed = faults.allocationsUntilFailure == Faults::kPast;
            faults = {};
            EXPECT_EQ(picture.Why(), failed ? Failure::kNoMemory : Failure::kNone) << name << " " << n;
        }
        EXPECT_GT(n, 1) << name;
    }
}

// As cut short and altered as EXIF data may come: never read beyond its end, which the sanitizers watch.
TEST(JpegMarkers, OrientationOfBrokenData) {
    const Bytes good = {'M', 'M', 0, 42, 0, 0, 0, 8, 0, 1, 1, 0x12, 0, 3, 0, 0, 0, 1, 0, 8, 0, 0};
    EXPECT_EQ(TiffOrientation(good), 8);
    for (size_t length = 0; length < good.size(); ++length) {
        const Bytes cut(good.begin(), good.begin() + static_cast<ptrdiff_t>(length));
        EXPECT_EQ(TiffOrientation(cut), kUpright) << length;
    }
    const std::tuple<size_t, uint8_t> changes[] = {{0, 'I'}, {3, 43}, {4, 255}, {7, 21}, {8, 255}, {11, 0x11}, {19, 9}};
    for (const auto& [at, value] : changes) {
        Bytes changed = good;
        changed[at] = value;
        EXPECT_EQ(TiffOrientation(changed), at == 8 ? 8 : kUpright) << at;
    }
}

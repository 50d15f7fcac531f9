// Cut, Copy and Paste.
#include "imaging/png_writer.h"
#include "tests/gui/editor_test.h"
#include "tests/gui/free_objects.h"
#include "texts/string_ids.h"
#include "texts/strings.h"
#include "windows/app/document_history.h"
#include "windows/ids/insert_ids.h"
#include "windows/services/clipboard.h"

namespace {

UINT BlocksFormat() {
    return RegisterClipboardFormatW(L"Kelmor Zephyr blocks");
}

class ClipboardTest : public EditorTest {
protected:
    static constexpr char kUnreadable[] = "What is in the clipboard can't be read.";

    void SetUp() override {
        EditorTest::SetUp();
        FillBlockListView(hMainWindow, &document);
        ASSERT_TRUE(OpenClipboard(hMainWindow));
        EmptyClipboard();
        CloseClipboard();
    }
    static void Offer(UINT format, const Bytes& bytes) {
        const ClipboardPart part = {format, bytes};
        EXPECT_TRUE(PutOnClipboard(hMainWindow, {&part, 1}));
    }
    static std::string OnClipboard(UINT format) {
        size_t bytes = 0;
        MemoryLock lock(TakeFromClipboard(hMainWindow, format, &bytes));
        return lock ? std::string(lock.As<char>(), bytes) : std::string();
    }
    static bool IsOffered(UINT format) { return IsClipboardFormatAvailable(format) != FALSE; }
    bool CanDo(int command) const {
        SendMessageW(hMainWindow, WM_INITMENUPOPUP, 0, 0);
        return IsEnabled(command);
    }
    static std::string ContentOf(const Block& block) {
        const bool isText = block.kind == kCommentBlock || block.kind == kPlainTextBlock;
        if (block.kind == kUnknownBlock) return "label " + std::to_string(block.descriptor[0]);
        return std::to_string(block.kind) + (isText ? TextOf(block) : DescriptorOf(block)) +
               (block.kind == kImageBlock ? PixelsOf(block) : "");
    }
    // A device-independent bitmap of one row of 24-bit pixels.
    static Bytes WidePicture(const std::vector<RgbTriple>& pixels) {
        MemoryHandle image = CreateImageBitmap(static_cast<int>(pixels.size()), 1, nullptr, 24);
        ImageWriteLock bitmap(&image);
        for (size_t x = 0; x < pixels.size(); ++x)
            SetImagePixel(bitmap, static_cast<int>(x), 0,
                          pixels[x].red | uint32_t{pixels[x].green} << 8 | uint32_t{pixels[x].blue} << 16);
        const auto* start = reinterpret_cast<const uint8_t*>(static_cast<LockedBitmap>(bitmap));
        const uint8_t* end = ImagePixels(bitmap) + ImageRowBytes(bitmap);
        return Bytes(start, end);
    }
    static RgbTriple ColourAt(const Block& image, int x) {
        ImageLock bitmap(image.data);
        const uint32_t index = GetImagePixel(bitmap, x, 0);
        const bool isLocal = GetImageFields(image).packed & kHasPalette;
        return isLocal ? image.palette[index] : At(0).palette[index];
    }
};

TEST_F(ClipboardTest, EveryBlockThatAFileCanHoldIsCutAndPasted) {
    for (int line = kSampleHeader; line <= kSampleLastControl; ++line) {
        SCOPED_TRACE(line);
        Select(line);
        const bool isOrdinary = line != kSampleHeader && line != kSampleEmpty;
        EXPECT_EQ(CanDo(IDM_CUT), isOrdinary);
        EXPECT_EQ(CanDo(IDM_COPY), isOrdinary);
        if (!isOrdinary) continue;
        const std::string content = ContentOf(At(line)), kinds = KindsOf(document);
        if (line == kSampleApplication || line == kSampleBlockNames) {  // they have no data
            Run(IDM_CUT, {Read("This block can't be copied.", IDOK)});
            EXPECT_EQ(KindsOf(document), kinds);
            continue;
        }
        const std::string name = LoadStr(IDS_KIND_FIRST + At(line).kind);
        Run(IDM_CUT, {});
        EXPECT_EQ(*UndoName(), "Cut " + name);
        EXPECT_EQ(document.count + 1, kinds.size());
        Select(line - 1);
        Run(IDM_PASTE, {});
        ASSERT_EQ(KindsOf(document), kinds);
        EXPECT_EQ(*UndoName(), "Paste " + name);
        EXPECT_EQ(Selection(), line);
        EXPECT_EQ(ContentOf(At(line)), content);
    }
}

TEST_F(ClipboardTest, BlocksOfAWholeFileComeBackByteForByte) {
    settings.carefulMode = 1;
    documentChanged = false;
    GifBytes bytes;
    bytes.Header("GIF89a", 2, 2, 0x80).Add({0x21, 0xFF, 11}).Text("XMP DataXMP").Add({4}).Text("<x/>").Add({0});
    bytes.Add({0x21, 0x77, 2, 8, 9, 1, 7, 0}).SmallImage().Comment("odd").Add({0x3B});
    WriteAll(File("a.gif"), bytes);
    Open(File("a.gif"));
    ASSERT_EQ(KindsOf(document), "15926");
    for (int line = 1; line < 5; ++line) {
        Select(line);
        Run(IDM_CUT, {});
        EXPECT_EQ(document.count, 4u);
        Select(line - 1);
        Run(IDM_PASTE, {});
        EXPECT_EQ(KindsOf(document), "15926");
    }
    Run(IDM_SAVE_AS, {DialogAnswers::ChooseFiles({File("b.gif")})});
    EXPECT_TRUE(ReadAll(File("b.gif")) == bytes);
}

TEST_F(ClipboardTest, AnImageIsOfferedToOtherProgramsAsItLooks) {
    Select(kSampleImage);
    Run(IDM_COPY, {});
    EXPECT_EQ(OnClipboard(RegisterClipboardFormatW(L"PNG")).substr(1, 3), "PNG");
    const std::string dib = OnClipboard(CF_DIB);
    ASSERT_EQ(dib.size(), sizeof(BitmapHeader) + 16 * sizeof(RgbQuad) + 30 * 20);
    BitmapHeader header = {};
    memcpy(&header, dib.data(), sizeof header);
    EXPECT_EQ(header.width, 40);
    constexpr size_t kPixels = sizeof header + 16 * sizeof(RgbQuad);
    const int index = dib[kPixels + 4] & 15;  // of the pixel at x = 9
    EXPECT_EQ(dib[sizeof header + static_cast<size_t>(index) * sizeof(RgbQuad) + 1], 18) << "green";
    EXPECT_NE(FormatsOnClipboard(hMainWindow)[2], UINT{CF_DIBV5}) << "it has nothing transparent";
    EXPECT_EQ(OnClipboard(BlocksFormat()).substr(0, 6), "GIF89a");
    Select(kSampleComment);
    Run(IDM_COPY, {});
    EXPECT_FALSE(IsOffered(CF_DIB)) << "what was there before is gone";
    EXPECT_TRUE(IsOffered(BlocksFormat()));
}

TEST_F(ClipboardTest, APictureFromAnywhereBecomesAFrame) {
    Offer(CF_DIB, WidePicture({{255, 0, 0}, {0, 0, 255}, {255, 255, 255}}));
    Select(kSampleComment);
    Run(IDM_PASTE, {Press(IDOK)});
    ASSERT_EQ(KindsOf(document), "1234627259083") << "behind the comment";
    const Block pasted = At(kSampleComment + 1);
    EXPECT_EQ(ColourAt(pasted, 0), (RgbTriple{255, 0, 0}));
    EXPECT_EQ(ColourAt(pasted, 1), (RgbTriple{0, 0, 255}));
    EXPECT_EQ(*UndoName(), "Paste image");
    Command(IDM_UNDO);
    // Cancel at the palette question leaves the document alone.
    documentChanged = false;
    Run(IDM_PASTE, {Press(IDCANCEL)});
    EXPECT_EQ(KindsOf(document), "123467259083");
    EXPECT_FALSE(documentChanged);
    // Without a global palette it keeps its colours unasked.
    ChangeHeader(0, 0);
    Run(IDM_PASTE, {});
    EXPECT_EQ(ColourAt(At(kSampleComment + 1), 1), (RgbTriple{0, 0, 255}));
    EXPECT_TRUE(GetImageFields(At(kSampleComment + 1)).packed & kHasPalette);
}

// Red, nothing, blue: as PNG, as bitmaps with opacity that is said or not, and as one form beside another.
TEST_F(ClipboardTest, WhatIsTransparentStaysSo) {
    ChangeHeader(0, 0);  // the picture keeps its colours unasked
    constexpr struct {
        uint8_t red, green, blue, opacity;
    } pixels[] = {{255, 0, 0, 255}, {0, 0, 0, 0}, {0, 0, 255, 255}};
    ByteBuffer png;
    PngWriter writer;
    ASSERT_TRUE(writer.Start({3, 1, PngForm::kFull, {}}, &png));
    ASSERT_TRUE(writer.AddRow(&pixels[0].red));
    ASSERT_TRUE(writer.Finish());
    Bytes said(124), unsaid(40), opaque = WidePicture({{0, 255, 0}});
    BitmapHeader header = {40, 3, 1, 1, 32, 0, 0, 0, 0, 0, 0};
    memcpy(unsaid.data(), &header, sizeof header);
    header.size = 124, header.compression = 3;
    const uint32_t masks[] = {0xFF0000, 0xFF00, 0xFF, 0xFF000000};
    memcpy(said.data(), &header, sizeof header);
    memcpy(said.data() + sizeof header, masks, sizeof masks);
    for (Bytes* dib : {&said, &unsaid})
        for (const auto& pixel : pixels) dib->insert(dib->end(), {pixel.blue, pixel.green, pixel.red, pixel.opacity});
    const UINT pngFormat = RegisterClipboardFormatW(L"PNG");
    const Bytes broken(png.Content().begin(), png.Content().end() - 9);
    const struct {
        const char* name;
        std::vector<ClipboardPart> parts;
    } offers[] = {{"PNG", {{pngFormat, png.Content()}}},
                  {"PNG, although it is not the first", {{CF_DIB, opaque}, {pngFormat, png.Content()}}},
                  {"long header", {{CF_DIBV5, said}}},
                  {"short header", {{CF_DIB, unsaid}}},
                  {"what was put there first", {{CF_DIBV5, said}, {CF_DIB, opaque}}},
                  {"the form that can be read", {{pngFormat, broken}, {CF_DIB, unsaid}}}};
    for (const auto& [name, parts] : offers) {
        SCOPED_TRACE(name);
        ASSERT_TRUE(PutOnClipboard(hMainWindow, parts));
        EXPECT_TRUE(CanDo(IDM_PASTE));
        Select(kSampleComment);
        Run(IDM_PASTE, {});
        ASSERT_EQ(KindsOf(document), "12346327259083") << "a control and the image";
        const ControlFields control = GetControlFields(At(kSampleComment + 1));
        const Block pasted = At(kSampleComment + 2);
        EXPECT_TRUE(control.packed & kControlTransparent);
        EXPECT_EQ(ColourAt(pasted, 0), (RgbTriple{255, 0, 0}));
        EXPECT_EQ(ColourAt(pasted, 2), (RgbTriple{0, 0, 255}));
        ImageLock bitmap(pasted.data);
        EXPECT_EQ(GetImagePixel(bitmap, 1, 0), control.transparentIndex);
        Command(IDM_UNDO);
    }
    // And the other way: the image behind the control, without our own form of it.
    ASSERT_TRUE(PutOnClipboard(hMainWindow, offers[0].parts));
    Run(IDM_PASTE, {});
    Run(IDM_COPY, {});
    EXPECT_EQ(FormatsOnClipboard(hMainWindow)[2], UINT{CF_DIBV5});
    const std::string dib = OnClipboard(CF_DIBV5);
    ASSERT_EQ(dib.size(), said.size());
    for (size_t x : {0u, 1u, 2u}) EXPECT_EQ(static_cast<uint8_t>(dib[124 + 4 * x + 3]), pixels[x].opacity);
}

TEST_F(ClipboardTest, ForeignColoursAskOnce) {
    GifBytes bytes;
    bytes.Header("GIF89a", 2, 2, 0x80).SmallImage().Add({0x3B});
    Offer(BlocksFormat(), bytes);
    Select(0);
    Run(IDM_PASTE, {Press(IDCANCEL)});
    EXPECT_EQ(document.count, 12u);
    Run(IDM_PASTE, {Press(IDOK)});
    EXPECT_EQ(document.count, 13u);
    EXPECT_EQ(At(1).kind, kImageBlock);
}

TEST_F(ClipboardTest, SecondLoopAndHostileBytesAreRefused) {
    Select(kSampleLoop);
    Run(IDM_COPY, {});
    Run(IDM_PASTE, {Read("A LOOP block already exists in this image. Delete it before inserting a new one.", IDOK)});
    const std::string kinds = KindsOf(document);
    GifBytes header, endless;
    header.Header("GIF89a", 2, 2, 0x80);
    endless.Header("GIF89a", 65535, 65535, 0x80).Add({0x2C, 0, 0, 0, 0, 255, 255, 255, 255, 0, 13, 255});
    const std::pair<UINT, Bytes> offers[] = {{BlocksFormat(), Bytes{0}},
                                             {BlocksFormat(), Bytes(1000, 0x2C)},
                                             {BlocksFormat(), header},
                                             {CF_DIB, Bytes{40, 0, 0, 0}},
                                             {CF_DIB, Bytes(400, 0xFF)}};
    documentChanged = false;
    for (const auto& [format, bytes] : offers) {
        Offer(format, bytes);
        Run(IDM_PASTE, {Read(kUnreadable, IDOK)});
        EXPECT_EQ(KindsOf(document), kinds);
    }
    EXPECT_FALSE(documentChanged);
    Offer(BlocksFormat(), endless);
    Run(IDM_PASTE, {Press(IDOK)},
        {Read("Its picture can't be decoded, and its colours are not the document's.", IDOK)});
    EXPECT_EQ(KindsOf(document), kinds);
    Command(IDM_CLOSE);
    EXPECT_FALSE(CanDo(IDM_PASTE));
}

// What two editors at work cost: nothing stays.
TEST_F(ClipboardTest, FiveHundredOperationsGiveEverythingBack) {
    auto objects = [] { return std::pair(FreeGdiObjects(), FreeUserObjects()); };
    auto handles = [] {
        DWORD count = 0;
        EXPECT_TRUE(GetProcessHandleCount(GetCurrentProcess(), &count));
        return count;
    };
    auto round = [&] {
        Select(kSampleComment);
        for (int command : {IDM_CUT, IDM_PASTE, IDM_DUPLICATE, IDM_MOVE_UP, IDM_MOVE_DOWN, IDM_COPY, IDM_UNDO, IDM_UNDO,
                            IDM_UNDO, IDM_REDO, IDM_UNDO})
            SendMessageW(hMainWindow, WM_COMMAND, static_cast<WPARAM>(command), 0);
        for (int i = 0; i < 2 && UndoName(); ++i) SendMessageW(hMainWindow, WM_COMMAND, IDM_UNDO, 0);
    };
    for (int i = 0; i < 3; ++i) round();
    const auto objectsBefore = objects();
    const DWORD handlesBefore = handles();
    for (int i = 0; i < 45; ++i) round();
    EXPECT_EQ(objects(), objectsBefore);
    EXPECT_EQ(handles(), handlesBefore);
    EXPECT_EQ(KindsOf(document), "123467259083");
}

}  // namespace

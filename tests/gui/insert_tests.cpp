// The Insert command: its two questions, and what comes into the document.
#include <algorithm>
#include <cstring>

#include "app/shell_state.h"
#include "editing/dialogs/insert_box.h"
#include "editing/palette_match.h"
#include "gif/default_blocks.h"
#include "gif/descriptor.h"
#include "gif/gif_writer.h"
#include "imaging/dither.h"
#include "imaging/remap.h"
#include "imaging/standard_palette.h"
#include "platform/wide_text.h"
#include "resources/command_ids.h"
#include "resources/insert_ids.h"
#include "tests/gui/editor_test.h"
#include "tests/gui/window_driver.h"

namespace {

using Texts = std::vector<std::string>;

constexpr char kMismatch[] =
    "The palette of the image you have imported does not match the global palette for this file. You can:";

HWND ChildWithText(HWND dialog, const char* text) {
    return FindWindowExW(dialog, nullptr, nullptr, WideFromUtf8(text).c_str());
}

std::string PixelsOf(MemoryHandle image) {
    MemoryLock lock(image);
    auto* bitmap = lock.As<const BitmapHeader>();
    return std::string(reinterpret_cast<const char*>(ImagePixels(bitmap)), bitmap->imageBytes);
}

class InsertTest : public ShellTest {
protected:
    void SetUp() override {
        ShellTest::SetUp();
        SetCurrentDirectoryW(WideFromUtf8(Folder()).c_str());  // where the file dialog starts
    }
    void TearDown() override {
        SetCurrentDirectoryW(L"C:\\");  // the folder is about to be deleted
        ShellTest::TearDown();
    }

    // Runs the command: the button of the kind, the names typed into the file dialog, then `questions`.
    void Insert(int button, const std::string& files = "", const std::vector<Steps>& questions = {}) {
        DialogAnswers answers;
        answers.Press(button);
        if (!files.empty()) answers.ChooseFile(files);
        for (const Steps& steps : questions) answers.Do(steps);
        Command(IDM_INSERT);
    }

    // A file with one picture in the colours of a standard palette: every index in turn.
    std::string MakePicture(const std::string& name, int width, int paletteKind = kPaletteGrey) const {
        BlockList list;
        EXPECT_TRUE(NewDocument(&list));
        Block header = {}, image = {};
        EXPECT_TRUE(GetBlock(list, &header, 0));
        int depth;
        StandardPalette(header.palette, &depth, paletteKind);
        auto sizeCode = static_cast<uint8_t>(depth - 1);
        PutHeaderFields(&header, {640, 480, static_cast<uint8_t>(kHasPalette | sizeCode), 0, 0});
        EXPECT_TRUE(PutBlock(&list, header, 0));
        image.kind = kImageBlock;
        image.data = CreateImageBitmap(width, 10, header.palette, depth);
        for (int i = 0; i < width * 10; ++i) {
            MemoryLock lock(image.data);
            SetImagePixel(lock.As<BitmapHeader>(), i % width, i / width, static_cast<uint32_t>(i & ((1 << depth) - 1)));
        }
        PutImageFields(&image, {0, 0, static_cast<uint16_t>(width), 10, sizeCode});
        EXPECT_TRUE(AppendBlock(&list, &image));
        EXPECT_TRUE(WriteGifFile(list, File(name).c_str()));
        DestroyBlockList(&list);
        return File(name);
    }

    // The kind names of the lines, images with their width.
    Texts Kinds() const {
        Texts kinds;
        for (const std::string& line : Lines()) {
            size_t separator = line.find('\xFE');
            kinds.push_back(line.substr(0, separator));
            if (kinds.back() != "IMAGE") continue;
            std::string size = line.substr(0, line.find(" x "));
            kinds.back() += size.substr(size.rfind(' '));
        }
        return kinds;
    }

    Block At(uint32_t index) const {
        Block block = {};
        EXPECT_TRUE(GetBlock(document, &block, index));
        return block;
    }

    void ChangeHeader(const std::function<void(Block* header)>& change) {
        Block header = At(0);
        change(&header);
        ASSERT_TRUE(PutBlock(&document, header, 0));
    }
    void BlackenPalette() {
        ChangeHeader([](Block* header) { memset(header->palette, 0, kPaletteBytes); });
    }
};

// Steps for the palette question.
Steps Choose(int choice, bool remember) {
    return [=](HWND dialog) {
        EXPECT_TRUE(ChildWithText(dialog, kMismatch));
        ClickBox(dialog, choice);
        if (IsChecked(dialog, IDC_PALETTE_SUBSEQUENT) != remember) ClickBox(dialog, IDC_PALETTE_SUBSEQUENT);
        PressButton(dialog, IDOK);
    };
}

TEST_F(InsertTest, EveryKindComesBehindEverySelection) {
    Open(MakeGif("a.gif"));  // header, comment, image, comment
    const std::pair<int, const char*> kinds[] = {
        {IDC_INSERT_CONTROL, "CONTROL"}, {IDC_INSERT_COMMENT, "COMMENT"}, {IDC_INSERT_PLAIN_TEXT, "PLAIN TEXT"}};
    Texts expected = Kinds();
    for (const auto& [button, name] : kinds)
        for (int selected = 0; selected < static_cast<int>(expected.size()); selected += 2) {
            documentChanged = false;
            Select(selected);
            Insert(button);
            expected.insert(expected.begin() + selected + 1, name);
            EXPECT_EQ(Kinds(), expected) << selected;
            EXPECT_EQ(Selection(), selected);
            EXPECT_TRUE(documentChanged);
            EXPECT_EQ(selectedLine, 65535u);
        }
}

TEST_F(InsertTest, TheLoopBlockComesFirstAndOnlyOnce) {
    Open(MakeGif("a.gif"));
    Select(2);
    Insert(IDC_INSERT_LOOP);
    const Texts expected = {"HEADER", "LOOP", "COMMENT", "IMAGE 20", "COMMENT"};
    EXPECT_EQ(Kinds(), expected);
    EXPECT_EQ(Selection(), 0);
    documentChanged = false;
    Select(3);
    Insert(IDC_INSERT_LOOP, "",
           {Read("A LOOP block already exists in this image. Delete it before inserting a new one.", IDOK)});
    EXPECT_EQ(Kinds(), expected);
    EXPECT_EQ(Selection(), 3);
    EXPECT_FALSE(documentChanged);
}

TEST_F(InsertTest, CancelInsertsNothing) {
    Open(MakeGif("a.gif"));
    Insert(IDCANCEL);
    EXPECT_FALSE(documentChanged);
    EXPECT_EQ(Lines().size(), 4u);
    Insert(IDC_INSERT_IMAGE, "", {Press(IDCANCEL)});  // of the file dialog
    EXPECT_FALSE(documentChanged);
    EXPECT_EQ(Lines().size(), 4u);
}

TEST_F(InsertTest, PlainTextWantsAGlobalPalette) {
    Open(MakeGif("a.gif"));
    for (bool palette : {true, false}) {
        ChangeHeader([=](Block* header) {
            HeaderFields fields = GetHeaderFields(*header);
            fields.packed = palette ? 0x87 : 0x07;
            PutHeaderFields(header, fields);
        });
        DialogAnswers answers;
        answers.Do([=](HWND dialog) {
            for (int id : {IDC_INSERT_IMAGE, IDC_INSERT_CONTROL, IDC_INSERT_COMMENT, IDC_INSERT_LOOP, IDCANCEL})
                EXPECT_TRUE(::IsEnabled(dialog, id)) << id;
            EXPECT_EQ(::IsEnabled(dialog, IDC_INSERT_PLAIN_TEXT), palette);
            PressButton(dialog, IDCANCEL);
        });
        EXPECT_EQ(ChooseInsertKind(hMainWindow, &document), 0);
    }
}

TEST_F(InsertTest, SeveralImagesComeInTheOrderOfTheirBytes) {
    MakePicture("c.gif", 3, kPaletteWeb);
    MakePicture("A.gif", 1, kPaletteWeb);
    MakePicture("b.gif", 2, kPaletteWeb);
    Open(MakeGif("doc.gif"));
    Select(1);
    Insert(IDC_INSERT_IMAGE, "\"c.gif\" \"A.gif\" \"b.gif\"");
    EXPECT_EQ(Kinds(), (Texts{"HEADER", "COMMENT", "IMAGE 1", "IMAGE 2", "IMAGE 3", "IMAGE 20", "COMMENT"}));
    EXPECT_EQ(Selection(), 1);
    EXPECT_TRUE(documentChanged);
    EXPECT_EQ(selectedLine, 65535u);
    char name[kNameBytes];
    EXPECT_TRUE(GetBlockName(name, At(2)));
    EXPECT_STREQ(name, "A.gif");
}

TEST_F(InsertTest, OneAnswerServesAllImagesOfOneCommand) {
    for (const char* name : {"a.gif", "b.gif", "c.gif"}) MakePicture(name, 4);
    Open(MakeGif("doc.gif"));
    const std::string all = "\"a.gif\" \"b.gif\" \"c.gif\"";
    Steps remembered = Choose(IDC_PALETTE_REMAP, true), once = Choose(IDC_PALETTE_DITHER, false);
    // DialogAnswers fails for a question too many and for one too few.
    Insert(IDC_INSERT_IMAGE, all, {remembered});
    Insert(IDC_INSERT_IMAGE, all, {once, once, once});
    Insert(IDC_INSERT_IMAGE, all, {once, remembered});
    Insert(IDC_INSERT_IMAGE, File("a.gif"), {once});
    EXPECT_EQ(Lines().size(), 14u);
}

TEST_F(InsertTest, ACancelledQuestionStopsTheSeries) {
    MakePicture("a.gif", 1, kPaletteWeb);
    MakePicture("b.gif", 2);
    MakePicture("c.gif", 3, kPaletteWeb);
    Open(MakeGif("doc.gif"));
    Insert(IDC_INSERT_IMAGE, "\"a.gif\" \"b.gif\" \"c.gif\"", {Press(IDCANCEL)});
    EXPECT_EQ(Kinds(), (Texts{"HEADER", "IMAGE 1", "COMMENT", "IMAGE 20", "COMMENT"}));
    EXPECT_EQ(Selection(), 0);
}

TEST_F(InsertTest, ImagesAreFittedAsChosen) {
    struct Row {
        int paletteKind, choice;
        bool dithered;
    };
    const Row rows[] = {{kPaletteGrey, IDC_PALETTE_REMAP, false},
                        {kPaletteGrey, IDC_PALETTE_DITHER, true},
                        {kPaletteSixteen, IDC_PALETTE_DITHER, true},
                        {kPaletteBlackWhite, IDC_PALETTE_REMAP, false}};
    for (const Row& row : rows) {
        Open(MakePicture("source.gif", 30, row.paletteKind));
        MemoryHandle source = At(1).data;
        RgbTriples web;
        StandardPalette(web, nullptr, kPaletteWeb);
        OwnedMemory expected((row.dithered ? DitherImage : RemapImage)(source, web, 8, 0));
        Open(MakeGif("doc.gif"));
        Insert(IDC_INSERT_IMAGE, File("source.gif"), {Choose(row.choice, true)});
        Block image = At(1);
        EXPECT_EQ(PixelsOf(image.data), PixelsOf(expected.Get())) << row.paletteKind;
        EXPECT_EQ(memcmp(image.palette, web, kPaletteBytes), 0);
        EXPECT_EQ(GetImageFields(image).packed, 7);
    }
}

TEST_F(InsertTest, ThePaletteQuestionOffersWhatIsPossible) {
    struct Row {
        int bitCount;
        bool black, remap, dither;  // the document is all black; which choices are enabled
        int checked;
    };
    const Row rows[] = {{8, false, true, true, IDC_PALETTE_DITHER},
                        {24, false, true, true, IDC_PALETTE_DITHER},
                        {4, true, false, false, IDC_PALETTE_DITHER},
                        {1, false, true, false, IDC_PALETTE_REMAP},
                        {1, true, false, false, IDC_PALETTE_REMAP}};
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << row.bitCount << (row.black ? " black" : ""));
        Open(MakeGif("doc.gif"));
        if (row.black) BlackenPalette();
        Block image = {};
        image.owner = &document;
        image.data = CreateImageBitmap(2, 2, nullptr, row.bitCount);
        for (int button : {IDOK, IDCANCEL}) {
            paletteChoiceForInsert = 77;
            DialogAnswers answers;
            answers.Do([&](HWND dialog) {
                EXPECT_EQ(::IsEnabled(dialog, IDC_PALETTE_REMAP), row.remap);
                EXPECT_EQ(::IsEnabled(dialog, IDC_PALETTE_DITHER), row.dither);
                EXPECT_EQ(IsChecked(dialog, IDC_PALETTE_REMAP), row.checked == IDC_PALETTE_REMAP);
                EXPECT_EQ(IsChecked(dialog, IDC_PALETTE_DITHER), row.checked == IDC_PALETTE_DITHER);
                EXPECT_TRUE(IsChecked(dialog, IDC_PALETTE_SUBSEQUENT));
                PressButton(dialog, button);
            });
            EXPECT_EQ(RunPaletteDialog(hMainWindow, image), button == IDOK ? row.checked : kPaletteCancel);
            EXPECT_EQ(paletteChoiceForInsert, button == IDOK ? row.checked : 77);
        }
        FreeMemory(image.data);
    }
}

TEST_F(InsertTest, AnAllBlackDocumentDithersToItsColours) {
    MakePicture("grey.gif", 5);
    Open(MakeGif("doc.gif"));
    BlackenPalette();
    Insert(IDC_INSERT_IMAGE, File("grey.gif"), {Press(IDOK)});
    EXPECT_EQ(Lines().size(), 5u);
    RgbTriples black = {};
    EXPECT_EQ(memcmp(At(1).palette, black, kPaletteBytes), 0);
}

TEST_F(InsertTest, UnusableFilesLeaveTheDocumentAsItIs) {
    MakePicture("web.gif", 30, kPaletteWeb);
    const std::string whole = ReadWholeFile(File("web.gif"));
    constexpr size_t kImageStart = kHeaderDescriptorBytes + kPaletteBytes;
    std::string corrupt = whole;
    corrupt.replace(kImageStart + 12, 2, "\xFF\xFF");  // the first code stands for nothing
    std::string noColours = whole;
    noColours.erase(kHeaderDescriptorBytes, kPaletteBytes)[10] = 7;
    const std::pair<const char*, std::string> sources[] = {
        {"empty.gif", ""},
        {"text.gif", "This is no picture at all, but long enough to look like the start of one."},
        {"corrupt.gif", corrupt},
        {"nocolours.gif", noColours},
        {"header.gif", whole.substr(0, 9)},
        {"palette.gif", whole.substr(0, 300)},
        {"descriptor.gif", whole.substr(0, kImageStart + 5)},
        {"noimage.gif", whole.substr(0, kImageStart) + ";"},
    };
    Open(MakeGif("doc.gif"));
    Select(2);
    const Texts before = Lines();
    for (const auto& [name, content] : sources) {
        WriteWholeFile(File(name), content);
        Insert(IDC_INSERT_IMAGE, File(name));
        EXPECT_EQ(Lines(), before) << name;
        EXPECT_EQ(document.count, 4u) << name;
        EXPECT_EQ(Selection(), 2) << name;
    }
}

TEST_F(InsertTest, AnImageThatIsCutShortKeepsTheRowsItHas) {
    MakePicture("web.gif", 30, kPaletteWeb);
    std::string whole = ReadWholeFile(File("web.gif"));
    WriteWholeFile(File("cut.gif"), whole.substr(0, kHeaderDescriptorBytes + kPaletteBytes + 60));
    Open(MakeGif("doc.gif"));
    Insert(IDC_INSERT_IMAGE, File("cut.gif"));
    EXPECT_EQ(Kinds()[1], "IMAGE 30");
    MemoryLock lock(At(1).data);
    EXPECT_EQ(GetImagePixel(lock.As<const BitmapHeader>(), 5, 0), 5u);
    EXPECT_EQ(GetImagePixel(lock.As<const BitmapHeader>(), 29, 9), 0u);
}

}  // namespace

// Make smaller: its dialog, what becomes of the document, and what is said about it.
#include "gif/descriptor.h"
#include "gif/source_bytes.h"
#include "tests/gui/animation.h"
#include "tests/gui/composed.h"
#include "tests/gui/editor_test.h"
#include "tests/gui/stopped_work.h"
#include "tests/support/gif_bytes.h"
#include "windows/ids/tool_ids.h"

namespace {

// Four frames on 60 x 40 that cover all of it, though only a square moves; a comment, and a loop. The screen is larger
// than the images.
class SmallerTest : public EditorTest {
protected:
    static constexpr size_t kFrames = 4;

    std::string MakeWasteful(const std::string& name) {
        BlockList list;
        EXPECT_TRUE(NewDocument(&list));
        PutHeaderFields(&list.blocks[0], {80, 50, GetHeaderFields(list.blocks[0]).packed, 0, 0});
        Append(&list, MakeText(kCommentBlock, "What this is"));
        for (int frame = 0; frame < static_cast<int>(kFrames); ++frame) {
            Block control = *MakeBlock(&list, kControlBlock);
            PutControlFields(&control, {0, static_cast<uint16_t>(10 + frame), 0});
            Append(&list, control);
            auto pixel = [=](int x, int y) {
                const bool isInSquare = x / 10 == frame && y / 10 == 1;
                return static_cast<uint32_t>(isInSquare ? 200 : (x / 6 + y / 4 + x * y % 3) % 40);
            };
            Append(&list, *MakeImageBlock(&list, MakeImage(60, 40, 8, nullptr, pixel)));
        }
        EXPECT_TRUE(WriteWholeGifFile(list, File(name).c_str(), &reason_));
        return File(name);
    }
    Bytes Saved() {
        Command(IDM_SAVE);
        return ReadAll(currentFileName);
    }
    static std::vector<std::vector<uint32_t>> Shown() {
        std::vector<std::vector<uint32_t>> frames;
        for (uint32_t frame = 0; frame < kFrames; ++frame) frames.push_back(Compose(document, frame).pixels);
        return frames;
    }
    static std::string Grouped(size_t number) {
        const std::string text = std::to_string(number);
        return text.size() > 3 ? text.substr(0, text.size() - 3) + " " + text.substr(text.size() - 3) : text;
    }
    // Answers the question about the result, which it keeps.
    Steps Answer(int button) {
        return [=, this](HWND dialog) {
            said_ = ControlText(dialog, 101);
            PressButton(dialog, button);
        };
    }

    std::string said_;

private:
    std::string reason_;
};

TEST_F(SmallerTest, ItIsOneStepAndTheSizesAreThoseOfTheFiles) {
    for (bool careful : {false, true}) {
        SCOPED_TRACE(careful ? "whole" : "classic");
        settings.carefulMode = careful;
        Open(MakeWasteful("kite.gif"));
        const Bytes before = Saved();  // classic fits the screen and signs the file
        const auto looks = Shown();
        const size_t steps = DocumentHistory().Steps();
        const Ids controls = {IDC_SMALLER_FAST,        IDC_SMALLER_NORMAL, IDC_SMALLER_MAX,
                              IDC_SMALLER_KEEP_FRAMES, IDC_SMALLER_LOSSY,  IDC_SMALLER_COMMENTS};
        Run(IDM_MAKE_SMALLER, {See(controls, "off|on|off|off|0|off", IDOK), Answer(IDNO)});
        EXPECT_EQ(DocumentHistory().Steps(), steps);
        EXPECT_FALSE(documentChanged);

        Select(3);
        Run(IDM_MAKE_SMALLER, {[&](HWND dialog) {
                                   EXPECT_EQ(ControlText(dialog, IDC_SMALLER_BEFORE),
                                             "Saved now: " + Grouped(before.size()) + " bytes");
                                   EXPECT_EQ(GetDlgCtrlID(GetFocus()), IDC_SMALLER_NORMAL) << "the one that is on";
                                   Press(IDOK, {{IDC_SMALLER_FAST}})(dialog);
                               },
                               Answer(IDYES)});
        EXPECT_EQ(DocumentHistory().Steps(), steps + 1);
        ASSERT_TRUE(UndoName());
        EXPECT_EQ(*UndoName(), "Make smaller");
        EXPECT_EQ(Selection(), 3);
        EXPECT_TRUE(documentChanged);
        const Bytes after = Saved();
        EXPECT_LT(after.size(), before.size());
        EXPECT_TRUE(said_.starts_with(Grouped(before.size()) + " bytes become " + Grouped(after.size()) + ", "))
            << said_ << " " << after.size();
        EXPECT_NE(said_.find("\nIt looks and plays the same.\n"), std::string::npos) << said_;
        EXPECT_EQ(said_.find("saved whole") != std::string::npos, !careful) << said_;
        EXPECT_EQ(Shown(), looks);
        Open(File("kite.gif"));
        EXPECT_EQ(Shown(), looks) << "as the file has it";
        EXPECT_EQ(GetHeaderFields(At(0)).screenWidth, careful ? 80 : 60);
    }
}

TEST_F(SmallerTest, UndoGivesTheBytesBack) {
    for (bool careful : {false, true}) {
        SCOPED_TRACE(careful ? "whole" : "classic");
        settings.carefulMode = careful;
        Open(MakeWasteful("kite.gif"));
        const Bytes before = Saved();
        Run(IDM_MAKE_SMALLER, {Press(IDOK, {{IDC_SMALLER_FAST}}), Answer(IDYES)});
        const Bytes after = Saved();
        Command(IDM_UNDO);
        EXPECT_EQ(Saved(), before);
        Command(IDM_REDO);
        EXPECT_EQ(Saved(), after);
    }
}

TEST_F(SmallerTest, TheScreenNoLongerFollowsTheImages) {
    for (bool careful : {false, true}) {
        SCOPED_TRACE(careful ? "made here, in careful mode" : "classic");
        settings.carefulMode = careful;
        Open(MakeWasteful("kite.gif"));
        if (careful) document.flags = kMadeHere;
        for (uint32_t index = 0; index < document.count; ++index) {  // the right sixth of all frames shows nothing
            Block block = At(static_cast<int>(index));
            if (block.kind == kControlBlock) {
                ControlFields fields = GetControlFields(block);
                fields.packed |= kControlTransparent;
                fields.transparentIndex = 215;
                PutControlFields(&block, fields);
            }
            if (block.kind == kImageBlock) {
                ImageWriteLock bitmap(&block.data);
                for (int y = 0; y < 40; ++y)
                    for (int x = 50; x < 60; ++x) SetImagePixel(bitmap, x, y, 215);
            }
            EXPECT_TRUE(MarkChanged(&block));
            Put(block);
        }
        Run(IDM_MAKE_SMALLER, {Press(IDOK, {{IDC_SMALLER_FAST}}), Answer(IDYES)});
        for (const Block& block : document.All())
            EXPECT_TRUE(block.kind != kImageBlock || GetImageFields(block).width <= 50);
        Saved();
        EXPECT_EQ(GetHeaderFields(At(0)).screenWidth, 60);
        EXPECT_EQ(GetHeaderFields(At(0)).screenHeight, 40);
    }
}

TEST_F(SmallerTest, StoppedItChangesNothing) {
    Open(MakeWasteful("kite.gif"));
    const Bytes before = Saved();
    const std::string state = StateOf(document);
    {
        const StoppedWork stopped;
        Run(IDM_MAKE_SMALLER, {Press(IDCANCEL)});  // while it is measured
    }
    const Steps start = [](HWND dialog) {
        workWaitsForStop = true;
        PressButton(dialog, IDOK);
    };
    Run(IDM_MAKE_SMALLER, {start, Press(IDCANCEL)});
    workWaitsForStop = false;
    EXPECT_EQ(StateOf(document), state);
    EXPECT_FALSE(documentChanged);
    EXPECT_FALSE(IsEnabled(IDM_UNDO) && UndoName() && *UndoName() == "Make smaller");
    EXPECT_EQ(Saved(), before);
}

TEST_F(SmallerTest, WhatIsRefusedIsSaid) {
    Open(MakeWasteful("kite.gif"));
    const Steps thorough = Press(IDOK, {{IDC_SMALLER_FAST}});
    Run(IDM_MAKE_SMALLER, {thorough, Answer(IDYES)});
    Run(IDM_MAKE_SMALLER,
        {thorough, Read("Nothing smaller was found that plays the same. The document stays as it is.", IDOK)});
    EXPECT_EQ(*UndoName(), "Make smaller");

    // A number that is none may be corrected.
    const Steps correct = [&](HWND dialog) {
        Press(IDOK, {{IDC_SMALLER_LOSSY, "256"}})(dialog);
        PressButton(dialog, IDCANCEL);
    };
    Run(IDM_MAKE_SMALLER, {correct, Read("Give a number from 0 to 255; 0 changes no colour.", IDOK)});

    settings.carefulMode = 1;
    Bytes cut = ReadAll(MakeWasteful("cut.gif"));
    cut.resize(cut.size() - 100);
    WriteAll(File("cut.gif"), cut);
    documentChanged = false;
    Open(File("cut.gif"));
    Run(IDM_MAKE_SMALLER, {Press(IDOK), Read("This document is left alone, because it is damaged.", IDOK)});
    EXPECT_EQ(Saved(), cut);
}

// Nothing is damaged in a document that has no frames, and no picture of it is left alone.
TEST_F(SmallerTest, ADocumentWithoutFramesIsNotCalledDamaged) {
    MadeAnimation made(10, 10);
    Append(made.List(), MakeText(kCommentBlock, "What this is"));
    ASSERT_TRUE(WriteGifFile(*made.List(), File("text.gif").c_str()));
    settings.carefulMode = 1;
    Open(File("text.gif"));
    Run(IDM_MAKE_SMALLER, {Press(IDOK), Read("There are no frames in this document.", IDOK)});
    Run(IDM_MAKE_SMALLER, {Press(IDOK, {{IDC_SMALLER_COMMENTS}}), Answer(IDYES)});
    EXPECT_EQ(said_.substr(said_.find('\n')), "\n2 blocks will be gone.\nTake it?") << "one says who saved it";
    EXPECT_EQ(FindBlock(document, kCommentBlock), -1);
}

// View shows texts.
TEST_F(SmallerTest, WithoutItsTextsItDoesNotLookTheSame) {
    settings.carefulMode = 1;
    Open(MakeWasteful("kite.gif"));
    Append(&document, *MakeBlock(&document, kPlainTextBlock));
    const Steps search = Press(IDOK, {{IDC_SMALLER_TEXTS}, {IDC_SMALLER_FAST}});
    Run(IDM_MAKE_SMALLER, {search, Answer(IDYES)});
    EXPECT_NE(said_.find("\nIts pictures look and play the same.\n1 block will be gone.\n"), std::string::npos)
        << said_;
    Command(IDM_UNDO);
    Run(IDM_MAKE_SMALLER, {Press(IDOK, {{IDC_SMALLER_FAST}}), Answer(IDNO)});
    EXPECT_NE(said_.find("\nIt looks and plays the same.\n"), std::string::npos) << said_;
}

TEST_F(SmallerTest, ThePriceIsSaid) {
    settings.carefulMode = 1;
    Open(MakeWasteful("kite.gif"));
    Run(IDM_MAKE_SMALLER,
        {Press(IDOK, {{IDC_SMALLER_LOSSY, "255"}, {IDC_SMALLER_COMMENTS}, {IDC_SMALLER_FAST}}), Answer(IDYES)});
    EXPECT_NE(said_.find("\nColours are up to "), std::string::npos) << said_;
    EXPECT_NE(said_.find(" of 255 off, "), std::string::npos) << said_;
    EXPECT_NE(said_.find("\n1 block will be gone."), std::string::npos) << said_;
    EXPECT_EQ(FindBlock(document, kCommentBlock), -1);

    // Of what is left alone blocks can be taken out all the same.
    Bytes cut = ReadAll(MakeWasteful("cut.gif"));
    cut.resize(cut.size() - 100);
    WriteAll(File("cut.gif"), cut);
    documentChanged = false;
    Open(File("cut.gif"));
    Run(IDM_MAKE_SMALLER, {Press(IDOK, {{IDC_SMALLER_COMMENTS}}), Answer(IDYES)});
    EXPECT_NE(said_.find("\nIts pictures are left alone, because it is damaged."), std::string::npos) << said_;
    const size_t comment = 2 + 1 + 12 + 1;
    EXPECT_EQ(Saved().size(), cut.size() - comment);
}

}  // namespace

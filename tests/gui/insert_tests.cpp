// The questions of the Insert command, and what comes of their answers.
#include <cstring>
#include <tuple>

#include "app/shell_state.h"
#include "editing/dialogs/insert_box.h"
#include "editing/palette_match.h"
#include "gif/descriptor.h"
#include "platform/wide_text.h"
#include "resources/command_ids.h"
#include "resources/insert_ids.h"
#include "tests/gui/editor_test.h"
#include "tests/gui/window_driver.h"

namespace {

constexpr wchar_t kMismatch[] =
    L"The palette of the image you have imported does not match the global palette for this file. You can:";

class InsertTest : public ShellTest {
protected:
    void ChangeHeader(uint8_t packed, int colour) {
        Block header = {};
        EXPECT_TRUE(GetBlock(document, &header, 0));
        PutHeaderFields(&header, {20, 10, packed, 0, 0});
        memset(header.palette, colour, kPaletteBytes);
        EXPECT_TRUE(PutBlock(&document, header, 0));
    }
};

TEST_F(InsertTest, EveryKindHasItsButton) {
    Open(MakeGif("a.gif"));
    auto answerTo = [](const Steps& steps) {
        DialogAnswers answers;
        answers.Do(steps);
        return ChooseInsertKind(hMainWindow, &document);
    };
    EXPECT_EQ(answerTo(Press(IDC_INSERT_IMAGE)), kImageBlock);
    EXPECT_EQ(answerTo(Press(IDC_INSERT_CONTROL)), kControlBlock);
    EXPECT_EQ(answerTo(Press(IDC_INSERT_COMMENT)), kCommentBlock);
    EXPECT_EQ(answerTo(Press(IDC_INSERT_LOOP)), kLoopBlock);
    EXPECT_EQ(answerTo(Press(IDC_INSERT_PLAIN_TEXT)), kPlainTextBlock);
    ChangeHeader(0x07, 1);
    EXPECT_EQ(answerTo(See({IDC_INSERT_PLAIN_TEXT}, "[off]", IDCANCEL)), 0) << "without a global palette";
}

TEST_F(InsertTest, OneAnswerServesAllImagesOfOneCommand) {
    for (const char* name : {"a.gif", "b.gif", "c.gif"}) MakeGif(name);
    Open(MakeGif("doc.gif"));
    ChangeHeader(0x87, 1);
    auto answer = [](int choice, bool remember) {
        return [=](HWND dialog) {
            EXPECT_TRUE(FindWindowExW(dialog, nullptr, nullptr, kMismatch));
            ClickBox(dialog, choice);
            if (!remember) ClickBox(dialog, IDC_PALETTE_SUBSEQUENT);
            PressButton(dialog, IDOK);
        };
    };
    const Steps remembered = answer(IDC_PALETTE_REMAP, true), once = answer(IDC_PALETTE_DITHER, false);
    const std::pair<std::vector<Steps>, size_t> commands[] = {{{remembered}, 3},
                                                              {{once, once, once}, 3},
                                                              {{once, remembered}, 3},
                                                              {{once, Press(IDCANCEL)}, 1}};  // which stops the series
    size_t lines = Lines().size();
    for (const auto& [questions, inserted] : commands) {
        DialogAnswers answers;  // fails for a question too many and for one too few
        answers.Press(IDC_INSERT_IMAGE);
        answers.ChooseFiles(Folder(), {"a.gif", "b.gif", "c.gif"});
        for (const Steps& question : questions) answers.Do(question);
        Command(IDM_INSERT);
        EXPECT_EQ(Lines().size(), lines += inserted);
    }
}

TEST_F(InsertTest, ThePaletteQuestionOffersWhatIsPossible) {
    // Bits of the image, whether the document is all black, what the choices and the box show, and what OK answers.
    const std::tuple<int, bool, const char*, int> rows[] = {{8, false, "off|on|on", IDC_PALETTE_DITHER},
                                                            {24, false, "off|on|on", IDC_PALETTE_DITHER},
                                                            {4, true, "[off]|[on]|on", IDC_PALETTE_DITHER},
                                                            {1, false, "on|[off]|on", IDC_PALETTE_REMAP},
                                                            {1, true, "[on]|[off]|on", IDC_PALETTE_REMAP}};
    Open(MakeGif("doc.gif"));
    for (const auto& [bitCount, black, shown, choice] : rows)
        for (int button : {IDOK, IDCANCEL}) {
            SCOPED_TRACE(testing::Message() << bitCount << (black ? " black" : ""));
            ChangeHeader(0x87, black ? 0 : 1);
            Block image = {};
            image.owner = &document;
            image.data = CreateImageBitmap(2, 2, nullptr, bitCount);
            paletteChoiceForInsert = 77;
            DialogAnswers answers;
            answers.Do(See({IDC_PALETTE_REMAP, IDC_PALETTE_DITHER, IDC_PALETTE_SUBSEQUENT}, shown, button));
            EXPECT_EQ(RunPaletteDialog(hMainWindow, image), button == IDOK ? choice : kPaletteCancel);
            EXPECT_EQ(paletteChoiceForInsert, button == IDOK ? choice : 77);
            FreeMemory(image.data);
        }
}

}  // namespace

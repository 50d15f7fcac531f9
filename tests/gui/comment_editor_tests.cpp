// Texts must come out of the comment editor as they went in.
#include "editing/dialogs/edit_block.h"
#include "platform/faults.h"
#include "resources/editor_ids.h"
#include "tests/gui/editor_test.h"

namespace {

using CommentEditor = EditorTest;

void SetComment(SampleDocument& document, const std::string& text) {
    Block comment = document.At(kSampleComment);
    ASSERT_TRUE(SetBlockText(&comment, text.data(), static_cast<uint32_t>(text.size())));
    document.Put(comment);
}

std::string BytesFrom(int first, int last) {
    std::string bytes;
    for (int byte = first; byte <= last; ++byte) bytes += static_cast<char>(byte);
    return bytes;
}

// Lines of words of bytes above 127. (One endless word would keep Wine's edit field busy for seconds.)
std::string LongText(size_t bytes) {
    std::string text;
    while (text.size() < bytes) text += "\xE9t\xE9 \x80 \x9Cl\xE0\x9D\r\n";
    return text.substr(0, bytes);
}

TEST_F(CommentEditor, OkLosesNothing) {
    const struct {
        const char* what;
        std::string text;
    } rows[] = {
        {"every byte that a text can hold", BytesFrom(1, 255)},
        {"the bytes without a character", "\x81 \x8D \x8F \x90 \x9D"},
        {"line ends of all systems", "a\r\nb\nc\rd\r\n\r\ne\n\nf\r\r\ng\r\n"},
        {"a line longer than the field is wide", std::string(500, 'w')},
        {"the longest text", LongText(kMaxTextBytes)},
        {"blanks at both ends", "  \t text \r\n "},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        SampleDocument document;
        SetComment(document, row.text);
        EXPECT_EQ(Edit(document, kSampleComment, {Press(IDOK)}), kBlockEdited);
        EXPECT_EQ(document.TextOf(kSampleComment), row.text);
    }
}

TEST_F(CommentEditor, TextEndsAtANul) {
    SampleDocument document;
    SetComment(document, std::string("seen\0unseen", 11));
    EXPECT_EQ(Edit(document, kSampleComment, {Press(IDOK)}), kBlockEdited);
    EXPECT_EQ(document.TextOf(kSampleComment), "seen");
}

TEST_F(CommentEditor, TakesWhatIsTyped) {
    SampleDocument document;
    auto type = [](HWND dialog) {
        HWND edit = GetDlgItem(dialog, IDC_COMMENT_TEXT);
        SendMessageW(edit, EM_SETSEL, 0, -1);
        for (wchar_t letter : std::wstring(L"d\u00E9j\u00E0\r\u20AC5 \u4E2D")) SendMessageW(edit, WM_CHAR, letter, 0);
        PressButton(dialog, IDOK);
    };
    EXPECT_EQ(Edit(document, kSampleComment, {type}), kBlockEdited);
    EXPECT_EQ(document.TextOf(kSampleComment),
              "d\xE9j\xE0\r\n\x80"
              "5 ?");
    EXPECT_EQ(document.LineOf(kSampleComment), "COMMENT\xFE d\xE9j\xE0");
}

TEST_F(CommentEditor, TypingStopsAtTheLimit) {
    SampleDocument document;
    SetComment(document, LongText(kMaxTextBytes - 1));
    auto type = [](HWND dialog) {
        HWND edit = GetDlgItem(dialog, IDC_COMMENT_TEXT);
        SendMessageW(edit, EM_SETSEL, 0, 0);
        for (wchar_t letter : std::wstring(L"yz")) SendMessageW(edit, WM_CHAR, letter, 0);
        PressButton(dialog, IDOK);
    };
    EXPECT_EQ(Edit(document, kSampleComment, {type}), kBlockEdited);
    EXPECT_EQ(document.TextOf(kSampleComment), "y" + LongText(kMaxTextBytes - 1));
}

TEST_F(CommentEditor, EmptyTextLeavesNoData) {
    SampleDocument document;
    EXPECT_EQ(Edit(document, kSampleComment, {Type(IDC_COMMENT_TEXT, "", IDOK)}), kBlockEdited);
    EXPECT_EQ(document.At(kSampleComment).data, nullptr);
    EXPECT_EQ(document.At(kSampleComment).dataLength, 0u);
    EXPECT_EQ(Edit(document, kSampleComment, {Type(IDC_COMMENT_TEXT, "again", IDOK)}), kBlockEdited);
    EXPECT_EQ(document.TextOf(kSampleComment), "again");
}

TEST_F(CommentEditor, CancelKeepsTheText) {
    SampleDocument document;
    EXPECT_EQ(Edit(document, kSampleComment, {Type(IDC_COMMENT_TEXT, "lost", IDCANCEL)}), kBlockUnchanged);
    EXPECT_EQ(document.TextOf(kSampleComment), "This space for rent...");
}

TEST_F(CommentEditor, OutOfMemoryKeepsTheOldText) {
    SampleDocument document;
    auto edit = [](HWND dialog) {
        SetText(dialog, IDC_COMMENT_TEXT, "new");
        faults.allocationsUntilFailure = 0;
        PressButton(dialog, IDOK);
    };
    auto read = [](HWND dialog) {
        faults.allocationsUntilFailure = Faults::kNever;
        Read("There has been an error allocating memory.", IDOK)(dialog);
    };
    EXPECT_EQ(Edit(document, kSampleComment, {edit, read}), kBlockEdited);
    EXPECT_EQ(document.TextOf(kSampleComment), "This space for rent...");
}

// Shown empty, the text would be lost with OK.
TEST_F(CommentEditor, TextThatCannotBeReadIsNotEdited) {
    SampleDocument document;
    DialogAnswers answers;
    answers.Do([](HWND dialog) {
        faults.locksUntilFailure = Faults::kNever;
        Read("There has been an error allocating memory.", IDOK)(dialog);
    });
    faults.locksUntilFailure = 1;  // the list is read, the text is not
    EXPECT_EQ(EditBlock(nullptr, document.List(), kSampleComment), kBlockUnchanged);
    EXPECT_EQ(document.TextOf(kSampleComment), "This space for rent...");
}

TEST_F(CommentEditor, UnwritableListKeepsTheOldText) {
    SampleDocument document;
    auto edit = [](HWND dialog) {
        SetText(dialog, IDC_COMMENT_TEXT, "new");
        faults.locksUntilFailure = 1;  // the new text is stored, the list can't be reached
        PressButton(dialog, IDOK);
    };
    EXPECT_EQ(Edit(document, kSampleComment, {edit}), kBlockInaccessible);
    faults.locksUntilFailure = Faults::kNever;
    EXPECT_EQ(document.TextOf(kSampleComment), "This space for rent...");
}

}  // namespace

// What screen readers are told, asked by the calls that they use, and whether the keyboard gets everywhere.
#include <algorithm>
#include <functional>
#include <thread>

#include "tests/gui/animation.h"
#include "tests/gui/editor_test.h"
#include "windows/app/notice_strip.h"
#include "windows/dialogs/document_operations.h"
#include "windows/dialogs/select_colour.h"
#include "windows/dialogs/timing_dialog.h"
#include "windows/ids/insert_ids.h"
#include "windows/ids/notice_ids.h"
#include "windows/ids/pane_ids.h"
#include "windows/ids/wizard_ids.h"
#include "windows/services/messages.h"
#include "windows/services/progress_dialog.h"
#include "windows/services/screen_reader.h"

namespace {

// A window as a reader has it. Children count from 1; CHILDID_SELF is the window itself.
class Reader {
public:
    explicit Reader(HWND window, LONG object = static_cast<LONG>(OBJID_CLIENT)) {
        found_ = AccessibleObjectFromWindow(window, static_cast<DWORD>(object), __uuidof(IAccessible),
                                            reinterpret_cast<void**>(&object_));
        EXPECT_EQ(found_, S_OK);
    }
    ~Reader() {
        if (object_) object_->Release();
    }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;
    IAccessible* operator->() const { return object_; }

    static VARIANT Child(long number) {
        VARIANT child = {};
        child.vt = VT_I4;
        child.lVal = number;
        return child;
    }
    std::string Name(long child = CHILDID_SELF) const {
        BSTR name = nullptr;
        const HRESULT result = object_->get_accName(Child(child), &name);
        const std::string text = name ? Utf8FromWide(name) : "";
        SysFreeString(name);
        return result == S_OK ? text : "(" + std::to_string(result) + ")";
    }
    std::vector<std::string> ChildNames() const {
        std::vector<std::string> names;
        for (long child = 1; child <= Count(); ++child) names.push_back(Name(child));
        return names;
    }
    long Role(long child = CHILDID_SELF) const { return Number(&IAccessible::get_accRole, child); }
    long State(long child = CHILDID_SELF) const { return Number(&IAccessible::get_accState, child); }
    long Count() const {
        long count = -1;
        EXPECT_EQ(object_->get_accChildCount(&count), S_OK);
        return count;
    }
    // The child's number, or -1 where none is named.
    long Focus() const { return Number(&IAccessible::get_accFocus); }
    long Selection() const { return Number(&IAccessible::get_accSelection); }
    RECT Place(long child) const {
        long left = 0, top = 0, width = 0, height = 0;
        EXPECT_EQ(object_->accLocation(&left, &top, &width, &height, Child(child)), S_OK);
        return {left, top, left + width, top + height};
    }
    long At(POINT place) const {
        VARIANT hit = {};
        return object_->accHitTest(place.x, place.y, &hit) == S_OK && hit.vt == VT_I4 ? hit.lVal : -1;
    }
    long Next(long direction, long child) const {
        VARIANT next = {};
        return object_->accNavigate(direction, Child(child), &next) == S_OK && next.vt == VT_I4 ? next.lVal : -1;
    }

private:
    long Number(HRESULT (STDMETHODCALLTYPE IAccessible::*get)(VARIANT, VARIANT*), long child) const {
        VARIANT number = {};
        return (object_->*get)(Child(child), &number) == S_OK && number.vt == VT_I4 ? number.lVal : -1;
    }
    long Number(HRESULT (STDMETHODCALLTYPE IAccessible::*get)(VARIANT*)) const {
        VARIANT number = {};
        return (object_->*get)(&number) == S_OK && number.vt == VT_I4 ? number.lVal : -1;
    }

    IAccessible* object_ = nullptr;
    HRESULT found_ = E_FAIL;
};

POINT MiddleOf(const RECT& place) {
    return {(place.left + place.right) / 2, (place.top + place.bottom) / 2};
}

class ScreenReaderTest : public EditorTest {
protected:
    static HWND List() { return GetDlgItem(hMainWindow, IDC_BLOCK_LIST); }
    static HWND Strip() { return GetDlgItem(hMainWindow, IDC_FILMSTRIP); }
    void SetUp() override {
        EditorTest::SetUp();
        StartHistory(true);
        FillBlockListView(hMainWindow, &document);
        SelectLine(hMainWindow, 0);
    }
};

TEST_F(ScreenReaderTest, TheLinesAreReadByKindAndDetails) {
    Append(&document, MakeText(kCommentBlock, "caf\xE9 \xFE end"));
    FillBlockListView(hMainWindow, &document);
    const Reader list(List());
    EXPECT_EQ(list.Name(), "Blocks");
    EXPECT_EQ(list.Role(), ROLE_SYSTEM_LIST);
    const std::vector<std::string> names = {"HEADER, GIF89a Screen (640 x 480)",
                                            "IMAGE, first.gif 40 x 30, 16 colours",
                                            "CONTROL, (delay 1 1/100ths of a second)",
                                            "PLAIN TEXT, This space for rent...",
                                            "COMMENT, This space for rent...",
                                            "LOOP, (0 iterations)",
                                            "IMAGE, 20 x 10, 256 colours",
                                            "APPLICATION-DEFINED, (Type:   KELMOR)",
                                            "UNKNOWN TYPE",
                                            "EMPTY BLOCK [ Internal error ]",
                                            "BLOCK NAMES",
                                            "CONTROL, (delay 1 1/100ths of a second)",
                                            "COMMENT, caf\xC3\xA9 \xC3\xBE end"};
    const std::vector<std::string> read = list.ChildNames();
    for (size_t i = 0; i < std::max(names.size(), read.size()); ++i)
        EXPECT_EQ(i < read.size() ? read[i] : "(none)", i < names.size() ? names[i] : "(none)");
    EXPECT_EQ(list.Role(3), ROLE_SYSTEM_LISTITEM);
    for (long wrong : {-1L, 14L}) EXPECT_EQ(list.Name(wrong), "(" + std::to_string(E_INVALIDARG) + ")");
}

TEST_F(ScreenReaderTest, ReadersFollowAndMakeTheSelection) {
    const Reader list(List());
    Select(3);
    EXPECT_EQ(list.Selection(), 4);
    EXPECT_EQ(list.Focus(), 4);
    EXPECT_EQ(list.State(4),
              STATE_SYSTEM_SELECTABLE | STATE_SYSTEM_FOCUSABLE | STATE_SYSTEM_SELECTED | STATE_SYSTEM_FOCUSED);
    SetFocus(hMainWindow);
    EXPECT_EQ(list.Focus(), -1);
    EXPECT_EQ(list->accSelect(SELFLAG_TAKEFOCUS | SELFLAG_TAKESELECTION, Reader::Child(6)), S_OK);
    EXPECT_EQ(Selection(), 5);
    EXPECT_EQ(selectedLine, 5u) << "commands know of it";
    EXPECT_EQ(GetFocus(), List());
    EXPECT_EQ(list->accSelect(SELFLAG_ADDSELECTION, Reader::Child(2)), S_FALSE) << "one line at a time";
    EXPECT_EQ(list.At(MiddleOf(list.Place(3))), 3);
    EXPECT_EQ(list.Next(NAVDIR_FIRSTCHILD, CHILDID_SELF), 1);
    EXPECT_EQ(list.Next(NAVDIR_LASTCHILD, CHILDID_SELF), 12);
    EXPECT_EQ(list.Next(NAVDIR_NEXT, 1), 2);
    EXPECT_EQ(list.Next(NAVDIR_NEXT, 12), -1);
    EXPECT_EQ(list.Next(NAVDIR_PREVIOUS, 1), -1);
    for (int i = 0; i < 100; ++i) Append(&document, OfKind(kUnknownBlock));
    FillBlockListView(hMainWindow, &document);
    EXPECT_TRUE(list.State(100) & STATE_SYSTEM_OFFSCREEN);
}

TEST_F(ScreenReaderTest, TheActionOfALineEditsItAndWaitsForNobody) {
    const Reader list(List());
    BSTR action = nullptr;
    ASSERT_EQ(list->get_accDefaultAction(Reader::Child(6), &action), S_OK);
    EXPECT_EQ(Utf8FromWide(action), "Edit");
    SysFreeString(action);
    DialogAnswers answers({See({IDC_LOOP_ITERATIONS}, "0", IDCANCEL)});
    EXPECT_EQ(list->accDoDefaultAction(Reader::Child(6)), S_OK);
    PumpMessages();
}

TEST_F(ScreenReaderTest, WhatAReaderHoldsOutlivesItsWindow) {
    const Reader list(List());
    DestroyWindow(hMainWindow);
    EXPECT_EQ(list.Name(1), "(" + std::to_string(CO_E_OBJNOTCONNECTED) + ")");
    EXPECT_EQ(list->accDoDefaultAction(Reader::Child(1)), CO_E_OBJNOTCONNECTED);
    long count = -1;
    EXPECT_EQ(list->get_accChildCount(&count), CO_E_OBJNOTCONNECTED);
}

TEST_F(ScreenReaderTest, FramesHaveNamesInTheFilmstrip) {
    Animation made(40, 30);
    made.Control(1, 10).Image({0, 0, 20, 10}).Control(1, 125).Image({0, 0, 20, 10});
    ASSERT_TRUE(CopyBlockList(*made.List(), &document));
    Command(IDM_FILMSTRIP);
    FillBlockListView(hMainWindow, &document);
    PumpMessages();
    const Reader strip(Strip());
    EXPECT_EQ(strip.Name(), "Filmstrip");
    EXPECT_EQ(strip.ChildNames(), (std::vector<std::string>{"Frame 1, 0.10 s", "Frame 2, 1.25 s"}));
    EXPECT_EQ(strip->accSelect(SELFLAG_TAKESELECTION, Reader::Child(2)), S_OK);
    EXPECT_EQ(Selection(), 4) << "the line of its image";
}

// The dialog draws its cells itself; in careful mode they are a control.
TEST_F(ScreenReaderTest, ColoursAreReadAndChosen) {
    const RgbTriple colour = At(kSampleHeader).palette[18];
    const std::string name = "colour 18, red " + std::to_string(colour.red) + ", green " +
                             std::to_string(colour.green) + ", blue " + std::to_string(colour.blue);
    for (bool isCareful : {false, true}) {
        SCOPED_TRACE(isCareful);
        settings.carefulMode = isCareful;
        const long buttons = isCareful ? 0 : 1;  // beside the cells
        const long current = 1 + GetHeaderFields(At(kSampleHeader)).backgroundIndex;
        Edit(kSampleHeader, {Press(IDOK, {{IDC_COLOUR}}), [&](HWND dialog) {
                                 const Reader reader(isCareful ? GetDlgItem(dialog, IDC_COLOUR_GRID) : dialog);
                                 EXPECT_EQ(reader.Count(), 256 + buttons);
                                 EXPECT_EQ(reader.Selection(), current);
                                 EXPECT_EQ(reader.Name(19), name);
                                 EXPECT_EQ(reader.At(MiddleOf(reader.Place(19))), 19);
                                 EXPECT_EQ(reader->accSelect(SELFLAG_TAKESELECTION, Reader::Child(5)), S_OK);
                                 EXPECT_EQ(reader.Selection(), 5);
                                 EXPECT_EQ(reader->accDoDefaultAction(Reader::Child(19)), S_OK);
                             }});
        EXPECT_EQ(GetHeaderFields(At(kSampleHeader)).backgroundIndex, 18);
    }
}

TEST_F(ScreenReaderTest, WindowsOfTheWholeScreenSayHowToLeaveThem) {
    auto leave = [](HWND window) {
        EXPECT_NE(Reader(window).Name().find("Escape"), std::string::npos);
        PostMessageW(window, WM_CHAR, VK_ESCAPE, 0);
        for (MSG message; IsWindow(window) && GetMessageW(&message, nullptr, 0, 0) > 0;) DispatchMessageW(&message);
    };
    Edit(kSamplePlainText, {Press(IDCANCEL, {{IDC_EYEDROPPER}}), leave});
    Run(IDM_VIEW, {leave});
}

int alerts;
void CALLBACK CountAlert(HWINEVENTHOOK, DWORD, HWND window, LONG, LONG, DWORD, DWORD) {
    alerts += GetDlgCtrlID(window) == IDC_NOTICE;
}

TEST_F(ScreenReaderTest, ANoticeIsSaidWhenItComes) {
    HWINEVENTHOOK hook = SetWinEventHook(EVENT_SYSTEM_ALERT, EVENT_SYSTEM_ALERT, nullptr, CountAlert,
                                         GetCurrentProcessId(), GetCurrentThreadId(), WINEVENT_OUTOFCONTEXT);
    ASSERT_NE(hook, nullptr);
    alerts = 0;
    ShowNotice(hMainWindow, "Something is missing.", true);
    PumpMessages();
    UnhookWinEvent(hook);
    EXPECT_EQ(alerts, 1);
    const Reader notice(GetDlgItem(hMainWindow, IDC_NOTICE));
    EXPECT_EQ(notice.Name(), "Something is missing.");
    EXPECT_EQ(notice.Role(), ROLE_SYSTEM_ALERT);
    EXPECT_EQ(Reader(GetDlgItem(GetDlgItem(hMainWindow, IDC_NOTICE), IDC_NOTICE_CLOSE)).Name(), "Close this notice");
}

// The window answers from its own thread, as it does when the reader is another program.
TEST_F(ScreenReaderTest, AReaderInAnotherThreadHearsTheSame) {
    std::vector<std::string> heard;
    bool isDone = false;
    std::thread reader([&] {
        (void)CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        {
            const Reader list(List());
            heard = {list.Name(), list.Name(1), std::to_string(list.Count())};
        }
        CoUninitialize();
        isDone = true;
        PostMessageW(hMainWindow, WM_NULL, 0, 0);
    });
    for (MSG message; !isDone && GetMessageW(&message, nullptr, 0, 0) > 0;) DispatchMessageW(&message);
    reader.join();
    EXPECT_EQ(heard, (std::vector<std::string>{"Blocks", "HEADER, GIF89a Screen (640 x 480)", "12"}));
}

bool IsKind(HWND control, const wchar_t* name) {
    wchar_t is[32] = L"";
    GetClassNameW(control, is, 32);
    return lstrcmpiW(is, name) == 0;
}

bool TakesNoInput(HWND control) {
    return (SendMessageW(control, WM_GETDLGCODE, 0, 0) & DLGC_STATIC) != 0 || IsKind(control, L"Static");
}

// What a reader says of a control. The text of these kinds is what they hold; Windows gives them the name of the label
// before them, and Wine does not.
std::string NameOf(HWND control) {
    const bool isPlain = SendMessageW(control, WM_GETOBJECT, 0, static_cast<LPARAM>(OBJID_CLIENT)) == 0;
    for (const wchar_t* kind : {L"Edit", L"ComboBox", L"ListBox"})
        if (isPlain && IsKind(control, kind)) {
            HWND label = GetWindow(control, GW_HWNDPREV);
            return label && TakesNoInput(label) ? Utf8FromWide(LabelBefore(control)) : "";
        }
    return Reader(control).Name();
}

// The controls in `window` that Tab, and the arrows in a group, lead to.
std::vector<HWND> ReachedInDialog(HWND window) {
    std::vector<HWND> stops, reached;
    auto isNew = [](const std::vector<HWND>& known, HWND control) {
        return control && std::ranges::find(known, control) == known.end();
    };
    for (HWND stop = GetNextDlgTabItem(window, nullptr, FALSE); isNew(stops, stop);
         stop = GetNextDlgTabItem(window, stop, FALSE)) {
        stops.push_back(stop);
        if (isNew(reached, stop)) reached.push_back(stop);
        if (!(SendMessageW(stop, WM_GETDLGCODE, 0, 0) & DLGC_RADIOBUTTON)) continue;
        for (HWND next = GetNextDlgGroupItem(window, stop, FALSE); isNew(reached, next);
             next = GetNextDlgGroupItem(window, next, FALSE))
            reached.push_back(next);
    }
    return reached;
}

BOOL CALLBACK AddControl(HWND child, LPARAM controls) {
    reinterpret_cast<std::vector<HWND>*>(controls)->push_back(child);
    return TRUE;
}

BOOL CALLBACK AddTemplate(HMODULE, LPCWSTR, LPWSTR name, LONG_PTR names) {
    reinterpret_cast<std::vector<std::string>*>(names)->push_back(Utf8FromWide(name));
    return TRUE;
}

// Which controls of the window a reader has no good name for, or the keyboard does not get to.
void ExpectAccess(HWND window, const std::vector<HWND>& reached) {
    std::vector<HWND> controls;
    EnumChildWindows(window, AddControl, reinterpret_cast<LPARAM>(&controls));
    int looked = 0;
    for (HWND control : controls) {
        if (!IsWindowVisible(control) || TakesNoInput(control)) continue;
        SCOPED_TRACE("control " + std::to_string(GetDlgCtrlID(control)));
        ++looked;
        const std::string name = NameOf(control);
        EXPECT_TRUE(std::ranges::any_of(name, [](char c) { return isalpha(static_cast<unsigned char>(c)); }))
            << "its name: " << name;
        // Up-downs: the arrow keys in their fields do what they do. A bar takes none. The strip is only where its
        // buttons are.
        if (!IsWindowEnabled(control) || IsKind(control, UPDOWN_CLASSW) || IsKind(control, PROGRESS_CLASSW) ||
            GetDlgCtrlID(control) == IDC_NOTICE)
            continue;
        EXPECT_NE(std::ranges::find(reached, control), reached.end()) << name << ": Tab does not lead there";
    }
    EXPECT_GT(looked, 0);
}

DialogAnswers::Steps LookAt(int button) {
    return [=](HWND dialog) {
        ExpectAccess(dialog, ReachedInDialog(dialog));
        PressButton(dialog, button);
    };
}

TEST_F(ScreenReaderTest, EverythingHasANameAndIsReachedByKeys) {
    auto edits = [](int line) { return [=] { Edit(line, {LookAt(IDCANCEL)}); }; };
    auto commands = [this](int command) {
        return [=, this] {
            DialogAnswers answers({LookAt(command == IDM_ABOUT || command == IDM_INFORMATION ? IDOK : IDCANCEL)});
            Command(command);
        };
    };
    auto asks = [](auto question, int button) {
        return [=] {
            DialogAnswers answers({LookAt(button)});
            question();
        };
    };
    auto work = [] {
        workWaitsForStop = true;
        EXPECT_EQ(
            RunWithProgress(hMainWindow, L"Work", L"Working", [](const WorkWatch& watch, const auto&) { watch(1, 4); }),
            WorkEnd::kStopped);
        workWaitsForStop = false;
    };
    auto wizard = [](HWND dialog) {
        for (int i = 0; i < 2; ++i)
            SendDlgItemMessageW(dialog, IDC_WIZARD_FILES, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(L"C:\\a.gif"));
        for (int page = 0; page < 7; ++page) {
            SCOPED_TRACE("page " + std::to_string(page));
            ExpectAccess(dialog, ReachedInDialog(dialog));
            if (page < 6) PressButton(dialog, IDC_WIZARD_NEXT);
        }
        PressButton(dialog, IDCANCEL);
    };
    ControlFields control = GetControlFields(At(kSampleControl));
    Block transparent = At(kSampleControl);
    control.packed |= kControlTransparent;
    PutControlFields(&transparent, control);
    Put(transparent);
    const std::pair<const char*, std::function<void()>> dialogs[] = {
        {"EDITHEADERBOX", edits(kSampleHeader)},
        {"EDITIMAGEBOX", edits(kSampleImage)},
        {"EDITCONTROLBOX", edits(kSampleControl)},
        {"EDITPLAINTEXTBOX", edits(kSamplePlainText)},
        {"EDITCOMMENTBOX", edits(kSampleComment)},
        {"EDITLOOPBOX", edits(kSampleLoop)},
        {"SELECTCOLOURBOX",
         [] {
             Edit(kSampleHeader, {Press(IDCANCEL, {{IDC_COLOUR}}), LookAt(IDCANCEL)});
         }},
        {"INSERTBOX", commands(IDM_INSERT)},
        {"TIMINGBOX", commands(IDM_TIMING)},
        {"EXPORTBOX", commands(IDM_EXPORT_FRAMES)},
        {"FINDINGSBOX", commands(IDM_CHECK)},
        {"SMALLERBOX", commands(IDM_MAKE_SMALLER)},
        {"WORKBOX", asks(work, IDCANCEL)},
        {"INFORMATIONPANEL", commands(IDM_INFORMATION)},
        {"ABOUTBOX", commands(IDM_ABOUT)},
        {"PALETTENOMATCHBOX", asks([] { AskPaletteChoice(hMainWindow, At(kSampleImage)); }, IDCANCEL)},
        {"MESSAGEBOX", asks([] { MessageBox(hMainWindow, "Well?"); }, IDOK)},
        {"YESNOBOX", asks([] { YesnoBox(hMainWindow, "Well?"); }, IDNO)},
        {"YESNOCANCELBOX", asks([] { YesNoCancelBox(hMainWindow, "Well?"); }, IDCANCEL)},
        {"ANIMATIONWIZARDBOX",
         [&] {
             documentChanged = false;
             DialogAnswers answers({wizard});
             Command(IDM_WIZARD);
         }},
    };
    std::vector<std::string> templates, looked;
    EnumResourceNamesW(hInstance, RT_DIALOG, AddTemplate, reinterpret_cast<LONG_PTR>(&templates));
    for (const auto& [name, open] : dialogs) {
        SCOPED_TRACE(name);
        paletteChoiceForInsert = kAskForPalette;
        open();
        looked.emplace_back(name);
    }
    std::ranges::sort(templates);
    std::ranges::sort(looked);
    EXPECT_EQ(looked, templates) << "every dialog of the program";
}

TEST_F(ScreenReaderTest, TabAndF6GoRoundAllOfTheWindow) {
    auto press = [](WPARAM key) {
        PressKey(key, {});
        return GetFocus();
    };
    SetFocus(List());
    for (WPARAM key : {WPARAM{VK_TAB}, WPARAM{VK_F6}}) EXPECT_EQ(press(key), List()) << "there is nowhere else";
    SetFocus(hMainWindow);
    EXPECT_EQ(press(VK_TAB), List()) << "where the start left the focus";
    Command(IDM_PREVIEW);
    Command(IDM_FILMSTRIP);
    ShowNotice(hMainWindow, "Something is missing.", true);
    for (WPARAM key : {WPARAM{VK_TAB}, WPARAM{VK_F6}}) {
        SetFocus(List());
        std::vector<HWND> reached = {List()};
        for (HWND at = press(key); at != List() && reached.size() < 9; at = press(key)) reached.push_back(at);
        EXPECT_EQ(reached.size(), 5u);
        ExpectAccess(hMainWindow, reached);
        PressKey(key, {VK_SHIFT});
        EXPECT_EQ(GetDlgCtrlID(GetFocus()), IDC_NOTICE_CLOSE) << "back";
    }
    PressKey(VK_RETURN, {});
    EXPECT_EQ(GetDlgItem(hMainWindow, IDC_NOTICE), nullptr) << "Enter presses the button";
    EXPECT_EQ(GetFocus(), List());
}

}  // namespace

#include "windows/app/start_up.h"

#include <cstdlib>
#include <ctime>
#include <cwchar>

#include "imaging/dither.h"
#include "platform/wide_text_win32.h"
#include "texts/string_ids.h"
#include "windows/app/document_face.h"
#include "windows/app/information_panel.h"
#include "windows/app/main_window.h"
#include "windows/app/panes.h"
#include "windows/app/settings_file.h"
#include "windows/app/shell_state.h"
#include "windows/app/stand_aside.h"
#include "windows/services/careful.h"
#include "windows/services/dialogs.h"
#include "windows/services/focus_handover.h"
#include "windows/services/help.h"
#include "windows/services/scaled_fonts.h"
#include "windows/services/screen_scale.h"
#include "windows/services/settings.h"
#include "windows/services/shell_objects.h"

namespace {

// The number that a key of the profile file starts with, 0 for other texts; `usual` without a text. The file lies where
// the system looks for a bare name: in the Windows directory. The system's own reading of numbers lets large ones wrap
// around; here they stay large.
int ReadDitherSetting(const wchar_t* key, int usual) {
    constexpr DWORD kTextUnits = 32;
    wchar_t text[kTextUnits] = L"";
    GetPrivateProfileStringW(L"Telvar", key, L"", text, kTextUnits, L"TELVAR.INI");
    return *text ? static_cast<int>(wcstol(text, nullptr, 10)) : usual;  // a long has 32 bits on Windows
}

void ReadDitherSettings() {
    constexpr DitherSettings kUsual;
    ditherSettings.brightness = ReadDitherSetting(L"DitherBrightness", kUsual.brightness);
    ditherSettings.contrast = ReadDitherSetting(L"DitherContrast", kUsual.contrast);
}

void RunMessageLoop() {
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

bool IsBlank(wchar_t c) {
    return c == L' ' || c == L'\t';
}

bool IsThere(const std::string& path) {
    return GetFileAttributesW(WideFromUtf8(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

std::string Trimmed(const std::string& text) {
    constexpr char kBlanks[] = " \t\r\n";
    const size_t first = text.find_first_not_of(kBlanks);
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

// The shortest beginning that ends before a blank and names a file, or else all of it: names may hold blanks, and
// several may stand in a row.
std::string FirstName(const std::string& names) {
    for (size_t end = names.find(' '); end != std::string::npos; end = names.find(' ', end + 1))
        if (IsThere(names.substr(0, end))) return names.substr(0, end);
    return names;
}

}  // namespace

void CreateShellObjects(HINSTANCE instance) {
    hInstance = instance;
    hListFont = ListFontAt(kUsualDpi);
    hFaceBrush = CreateSolidBrush(GetSysColor(COLOR_BTNFACE));
}

void DeleteShellObjects() {
    if (hFaceBrush) DeleteObject(hFaceBrush);
    hFaceBrush = nullptr;
    DeleteScaledFonts();
    hListFont = nullptr;
}

void PrepareMainWindow() {
    CreateMainWindow();
    FitMainWindowToScreen(hMainWindow);
}

void ShowMainWindow(int showCommand) {
    ShowWindow(hMainWindow, showCommand);
    UpdateWindow(hMainWindow);
    SetTitleText(hMainWindow, IDS_NO_FILE);
}

const wchar_t* CommandLineArguments(const wchar_t* commandLine) {
    bool quoted = false;
    for (; *commandLine && (quoted || !IsBlank(*commandLine)); ++commandLine)
        if (*commandLine == L'"') quoted = !quoted;
    while (IsBlank(*commandLine)) ++commandLine;
    return commandLine;
}

std::string StartName(const std::string& arguments) {
    if (!Careful(Care::kStartNameTrimmed) || IsThere(arguments)) return arguments;
    std::string trimmed = Trimmed(arguments);
    if (trimmed.empty() || IsThere(trimmed)) return trimmed;
    if (trimmed.front() == '"') return Trimmed(trimmed.substr(1, trimmed.find('"', 1) - 1));
    return FirstName(trimmed);
}

void RunEditor(HINSTANCE instance, HINSTANCE previous, const char* commandLine, int showCommand) {
    srand(static_cast<unsigned>(time(nullptr)));  // NOLINT(cert-msc51-cpp): nothing secret depends on it
    CreateShellObjects(instance);
    ReadDitherSettings();
    document = {};
    if (!previous) RegisterMainWindowClass();
    PrepareMainWindow();
    PlaceHelpWindow(hMainWindow);
    ShowMainWindow(showCommand);
    ReadSettings(settingsFolder);  // first the settings: they say how long the list of recent files may be
    if (Careful(Care::kSecondWindowAside)) StandAside(hMainWindow);
    ReadRecentFiles(hMainWindow, settingsFolder);
    if (settings.showStartupBanner) ShowInformationPanel(hMainWindow);
    ApplyOptions(hMainWindow);
    const std::string startName = StartName(commandLine);
    PostMessageW(hMainWindow, UM_OPENFILE, 0, reinterpret_cast<LPARAM>(startName.c_str()));
    SetFocus(hMainWindow);
    FocusHandover handover;
    RunMessageLoop();
    DestroyBlockList(&document);  // still there when the close box was used and its question cancelled
    DeleteShellObjects();
    UnregisterClassW(kMainWindowClass, instance);
}

#include "windows/app/about_box.h"

#include <string>

#include "platform/wide_text_win32.h"
#include "windows/ids/panel_ids.h"
#include "windows/services/plain_dialog.h"

void ShowAboutBox(HWND owner) {
    constexpr int kBits = sizeof(void*) * 8;
    std::string version = std::string("Version " ZEPHYR_VERSION " (") + std::to_string(kBits) + "-bit)";
    RunPlainDialog(owner, L"AboutBox", [&version](HWND dialog) {
        SetDlgItemTextW(dialog, IDC_VERSION_LINE, WideFromUtf8(version).c_str());
        SetDlgItemTextW(dialog, IDC_BUILD_LINE, WideFromUtf8("Build " ZEPHYR_BUILD).c_str());
    });
}

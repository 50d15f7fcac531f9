#include "windows/app/options.h"

#include "windows/ids/command_ids.h"

namespace {

constexpr Option kOptions[] = {
    {IDM_CAREFUL_MODE, "CarefulMode", &Settings::carefulMode},
};

}  // namespace

std::span<const Option> Options() {
    return kOptions;
}

bool SwitchOption(HWND window, int command) {
    for (const Option& option : kOptions) {
        if (option.command != command) continue;
        settings.*option.value = settings.*option.value ? 0 : 1;
        ShowOptions(window);
        return true;
    }
    return false;
}

void ShowOptions(HWND window) {
    for (const Option& option : kOptions)
        CheckMenuItem(GetMenu(window), static_cast<UINT>(option.command),
                      MF_BYCOMMAND | (settings.*option.value ? UINT{MF_CHECKED} : UINT{MF_UNCHECKED}));
}

#include "windows/app/options.h"

#include <algorithm>
#include <iterator>

#include "windows/ids/command_ids.h"

namespace {

constexpr Option kOptions[] = {
    {IDM_CAREFUL_MODE, "CarefulMode", &Settings::carefulMode},
    {IDM_READABLE_DETAILS, "ReadableDetails", &Settings::readableDetails},
    {IDM_PREVIEW, "Preview", &Settings::preview},
    {IDM_FILMSTRIP, "Filmstrip", &Settings::filmstrip},
    {0, "UndoMemory", &Settings::undoMemory},
};

}  // namespace

std::span<const Option> Options() {
    return kOptions;
}

bool SwitchOption(HWND window, int command) {
    const auto* option = std::ranges::find(kOptions, command, &Option::command);
    if (command == 0 || option == std::end(kOptions)) return false;
    uint32_t& value = settings.*option->value;
    value = value ? 0 : 1;
    ShowOptions(window);
    return true;
}

void ShowOptions(HWND window) {
    for (const Option& option : kOptions)
        if (option.command)
            CheckMenuItem(GetMenu(window), static_cast<UINT>(option.command),
                          MF_BYCOMMAND | (settings.*option.value ? UINT{MF_CHECKED} : UINT{MF_UNCHECKED}));
}

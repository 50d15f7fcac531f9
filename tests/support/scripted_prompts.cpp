#include "tests/support/scripted_prompts.h"

#include "editing/palette_match.h"

ScriptedPrompts prompts;

void ShowMessage(WindowHandle, const char* text) {
    prompts.messages.emplace_back(text);
}

int AskYesNo(WindowHandle, const char* text) {
    prompts.messages.emplace_back(text);
    if (prompts.onYesNo) return prompts.onYesNo();
    if (prompts.yesNoAnswers.empty()) return kAnswerNo;
    int answer = prompts.yesNoAnswers.front();
    prompts.yesNoAnswers.erase(prompts.yesNoAnswers.begin());
    return answer;
}

bool AskForGifFile(WindowHandle, std::string* path) {
    if (prompts.gifFile.empty()) return false;
    *path = prompts.gifFile;
    return true;
}

int RunPaletteDialog(WindowHandle, const Block&) {
    if (prompts.paletteChoices.empty()) return kPaletteCancel;
    int choice = prompts.paletteChoices.front();
    prompts.paletteChoices.erase(prompts.paletteChoices.begin());
    return choice;
}

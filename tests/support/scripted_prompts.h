// What the tests answer when the core speaks to its user, and what it said.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/prompts.h"
#include "resources/string_ids.h"

struct ScriptedPrompts {
    std::vector<std::string> messages;  // every text of ShowMessage and AskYesNo, in order
    std::vector<int> yesNoAnswers;      // taken from the front; kAnswerNo when none is left
    std::function<int()> onYesNo;       // when given, asked instead
    std::string gifFile;                // what AskForGifFile chooses; empty: cancelled
    std::vector<int> paletteChoices;    // of the palette dialog, from the front; kPaletteCancel when none is left
};
extern ScriptedPrompts prompts;

// What the tests answer when work on a document asks, and what it asked.
#pragma once

#include <string>
#include <vector>

#include "editing/questions.h"

struct ScriptedAnswers : Questions {
    static constexpr long kNever = -1;
    long polls = 0;                             // how often work has asked whether to stop
    long pressAtPoll = kNever;                  // the poll, counted from 0, that is told to
    std::vector<PaletteChoice> paletteChoices;  // from the front; kCancel when none is left
    bool keepsColours = false;
    bool leavesOut = false;          // files that give no image
    std::vector<Failure> unwelcome;  // why those gave none
    std::string told;                // of the files: "1/3 2/3 3/3 "

    bool StopRequested() override { return polls++ == pressAtPoll; }
    PaletteChoice ChoosePalette(const Block&) override {
        if (paletteChoices.empty()) return PaletteChoice::kCancel;
        PaletteChoice choice = paletteChoices.front();
        paletteChoices.erase(paletteChoices.begin());
        return choice;
    }
    bool KeepsColours() override { return keepsColours; }
    bool MayLeaveOut(const std::string&, Failure why) override {
        unwelcome.push_back(why);
        return leavesOut;
    }
    void OnFile(size_t number, size_t count) override {
        told += std::to_string(number) + "/" + std::to_string(count) + " ";
    }
};

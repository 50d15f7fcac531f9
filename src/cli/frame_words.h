// How frames are named on the command line, and the files that they are written to.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// Reads a selection (editing/selection.h) among `count` frames, 1 or more: "3", "0,4-7", "10-last", "frame:last-2".
// Each frame comes once, in ascending order. Returns what is wrong with it, or an empty text.
std::string ParseFrameSelection(const std::string& text, uint32_t count, std::vector<uint32_t>* frames);

// The name of a file for each frame: "%d" or "%03d" (with any count of places up to 99) stands for the frame's number,
// "%%" for a percent sign.
class NumberedName {
public:
    // Returns what is wrong with it, or an empty text.
    std::string Parse(const std::string& pattern);
    bool HasNumber() const { return hasNumber_; }
    std::string For(uint32_t number) const;

private:
    std::string before_, behind_;
    size_t places_ = 0;
    bool hasNumber_ = false;
};

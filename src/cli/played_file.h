// The animation that a command looks at.
#pragma once

#include <string>

#include "animation/animation.h"
#include "cli/options.h"
#include "gif/gif_reader.h"

struct PlayedFile {
    // Reads the file, whole unless the option "--classic" is given, and takes down its frames, without texts when
    // "--no-text" is. False, with the reason on standard error, when that fails. What is damaged is in `report`.
    bool Open(const std::string& path, const Options& options);

    BlockList list;
    ReadReport report = {};
    Animation animation;

private:
    bool Read(const std::string& path, Manner manner);
};

// Tells of the file's damages on standard error. False when there are any that lose something and the option "--strict"
// does not allow that.
bool TellDamages(const PlayedFile& file, const std::string& path, const Options& options);

// Whether the canvas can be composed; complains otherwise.
bool CanCompose(const Animation& animation, const std::string& path);

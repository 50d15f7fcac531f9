// The animation that a command looks at.
#pragma once

#include <string>

#include "animation/animation.h"
#include "cli/loaded_file.h"

struct PlayedFile : LoadedFile {
    // Opens the file as LoadedFile does and takes down its frames, without texts when the option "--no-text" is given.
    // False, with the reason on standard error, when that fails.
    bool OpenAnimation(const std::string& path, const Options& options);

    Animation animation;
};

// Whether the canvas can be composed; complains otherwise.
bool CanCompose(const Animation& animation, const std::string& path);

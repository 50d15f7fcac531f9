#include "cli/played_file.h"

#include "animation/stage.h"
#include "cli/complaints.h"

bool PlayedFile::OpenAnimation(const std::string& path, const Options& options) {
    if (!Open(path, options)) return false;
    if (animation.Open(list, options.Has("--no-text") ? Texts::kLeftOut : Texts::kDrawn)) return true;
    Complain(path, "not enough memory");
    return false;
}

bool CanCompose(const Animation& animation, const std::string& path) {
    if (FitsCanvas(animation)) return true;
    Complain(path, "its screen of " + std::to_string(animation.Width()) + " x " + std::to_string(animation.Height()) +
                       " pixels can't be composed: " + std::to_string(kMostCanvasPixels) + " pixels are the most");
    return false;
}

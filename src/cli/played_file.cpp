#include "cli/played_file.h"

#include <algorithm>

#include "animation/stage.h"
#include "cli/complaints.h"

namespace {
constexpr size_t kMostDamagesTold = 20;
}

bool PlayedFile::Open(const std::string& path, const Options& options) {
    if (!Read(path, options.Has("--classic") ? Manner::kClassic : Manner::kWhole)) return false;
    if (animation.Open(list, options.Has("--no-text") ? Texts::kLeftOut : Texts::kDrawn)) return true;
    Complain(path, "not enough memory");
    return false;
}

bool PlayedFile::Read(const std::string& path, Manner manner) {
    ReadResult result = CreateBlockList(&list) ? ReadGifFile(&list, path.c_str(), &report, manner) : kReadFailed;
    if (report.couldNotOpen)
        Complain(path, WhyNotOpened(path, report.reason));
    else if (report.couldNotRead)
        Complain(path, WhyNotRead(report.reason));
    else if (result == kReadNotGif)
        Complain(path, "not a GIF file");
    else if (result == kReadFailed)
        Complain(path, manner == Manner::kWhole ? "not enough memory" : "corrupt GIF data, or not enough memory");
    else if (report.imageLeftBlank)
        Complain(path, "not enough memory for its pictures");
    return result == kReadDone && !report.imageLeftBlank;
}

bool TellDamages(const PlayedFile& file, const std::string& path, const Options& options) {
    const std::vector<Damage>& damages = file.report.damages;
    const size_t told = std::min(damages.size(), kMostDamagesTold);
    for (const Damage& damage : std::span(damages).first(told))
        Complain(path, std::string(IsHarmless(damage) ? "note: " : "") + "at byte " + std::to_string(damage.offset) +
                           ": " + DescribeDamage(damage));
    if (told < damages.size()) Complain(path, "and " + std::to_string(damages.size() - told) + " more places");
    const bool isWell =
        options.Has("--classic") ? file.report.reachedTrailer : std::ranges::all_of(damages, IsHarmless);
    if (isWell) return true;
    if (options.Has("--classic")) Complain(path, "note: loading ended before the trailer");
    if (options.Has("--strict")) Complain(path, "it is damaged, which --strict does not allow");
    return !options.Has("--strict");
}

bool CanCompose(const Animation& animation, const std::string& path) {
    if (FitsCanvas(animation)) return true;
    Complain(path, "its screen of " + std::to_string(animation.Width()) + " x " + std::to_string(animation.Height()) +
                       " pixels can't be composed: " + std::to_string(kMostCanvasPixels) + " pixels are the most");
    return false;
}

#include "cli/frame_times.h"

#include <cinttypes>
#include <cstdio>
#include <string>

namespace {

std::string PlaysOf(const Animation& animation) {
    const uint32_t plays = animation.Plays();
    if (plays == 0) return "for ever";
    return plays == 1 ? "once" : std::to_string(plays) + " times";
}

std::string NumberOr(int32_t number, const char* none) {
    return number < 0 ? none : std::to_string(number);
}

std::string JsonOf(const Animation& animation, uint32_t number) {
    const Frame& frame = animation.Frames()[number];
    const Rectangle& area = frame.area;
    return "{\"frame\": " + std::to_string(number) + ", \"block\": " + std::to_string(frame.block) +
           ", \"control\": " + NumberOr(frame.control, "null") + ", \"start\": " + std::to_string(frame.start) +
           ", \"length\": " + std::to_string(frame.length) + ", \"delay\": " + std::to_string(frame.delay) +
           ", \"disposal\": " + std::to_string(frame.disposal) +
           ", \"transparent\": " + NumberOr(frame.transparentIndex, "null") +
           ", \"left\": " + std::to_string(area.left) + ", \"top\": " + std::to_string(area.top) +
           ", \"width\": " + std::to_string(area.Width()) + ", \"height\": " + std::to_string(area.Height()) + "}";
}

}  // namespace

void PrintTimes(const Animation& animation, std::span<const uint32_t> frames) {
    puts("frame  block  control       start  length  written  rectangle");
    for (uint32_t number : frames) {
        const Frame& frame = animation.Frames()[number];
        const Rectangle& area = frame.area;
        printf("%5" PRIu32 "  %5" PRIu32 "  %7s  %10" PRIu64 "  %6" PRIu32 "  %7u  %dx%d+%d+%d\n", number, frame.block,
               NumberOr(frame.control, "-").c_str(), frame.start, frame.length, unsigned{frame.delay}, area.Width(),
               area.Height(), area.left, area.top);
    }
    const size_t count = animation.Frames().size();
    printf("%zu %s, %" PRIu64 " hundredths of a second, played %s\n", count, count == 1 ? "frame" : "frames",
           animation.Length(), PlaysOf(animation).c_str());
}

void PrintTimesAsJson(const Animation& animation, std::span<const uint32_t> frames) {
    printf("{\"width\": %d, \"height\": %d, \"length\": %" PRIu64 ", \"plays\": %s, \"frames\": [", animation.Width(),
           animation.Height(), animation.Length(),
           animation.Plays() ? std::to_string(animation.Plays()).c_str() : "null");
    for (size_t i = 0; i < frames.size(); ++i) printf("%s%s", i ? ",\n " : "", JsonOf(animation, frames[i]).c_str());
    puts("]}");
}

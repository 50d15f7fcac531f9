#include "windows/app/load_notice.h"

#include <algorithm>

#include "gif/descriptor.h"

namespace {

// The name of the application that an APPLICATION block belongs to, as far as it can be read.
std::string ApplicationOf(const Block& block) {
    const char* identifier = reinterpret_cast<const char*>(block.descriptor) + kIdentifierOffset;
    std::string name(identifier, kIdentifierBytes);
    std::erase_if(name, [](char c) { return static_cast<unsigned char>(c) < ' '; });
    return name;
}

// What came of an application block whose data was not read.
std::string DescribeUnreadData(const BlockList& list) {
    for (uint32_t i = list.count; i-- > 0;) {
        const Block& block = list.blocks[i];
        if (block.kind != kApplicationBlock || block.data) continue;
        const std::string name = "the application block \"" + ApplicationOf(block) + "\"";
        return i + 1 == list.count ? "This file goes on behind " + name + "; the rest was not read."
                                   : "The data of " + name + " was taken for blocks; some of this file was not read.";
    }
    return "This file goes on; the rest was not read.";
}

std::string DescribeClassicLoad(const BlockList& list, const ReadReport& report) {
    if (report.dataUnread) return DescribeUnreadData(list);
    if (report.fileEnded) return "This file ends before its trailer.";
    if (!report.reachedTrailer) return "This file goes on with something that starts no block; the rest was not read.";
    if (report.imageLeftBlank) return "There was not enough memory for an image of this file, which is shown blank.";
    return "";
}

std::string DescribeDamages(const ReadReport& report) {
    auto counts = [](const Damage& damage) { return !IsHarmless(damage); };
    const auto count = std::ranges::count_if(report.damages, counts);
    if (count == 0) return "";
    const Damage& first = *std::ranges::find_if(report.damages, counts);
    std::string text =
        count == 1 ? "1 place of this file is damaged" : std::to_string(count) + " places of this file are damaged";
    if (count > 1 && first.block >= 0) text += ", the first";
    if (first.block >= 0) text += " at line " + std::to_string(first.block + 1) + " of the list";
    return text + ": " + DescribeDamage(first) + ".";
}

}  // namespace

LoadNotice DescribeLoad(const BlockList& list, ReadResult result, const ReadReport& report, Manner manner) {
    const bool isWhole = manner == Manner::kWhole;
    if (report.couldNotOpen || report.couldNotRead) return {};
    if (result == kReadNotGif) return {"This is no GIF file: nothing of it was read.", false};
    if (result == kReadFailed)
        return isWhole ? LoadNotice() : LoadNotice{"No document could be read from this file.", true};
    if (isWhole) return {DescribeDamages(report), false};
    std::string text = DescribeClassicLoad(list, report);
    return {text, !text.empty()};
}

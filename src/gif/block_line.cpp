#include "gif/block_line.h"

#include <cstdio>

#include "gif/descriptor.h"
#include "texts/string_ids.h"
#include "texts/strings.h"

namespace {

constexpr int kExcerptBytes = 32;
constexpr size_t kLineBytes = 400;

unsigned LineString(uint16_t kind) {
    switch (kind) {
        case kEmptyBlock: return IDS_LINE_EMPTY;
        case kHeaderBlock: return IDS_LINE_HEADER;
        case kImageBlock: return IDS_LINE_IMAGE;
        case kControlBlock: return IDS_LINE_CONTROL;
        case kPlainTextBlock: return IDS_LINE_PLAIN_TEXT;
        case kApplicationBlock: return IDS_LINE_APPLICATION;
        case kCommentBlock: return IDS_LINE_COMMENT;
        case kLoopBlock: return IDS_LINE_LOOP;
        case kBlockNamesBlock: return IDS_LINE_BLOCK_NAMES;
        default: return IDS_LINE_UNKNOWN;
    }
}

// The formats come from the string table, whose texts and arguments are fixed together.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"

template <typename... Arguments>
std::string Print(const char* format, Arguments... arguments) {
    char line[kLineBytes];
    snprintf(line, sizeof line, format, arguments...);
    return line;
}

#pragma GCC diagnostic pop

std::string FormatImageLine(const char* format, const Block& block) {
    std::string name;
    if (auto known = GetBlockName(block)) name = *known + ' ';
    ImageFields image = GetImageFields(block);
    unsigned colours = static_cast<unsigned>(ColoursOfPacked(image.packed));
    return Print(format, name.c_str(), unsigned{image.width}, unsigned{image.height}, colours);
}

}  // namespace

std::string FormatBlockLine(const Block& block) {
    const char* format = LoadStr(LineString(block.kind));
    const auto* text = reinterpret_cast<const char*>(block.descriptor);
    switch (block.kind) {
        case kHeaderBlock: {
            HeaderFields header = GetHeaderFields(block);
            return Print(format, text, unsigned{header.screenWidth}, unsigned{header.screenHeight});
        }
        case kImageBlock: return FormatImageLine(format, block);
        case kControlBlock: return Print(format, unsigned{GetControlFields(block).delay});
        case kPlainTextBlock:
        case kCommentBlock: return Print(format, GetBlockTextLine(block, kExcerptBytes).c_str());
        case kApplicationBlock: return Print(format, text + kIdentifierOffset);
        case kLoopBlock: return Print(format, unsigned{GetLoopIterations(block)});
        default: return format;
    }
}

std::string FormatKindName(uint16_t kind) {
    std::string name = LoadStr(LineString(kind));
    return name.substr(0, name.find(kBlockLineSeparator));
}

#include "gif/block_line.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "gif/descriptor.h"
#include "platform/prompts.h"
#include "resources/string_ids.h"

namespace {

constexpr int kExcerptBytes = 32;

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
void Print(char* line, const char* format, Arguments... arguments) {
    snprintf(line, kBlockLineBytes, format, arguments...);
}

#pragma GCC diagnostic pop

void FormatImageLine(char* line, const char* format, const Block& block) {
    char name[kNameBytes + 1];
    if (GetBlockName(name, block)) strcat(name, " ");
    ImageFields image = GetImageFields(block);
    unsigned colours = static_cast<unsigned>(ColoursOfPacked(image.packed));
    Print(line, format, name, unsigned{image.width}, unsigned{image.height}, colours);
}

}  // namespace

void FormatBlockLine(char* line, const Block& block) {
    const char* format = LoadStr(LineString(block.kind));
    const auto* text = reinterpret_cast<const char*>(block.descriptor);
    switch (block.kind) {
        case kHeaderBlock: {
            HeaderFields header = GetHeaderFields(block);
            return Print(line, format, text, unsigned{header.screenWidth}, unsigned{header.screenHeight});
        }
        case kImageBlock: return FormatImageLine(line, format, block);
        case kControlBlock: return Print(line, format, unsigned{GetControlFields(block).delay});
        case kPlainTextBlock:
        case kCommentBlock: return Print(line, format, GetBlockTextLine(block, kExcerptBytes));
        case kApplicationBlock: return Print(line, format, text + kIdentifierOffset);
        case kLoopBlock: return Print(line, format, unsigned{GetLoopIterations(block)});
        default: return Print(line, "%s", format);
    }
}

void FormatKindName(char* name, uint16_t kind) {
    Print(name, "%s", LoadStr(LineString(kind)));
    *std::find(name, name + strlen(name), kBlockLineSeparator) = 0;
}

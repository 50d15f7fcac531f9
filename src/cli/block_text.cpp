#include "cli/block_text.h"

#include <algorithm>
#include <cstdio>

#include "cli/input_file.h"
#include "cli/json.h"
#include "cli/printable.h"
#include "editing/block_values.h"
#include "gif/block_line.h"
#include "gif/descriptor.h"
#include "gif/source_bytes.h"
#include "platform/checksum.h"
#include "platform/text_encoding.h"

namespace {

using ByteSpan = std::span<const uint8_t>;

std::string SumText(uint32_t sum) {
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) text += HexOf(static_cast<uint8_t>(sum >> shift));
    return text;
}

std::string SumText(size_t count, ByteSpan bytes) {
    return std::to_string(count) + ":" + SumText(Crc32(bytes));
}

// Quoted where a reader could not tell where it ends.
void PrintValue(const char* field, const std::string& value) {
    const bool isPlain = !value.empty() && std::ranges::none_of(value, [](char c) {
        return static_cast<unsigned char>(c) <= ' ' || c == '"' || c == '\\' || static_cast<unsigned char>(c) >= 127;
    });
    printf(" %s=%s", field, isPlain ? value.c_str() : JsonText(value).c_str());
}

// Each line of the text on one of its own, indented.
void PrintText(ByteSpan bytes) {
    std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    while (!text.empty()) {
        const size_t end = std::min(text.find_first_of("\r\n"), text.size());
        printf("    %s\n", Printable(Utf8FromWindows1252(text.substr(0, end))).c_str());
        text.remove_prefix(end);
        if (!text.empty()) text.remove_prefix(text.starts_with("\r\n") ? 2 : 1);
    }
}

void PrintPalette(const Block& block) {
    const auto colours = static_cast<size_t>(CountOwnColours(block));
    const auto* bytes = reinterpret_cast<const uint8_t*>(block.palette.Colours());
    PrintValue("palette", colours ? SumText(colours, {bytes, colours * sizeof(RgbTriple)}) : "none");
}

bool PrintPixels(const Block& block) {
    const std::optional<uint32_t> sum = SumOfPixels(block);
    if (block.data && !sum) return false;
    PrintValue("pixels", sum ? SumText(*sum) : "none");
    if (sum) return true;
    SourceLock source(block);  // a picture that can't be decoded: all there is
    if (source) PrintValue("data", SumText(source.Own().size(), source.Own()));
    return true;
}

bool PrintBlock(const Block& block) {
    BlockData bytes;
    if (!GetBlockBytes(block, &bytes)) return false;
    const bool hasText = HasBlockText(block), isImage = block.kind == kImageBlock;
    fputs(FormatKindName(block.kind).c_str(), stdout);
    for (const BlockValue& value : GetBlockValues(block)) PrintValue(value.field, value.value);
    if (auto name = GetBlockName(block)) PrintValue("name", Utf8FromWindows1252(*name));
    if (isImage || block.kind == kHeaderBlock) PrintPalette(block);
    if (isImage && !PrintPixels(block)) return false;
    if (bytes.bytes) PrintValue(hasText ? "text" : "data", SumText(bytes.count, bytes.All()));
    SourceLock source(block);
    if (source && !source.Stray().empty()) PrintValue("stray", SumText(source.Stray().size(), source.Stray()));
    putchar('\n');
    if (hasText) PrintText(bytes.All());
    return true;
}

// `usual`: what needs no line.
void PrintFileBytes(const char* where, const FileBytes& kept, ByteSpan usual) {
    MemoryLock lock(kept.memory);
    if (!lock) return;
    const ByteSpan bytes(lock.Bytes() + kept.start, kept.bytes);
    if (!std::ranges::equal(bytes, usual)) printf("%s data=%s\n", where, SumText(bytes.size(), bytes).c_str());
}

}  // namespace

std::string LineOf(const Block& block) {
    std::string line = FormatBlockLine(block);
    size_t separator = line.find(kBlockLineSeparator);  // later ones belong to the text
    if (separator != std::string::npos) line.erase(separator, 1);
    return Utf8FromWindows1252(line);
}

bool PrintAsText(const BlockList& list) {
    constexpr uint8_t kUsualEnd[] = {kTrailer};
    PrintFileBytes("BEFORE", list.before, {});
    if (!std::ranges::all_of(list.All(), PrintBlock)) return false;
    PrintFileBytes("AFTER", list.after, kUsualEnd);
    return true;
}

bool PrintOtherFile(const std::string& path, std::string* why) {
    BlockData content;
    if (!ReadInputFile(path, &content, why)) return false;
    printf("NO GIF FILE data=%s\n", SumText(content.count, content.All()).c_str());
    return true;
}

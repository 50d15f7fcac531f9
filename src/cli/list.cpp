// zephyr list: the blocks of a document, as lines or as JSON.
#include <cstdio>

#include "cli/commands.h"
#include "cli/json.h"
#include "cli/loaded_file.h"
#include "cli/options.h"
#include "cli/printable.h"
#include "cli/usage.h"
#include "gif/block_line.h"
#include "gif/descriptor.h"
#include "platform/text_encoding.h"

namespace {

std::string LineOf(const Block& block) {
    std::string line = FormatBlockLine(block);
    size_t separator = line.find(kBlockLineSeparator);  // later ones belong to the text
    if (separator != std::string::npos) line.erase(separator, 1);
    return Utf8FromWindows1252(line);
}

bool HasText(const Block& block) {
    return block.kind == kPlainTextBlock || block.kind == kApplicationBlock || block.kind == kCommentBlock ||
           block.kind == kBlockNamesBlock;
}

std::string DataField(const Block& block) {
    MemoryLock lock(block.data);
    return ", \"data\": " + JsonHex(lock.Bytes(), lock ? block.dataLength : 0);
}

std::string PaletteField(const Block& block) {
    bool isHeader = block.kind == kHeaderBlock;
    if (!isHeader && block.kind != kImageBlock) return "";
    uint8_t packed = isHeader ? GetHeaderFields(block).packed : GetImageFields(block).packed;
    if (!(packed & kHasPalette)) return "";
    return ", \"palette\": " + JsonHex(reinterpret_cast<const uint8_t*>(block.palette.Colours()), kPaletteBytes);
}

std::string NameField(const Block& block) {
    std::optional<std::string> name = GetBlockName(block);
    return name ? ", \"name\": " + JsonText(Utf8FromWindows1252(*name)) : "";
}

std::string ImageField(const Block& block) {
    std::optional<ImageInfo> info = GetImageInfo(block.data);
    if (!info) return "";
    return ", \"image\": {\"width\": " + std::to_string(info->width) + ", \"height\": " + std::to_string(info->height) +
           ", \"bitCount\": " + std::to_string(info->bitCount) + "}";
}

std::string JsonOf(const Block& block, uint32_t index) {
    std::string json = "{\"position\": " + std::to_string(index) + ", \"kind\": " + std::to_string(block.kind);
    json += ", \"kindName\": " + JsonText(FormatKindName(block.kind));
    json += ", \"line\": " + JsonText(LineOf(block));
    json += ", \"descriptor\": " + JsonHex(block.descriptor, kDescriptorBytes);
    json += ", \"dataLength\": " + std::to_string(HasText(block) ? block.dataLength : 0);
    if (HasText(block)) json += DataField(block);
    json += PaletteField(block) + NameField(block);
    if (block.kind == kImageBlock) json += ImageField(block);
    return json + "}";
}

void PrintLines(const BlockList& list) {
    for (const Block& block : list.All()) puts(Printable(LineOf(block)).c_str());
}

void PrintJson(const LoadedFile& file) {
    printf("{\"result\": %d, \"complete\": %s, \"ended\": %s, \"blocks\": [", static_cast<int>(file.result),
           file.report.reachedTrailer ? "true" : "false", JsonText(file.WhereLoadEnded()).c_str());
    for (uint32_t index = 0; index < file.list.count; ++index)
        printf("%s%s", index ? ", " : "", JsonOf(file.list.blocks[index], index).c_str());
    puts("]}");
}

}  // namespace

const char kListHelp[] =
    "Usage: zephyr list [--json] [--strict] FILE\n"
    "\n"
    "Prints one line per block of the GIF file FILE, as the editor's list shows it.\n"
    "The first line is block number 0. Control characters of the file's texts and\n"
    "names are written as \\xNN.\n"
    "With --json, prints one JSON object instead: the result of the load (1 done,\n"
    "0 failed, 2 not a GIF file), whether it is complete (reached the trailer), where\n"
    "it ended (trailer, end of file, application block: the data of one that is not\n"
    "read, unknown byte, failure, not opened, no GIF file), and the blocks with their\n"
    "numbers, descriptor bytes, texts and palettes (of headers and images that have\n"
    "one).\n"
    "With --strict the exit status is 1 also when the load is not complete.\n"
    "The blocks read before a failure are printed too.\n";

int RunList(const Words& words) {
    Options options(words, {"--json", "--strict"}, {});
    if (!options.Error().empty()) return WrongUsage("list", options.Error());
    if (options.Operands().size() != 1) return WrongUsage("list", "give one FILE");
    LoadedFile file;
    bool done = file.Open(options.Operands()[0], options);
    if (options.Has("--json"))
        PrintJson(file);
    else
        PrintLines(file.list);
    return FlushOutput() && done ? kExitDone : kExitFailed;
}

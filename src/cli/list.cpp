// zephyr list: the blocks of a document, as lines, as text for comparisons or as JSON.
#include <cstdio>

#include "cli/block_text.h"
#include "cli/commands.h"
#include "cli/complaints.h"
#include "cli/json.h"
#include "cli/loaded_file.h"
#include "cli/options.h"
#include "cli/printable.h"
#include "cli/size_table.h"
#include "cli/usage.h"
#include "gif/block_line.h"
#include "gif/descriptor.h"
#include "gif/source_bytes.h"
#include "platform/text_encoding.h"

namespace {

bool HasText(const Block& block) {
    return block.kind == kPlainTextBlock || block.kind == kApplicationBlock || block.kind == kCommentBlock ||
           block.kind == kBlockNamesBlock || block.kind == kUnknownBlock;
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

// All of a block's fields but those about its source, which PrintSource adds; without the brace at the end.
std::string JsonOf(const Block& block, uint32_t index) {
    std::string json = "{\"position\": " + std::to_string(index) + ", \"kind\": " + std::to_string(block.kind);
    json += ", \"kindName\": " + JsonText(FormatKindName(block.kind));
    json += ", \"line\": " + JsonText(LineOf(block));
    json += ", \"descriptor\": " + JsonHex(block.descriptor, kDescriptorBytes);
    json += ", \"dataLength\": " + std::to_string(HasText(block) ? block.dataLength : 0);
    if (HasText(block)) json += DataField(block);
    json += PaletteField(block) + NameField(block);
    if (block.kind == kImageBlock) json += ImageField(block);
    return json;
}

// The bytes that the block came from, which may be as many as the file has.
void PrintSource(const Block& block) {
    SourceLock source(block);
    if (source && !source.Stray().empty()) {
        printf(", \"stray\": ");
        PrintJsonHex(source.Stray());
    }
    if (!source || !HasSource(block)) {
        printf(", \"offset\": null, \"bytes\": null, \"raw\": null");
        return;
    }
    const uint32_t offset = block.source.start + block.source.stray;
    printf(", \"offset\": %u, \"bytes\": %u, \"raw\": ", unsigned{offset}, unsigned{block.source.bytes});
    PrintJsonHex(source.Own());
}

void PrintFileBytes(const char* field, const FileBytes& where) {
    MemoryLock lock(where.memory);
    if (!lock || where.bytes == 0) return;
    printf(", \"%s\": ", field);
    PrintJsonHex({lock.Bytes() + where.start, where.bytes});
}

void PrintDamage(const Damage& damage) {
    const std::string block = damage.block < 0 ? "null" : std::to_string(damage.block);
    printf("{\"offset\": %u, \"block\": %s, \"harmless\": %s, \"text\": %s}", unsigned{damage.offset}, block.c_str(),
           IsHarmless(damage) ? "true" : "false", JsonText(DescribeDamage(damage)).c_str());
}

void PrintDamages(const std::vector<Damage>& damages) {
    printf(", \"damages\": [");
    for (size_t i = 0; i < damages.size(); ++i) {
        if (i) printf(", ");
        PrintDamage(damages[i]);
    }
    putchar(']');
}

void PrintLines(const BlockList& list) {
    for (const Block& block : list.All()) puts(Printable(LineOf(block)).c_str());
}

// `sizes`: null where they were not asked for.
void PrintJson(const LoadedFile& file, bool whole, const DocumentSizes* sizes) {
    printf("{\"result\": %d, \"complete\": %s, \"ended\": %s", static_cast<int>(file.result),
           file.report.reachedTrailer ? "true" : "false", JsonText(file.WhereLoadEnded()).c_str());
    if (whole) {
        printf(", \"manner\": \"whole\"");
        PrintDamages(file.report.damages);
        PrintFileBytes("before", file.list.before);
    }
    printf(", \"blocks\": [");
    for (uint32_t index = 0; index < file.list.count; ++index) {
        printf("%s%s", index ? ", " : "", JsonOf(file.list.blocks[index], index).c_str());
        if (whole) PrintSource(file.list.blocks[index]);
        if (sizes) fputs(JsonSizes(sizes->blocks[index]).c_str(), stdout);
        putchar('}');
    }
    putchar(']');
    if (whole) PrintFileBytes("after", file.list.after);
    if (sizes) fputs(JsonSizes(file, *sizes).c_str(), stdout);
    puts("}");
}

// Returns whether all is well, `done` whether it was so far. What compares texts goes on with a file of another kind.
bool PrintText(const LoadedFile& file, const Options& options, bool done) {
    const std::string& path = options.Operands()[0];
    std::string why = "out of memory";
    if (file.result == kReadNotGif) {
        done = !options.Has("--strict");
        if (PrintOtherFile(path, &why)) return done;
    } else if (PrintAsText(file.list)) {
        return done;
    }
    Complain(path, why);
    return false;
}

// Returns whether all is well, `done` whether it was so far. What is no document has no sizes.
bool PrintSizes(const LoadedFile& file, const Options& options, bool done) {
    DocumentSizes sizes;
    const bool isMeasured = file.list.count > 0 && MeasureDocument(file.list, &sizes);
    if (!isMeasured && done) Complain(NameOfInput(options.Operands()[0]), "not enough memory");
    if (options.Has("--json"))
        PrintJson(file, true, isMeasured ? &sizes : nullptr);
    else if (isMeasured)
        PrintSizeTable(file, sizes);
    return done && isMeasured;
}

// What is wrong with the options, or an empty text.
std::string WrongOptions(const Options& options) {
    if (!options.Error().empty()) return options.Error();
    if (options.Has("--json") && options.Has("--text")) return "give --json or --text, not both";
    if (options.Has("--sizes") && options.Has("--text")) return "give --sizes or --text, not both";
    if (options.Has("--sizes") && !options.IsWhole()) return "--sizes are those of the file, which --classic forgets";
    return options.Operands().size() == 1 ? "" : "give one FILE";
}

}  // namespace

const char kListHelp[] =
    "Usage: zephyr list [--classic] [--json | --text] [--sizes] [--strict] FILE\n"
    "\n"
    "Prints one line per block of the GIF file FILE, as the editor's list shows it.\n"
    "The first line is block number 0. Control characters of the file's texts and\n"
    "names are written as \\xNN. Damage of the file is told on standard error, of up\n"
    "to 20 places.\n"
    "With --json, prints one JSON object instead: the result of the load (1 done,\n"
    "0 failed, 2 not a GIF file), whether it is complete (reached the trailer), where\n"
    "it ended (trailer, end of file, application block: the data of one that is not\n"
    "read, unknown byte, failure, not opened, no GIF file), and the blocks with their\n"
    "numbers, descriptor bytes, texts and palettes (of headers and images that have\n"
    "one). Each block has the offset, count and hexadecimal digits (raw) of its bytes\n"
    "in the file, and stray: bytes before it that start no block. The document has\n"
    "its damages, and what stands before its signature and after its last block.\n"
    "With --text, prints all fields of each block instead, sums (CRC-32) of pixels,\n"
    "colours and data, and the lines of texts. Nothing in it depends on where a block\n"
    "stands, so git shows what was changed in a GIF file when this is its textconv.\n"
    "A file that is no GIF file is then one line that says so, and no failure.\n"
    "With --sizes, prints the bytes of each block, its share of the file, and what\n"
    "they are for: palette, pixels (codes), data (texts, and what belongs to other\n"
    "applications) and overhead (descriptors, lengths, ends), then what belongs to no\n"
    "block, and the sums. With --json too, blocks and document have these as sizes.\n"
    "With --strict the exit status is 1 also when there is damage that is not\n"
    "harmless, and with --text when it is no GIF file.\n"
    "With --classic it reads as the editor does by default; the JSON knows no bytes\n"
    "of the file then, and --strict wants a load that is complete.\n"
    "The blocks read before a failure are printed too.\n";

int RunList(const Words& words) {
    Options options(words, {"--json", "--text", "--sizes", "--strict"}, {});
    if (std::string wrong = WrongOptions(options); !wrong.empty()) return WrongUsage("list", wrong);
    LoadedFile file;
    bool done = file.Open(options.Operands()[0], options);
    if (options.Has("--sizes"))
        done = PrintSizes(file, options, done);
    else if (options.Has("--json"))
        PrintJson(file, options.IsWhole(), nullptr);
    else if (options.Has("--text"))
        done = PrintText(file, options, done);
    else
        PrintLines(file.list);
    return FlushOutput() && done ? kExitDone : kExitFailed;
}

#include "cli/block_fields.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <climits>
#include <limits>

#include "animation/animation.h"
#include "cli/input_file.h"
#include "cli/options.h"
#include "gif/application_data.h"
#include "gif/block_line.h"
#include "gif/descriptor.h"
#include "gif/source_bytes.h"
#include "platform/text_encoding.h"
#include "size/palette_edits.h"

namespace {

// What a value should have been; nothing when it was set.
struct Refused {
    std::string what;
    bool ofDocument = false;  // not the value was wrong, but the document can't take it
    std::string file = {};    // `what` is what is wrong with this file
};

// All setters: `item` is what stands behind the colon of the field's name.
using Setter = Refused (*)(Block* block, const std::string& item, const std::string& value);

std::string NumberUpTo(unsigned most) {
    return "a whole number of 0 to " + std::to_string(most);
}

template <auto kGet, auto kPut, auto kMember>
Refused SetNumber(Block* block, const std::string&, const std::string& value) {
    auto fields = kGet(*block);
    using Number = std::remove_reference_t<decltype(fields.*kMember)>;
    constexpr unsigned kMost = std::numeric_limits<Number>::max();
    unsigned number;
    if (!ParseNumber(value, kMost, &number)) return {NumberUpTo(kMost)};
    fields.*kMember = static_cast<Number>(number);
    kPut(block, fields);
    return {};
}

template <auto kGet, auto kPut, uint8_t kFlag>
Refused SetFlag(Block* block, const std::string&, const std::string& value) {
    bool on = value == "yes" || value == "1";
    if (!on && value != "no" && value != "0") return {"yes or no"};
    auto fields = kGet(*block);
    fields.packed = static_cast<uint8_t>((fields.packed & ~kFlag) | (on ? kFlag : 0));
    kPut(block, fields);
    return {};
}

// The rows of data that can't be decoded can't be put in another order.
Refused SetInterlaced(Block* block, const std::string& item, const std::string& value) {
    const uint8_t packed = GetImageFields(*block).packed;
    Refused refused = SetFlag<GetImageFields, PutImageFields, kImageInterlaced>(block, item, value);
    if (!refused.what.empty() || block->data || GetImageFields(*block).packed == packed) return refused;
    return {"a picture that can be decoded", true};
}

Refused SetColour(Block* block, const std::string& item, const std::string& value) {
    uint8_t packed = GetHeaderFields(*block).packed;
    if (!(packed & kHasPalette)) return {"a global palette, which this file lacks", true};
    auto last = static_cast<unsigned>(ColoursOfPacked(packed) - 1);
    unsigned entry = 0;
    unsigned colour = 0;
    bool isNumber = ParseNumber(item, UINT_MAX, &entry);
    if (!isNumber || entry > last) return {NumberUpTo(last) + " behind its colon", isNumber};
    const char* end = value.data() + value.size();
    if (value.size() != 7 || value[0] != '#' || std::from_chars(value.data() + 1, end, colour, 16).ptr != end)
        return {"a colour like #ff8000"};
    RgbTriple triple = {static_cast<uint8_t>(colour >> 16), static_cast<uint8_t>(colour >> 8),
                        static_cast<uint8_t>(colour)};
    if (!block->palette.SetEntry(entry, triple)) return {"more memory", true};
    return {};
}

Refused SetDisposal(Block* block, const std::string&, const std::string& value) {
    constexpr const char* kNames[] = {"nothing", "leave", "background", "previous"};
    const auto* name = std::find(std::begin(kNames), std::end(kNames), value);
    auto disposal = static_cast<unsigned>(name - kNames);
    if (name == std::end(kNames) && !ParseNumber(value, kControlDisposal >> kControlDisposalShift, &disposal))
        return {"nothing, leave, background, previous or a whole number of 0 to 7"};
    ControlFields fields = GetControlFields(*block);
    fields.packed =
        static_cast<uint8_t>((fields.packed & ~unsigned{kControlDisposal}) | disposal << kControlDisposalShift);
    PutControlFields(block, fields);
    return {};
}

// Without a transparent colour the index stays as it was, as in the editor.
Refused SetTransparent(Block* block, const std::string&, const std::string& value) {
    ControlFields fields = GetControlFields(*block);
    unsigned index = fields.transparentIndex;
    bool none = value == "none";
    if (!none && !ParseNumber(value, UINT8_MAX, &index)) return {"none or " + NumberUpTo(UINT8_MAX)};
    fields.packed = static_cast<uint8_t>((fields.packed & ~kControlTransparent) | (none ? 0 : kControlTransparent));
    fields.transparentIndex = static_cast<uint8_t>(index);
    PutControlFields(block, fields);
    return {};
}

Refused SetIterations(Block* block, const std::string&, const std::string& value) {
    unsigned iterations;
    if (!ParseNumber(value, UINT16_MAX, &iterations)) return {NumberUpTo(UINT16_MAX)};
    PutLoopIterations(block, static_cast<uint16_t>(iterations));
    return {};
}

// The colours beyond a smaller table are lost; new ones are black.
Refused SetColours(Block* block, const std::string&, const std::string& value) {
    const bool isHeader = block->kind == kHeaderBlock;
    unsigned colours = 0;
    const bool isCount = ParseNumber(value, kPaletteEntries, &colours) && colours != 1 && std::popcount(colours) < 2;
    if (!isCount || (colours == 0 && !isHeader))
        return {isHeader ? "2, 4, 8, 16, 32, 64, 128, 256 or 0 for no palette" : "2, 4, 8, 16, 32, 64, 128 or 256"};
    if (!isHeader && !(GetImageFields(*block).packed & kHasPalette))
        return {"a palette of its own, which this image lacks", true};
    if (!ResizeColourTable(block, static_cast<int>(colours))) return {"more memory", true};
    return {};
}

// The index that is transparent in the image, which is one of its owner's, or kNoTransparency. False when memory runs
// out.
bool FindTransparency(const Block& image, int* index) {
    *index = kNoTransparency;
    Animation animation;
    if (!animation.Open(*image.owner, Texts::kLeftOut)) return false;
    for (const Frame& frame : animation.Frames())
        if (frame.block == image.position) *index = frame.transparentIndex;
    return true;
}

Refused SetPalette(Block* block, const std::string&, const std::string& value) {
    if (value != "global") return {"global"};
    int transparentIndex;
    if (!FindTransparency(*block, &transparentIndex)) return {"more memory", true};
    switch (UseGlobalTable(FindGlobalPalette(*block->owner), transparentIndex, block)) {
        case SharedTable::kDone:
        case SharedTable::kHadNone: return {};
        case SharedTable::kLacksColours: return {"all colours of the picture in the global palette", true};
        case SharedTable::kNoPicture: return {"a picture that can be decoded", true};
        case SharedTable::kNoMemory: break;
    }
    return {"more memory", true};
}

Refused SetEncoding(Block* block, const std::string&, const std::string& value) {
    if (value != "new") return {"new"};
    if (!block->data) return {"a picture that can be decoded", true};
    if (!MarkChanged(block)) return {"more memory", true};
    return {};
}

// Lines of a document's texts end in a carriage return and a line feed.
std::string WithDocumentLineEnds(const std::string& text) {
    std::string lines;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\r' && text[i] != '\n') {
            lines += text[i];
            continue;
        }
        if (text.compare(i, 2, "\r\n") == 0) ++i;
        lines += "\r\n";
    }
    return lines;
}

// As in the editor, an empty text is no text at all. The classic manner leaves such a block out of the file.
void DropText(Block* block) {
    block->data = nullptr;
    block->dataLength = 0;
}

Refused SetText(Block* block, const std::string&, const std::string& value) {
    if (!FitsWindows1252(value)) return {"only characters that Windows-1252 has"};
    std::string text = WithDocumentLineEnds(Windows1252FromUtf8(value));
    if (text.size() > kMaxTextBytes) return {"at most " + std::to_string(kMaxTextBytes) + " characters"};
    if (text.empty()) return DropText(block), Refused();
    if (!SetBlockText(block, text.data(), static_cast<uint32_t>(text.size()))) return {"more memory", true};
    return {};
}

Refused SetData(Block* block, const std::string&, const std::string& value) {
    if (value.size() < 2 || value[0] != '@') return {"@ and the name of a file, or @- for standard input"};
    const std::string file = value.substr(1);
    BlockData data;
    std::string why;
    if (!ReadInputFile(file, &data, &why)) return {why, true, file};
    if (!SetBlockData(block, data.All())) return {"more memory", true};
    return {};
}

template <auto kMember>
constexpr Setter kHeaderNumber = SetNumber<GetHeaderFields, PutHeaderFields, kMember>;
template <auto kMember>
constexpr Setter kImageNumber = SetNumber<GetImageFields, PutImageFields, kMember>;
template <auto kMember>
constexpr Setter kControlNumber = SetNumber<GetControlFields, PutControlFields, kMember>;
template <auto kMember>
constexpr Setter kPlainTextNumber = SetNumber<GetPlainTextFields, PutPlainTextFields, kMember>;

// NOLINTNEXTLINE(clang-analyzer-optin.performance.Padding): a row reads best from the kind to the setter
struct Field {
    uint16_t kind;
    const char* name;  // one that ends in a colon is followed by an item's number
    Setter set;
    bool inWholeOnly = false;
    bool makesSource = false;  // see MakesSource
};

constexpr Field kFields[] = {
    {kHeaderBlock, "width", kHeaderNumber<&HeaderFields::screenWidth>},
    {kHeaderBlock, "height", kHeaderNumber<&HeaderFields::screenHeight>},
    {kHeaderBlock, "background", kHeaderNumber<&HeaderFields::backgroundIndex>},
    {kHeaderBlock, "sorted", SetFlag<GetHeaderFields, PutHeaderFields, kQuirkHeaderSorted>},
    {kHeaderBlock, "colour:", SetColour},
    {kHeaderBlock, "colours", SetColours, false, true},
    {kImageBlock, "left", kImageNumber<&ImageFields::left>},
    {kImageBlock, "top", kImageNumber<&ImageFields::top>},
    {kImageBlock, "interlaced", SetInterlaced},
    {kImageBlock, "colours", SetColours, false, true},
    {kImageBlock, "palette", SetPalette, false, true},
    {kImageBlock, "encoding", SetEncoding, false, true},
    {kControlBlock, "delay", kControlNumber<&ControlFields::delay>},
    {kControlBlock, "disposal", SetDisposal},
    {kControlBlock, "transparent", SetTransparent},
    {kControlBlock, "input", SetFlag<GetControlFields, PutControlFields, kControlUserInput>},
    {kPlainTextBlock, "text", SetText},
    {kPlainTextBlock, "left", kPlainTextNumber<&PlainTextFields::left>},
    {kPlainTextBlock, "top", kPlainTextNumber<&PlainTextFields::top>},
    {kPlainTextBlock, "foreground", kPlainTextNumber<&PlainTextFields::foregroundIndex>},
    {kPlainTextBlock, "background", kPlainTextNumber<&PlainTextFields::backgroundIndex>},
    {kPlainTextBlock, "grid-width", kPlainTextNumber<&PlainTextFields::gridWidth>},
    {kPlainTextBlock, "grid-height", kPlainTextNumber<&PlainTextFields::gridHeight>},
    {kPlainTextBlock, "cell-width", kPlainTextNumber<&PlainTextFields::cellWidth>},
    {kPlainTextBlock, "cell-height", kPlainTextNumber<&PlainTextFields::cellHeight>},
    {kCommentBlock, "text", SetText},
    {kLoopBlock, "iterations", SetIterations},
    {kApplicationBlock, "data", SetData, true},
    {kUnknownBlock, "data", SetData, true},
};

bool IsFieldOf(const Field& field, uint16_t kind, Manner manner) {
    return field.kind == kind && (!field.inWholeOnly || manner == Manner::kWhole);
}

const Field* FindField(uint16_t kind, const std::string& name, Manner manner) {
    for (const Field& known : kFields)
        if (IsFieldOf(known, kind, manner) && name == known.name) return &known;
    return nullptr;
}

std::string NoSuchField(uint16_t kind, const std::string& field, Manner manner) {
    std::string kindName = FormatKindName(kind);
    std::string names;
    for (const Field& known : kFields)
        if (IsFieldOf(known, kind, manner)) names.append(names.empty() ? "" : ", ").append(known.name);
    if (names.empty()) return kindName + " blocks can't be changed";
    return kindName + " blocks have no field " + field + ", but " + names;
}

}  // namespace

bool MakesSource(const Block& block, const std::string& field) {
    const Field* known = FindField(block.kind, field, Manner::kWhole);
    return known && known->makesSource;
}

FieldRefusal SetBlockField(Block* block, const std::string& field, const std::string& value, Manner manner) {
    size_t nameEnd = std::min(field.find(':'), field.size() - 1) + 1;
    const Field* known = FindField(block->kind, field.substr(0, nameEnd), manner);
    if (!known) return {NoSuchField(block->kind, field, manner), false, "", true};
    Refused refused = known->set(block, field.substr(nameEnd), value);
    if (refused.what.empty()) return {};
    if (!refused.file.empty()) return {refused.what, false, refused.file, false};
    return {field + " wants " + refused.what, !refused.ofDocument};
}

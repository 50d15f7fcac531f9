// zephyr insert: new blocks, as the editor's Insert command makes them.
#include "cli/commands.h"
#include "cli/complaints.h"
#include "cli/loaded_file.h"
#include "cli/names.h"
#include "cli/options.h"
#include "cli/save_document.h"
#include "cli/usage.h"
#include "editing/palette_match.h"
#include "gif/default_blocks.h"
#include "texts/string_ids.h"
#include "texts/strings.h"

namespace {

struct KindName {
    const char* name;
    uint16_t kind;
};

constexpr KindName kKindNames[] = {
    {"image", kImageBlock},         {"control", kControlBlock}, {"comment", kCommentBlock},
    {"plaintext", kPlainTextBlock}, {"loop", kLoopBlock},
};

// What to do with images whose colours are not the document's.
enum class Colours { kNotSaid, kRemap, kDither, kKeep };

struct ColourOption {
    const char* option;
    Colours colours;
};

constexpr ColourOption kColourOptions[] = {
    {"--remap", Colours::kRemap}, {"--dither", Colours::kDither}, {"--keep", Colours::kKeep}};

class InsertAnswers : public Questions {
public:
    explicit InsertAnswers(Colours colours) : colours_(colours) {}
    PaletteChoice ChoosePalette(const Block&) override {
        if (colours_ == Colours::kRemap) return PaletteChoice::kRemap;
        return colours_ == Colours::kDither ? PaletteChoice::kDither : PaletteChoice::kCancel;
    }
    bool KeepsColours() override { return colours_ == Colours::kKeep; }
    bool MayLeaveOut(const std::string&, Failure) override { return false; }

private:
    Colours colours_;
};

// What the words ask for.
struct Order {
    uint16_t kind = kEmptyBlock;
    Colours colours = Colours::kNotSaid;
    uint32_t place = 0;  // the block behind which the new ones come
    Words files;         // the images
};

// Fills `order`; returns what is wrong with the words, or an empty text.
std::string ReadOrder(const Options& options, Order* order) {
    const Words& operands = options.Operands();
    if (operands.size() < 2) return "give IN and OUT";
    order->files.assign(operands.begin() + 2, operands.end());

    const std::string* kind = options.Value("--kind");
    for (const KindName& known : kKindNames)
        if (kind && *kind == known.name) order->kind = known.kind;
    if (order->kind == kEmptyBlock) return "give --kind and image, control, comment, plaintext or loop";

    for (const ColourOption& known : kColourOptions) {
        if (!options.Has(known.option)) continue;
        if (order->colours != Colours::kNotSaid) return "give one of --remap, --dither and --keep";
        order->colours = known.colours;
    }
    bool images = order->kind == kImageBlock;
    if (images && order->files.empty()) return "give at least one image FILE";
    if (!images && !order->files.empty()) return "a FILE is for --kind image only";
    if (!images && order->colours != Colours::kNotSaid) return "--remap, --dither and --keep are for images only";
    const std::string* at = options.Value("--at");
    if (!at && order->kind != kLoopBlock) return "give --at and the number of a block";
    std::string error = WrongNames(options);
    if (at && error.empty()) (void)ParseIndex(*at, &order->place, &error);
    return error;
}

// Why the image of the file can't join the document.
std::string WhyNotInserted(const std::string& path, const Result<std::vector<Block>>& image) {
    switch (image.Why()) {
        case Failure::kCancelled: return "its colours are not the document's: give --remap, --dither or --keep";
        case Failure::kNoMemory: return "out of memory";
        default: return WhyNoPicture(path, image.Why(), image.Reason());
    }
}

// Why the document can't take a block of the kind, or an empty text.
std::string WhyNotAllowed(const BlockList& list, uint16_t kind) {
    if (kind == kLoopBlock && HasLoopBlock(list)) return LoadStr(IDS_SECOND_LOOP);
    if (kind == kPlainTextBlock && FindGlobalPalette(list).depth == 0)
        return "there is no global palette, whose colours a plain text block needs";
    return "";
}

// Makes the blocks that are to be inserted. False, with the reason on standard error, when one can't be had.
bool MakeBlocks(BlockList* list, const Order& order, const std::string& path, std::vector<Block>* blocks) {
    InsertAnswers answers(order.colours);
    for (const std::string& file : order.files) {
        const Result<std::vector<Block>> image = ImportImage(list, file, answers);
        if (!image) {
            Complain(file, WhyNotInserted(file, image));
            return false;
        }
        blocks->insert(blocks->end(), image->begin(), image->end());
    }
    if (order.kind == kImageBlock) return true;
    std::string reason = WhyNotAllowed(*list, order.kind);
    Result<Block> block = reason.empty() ? MakeBlock(list, order.kind) : Failure::kNotAllowed;
    if (block) {
        blocks->push_back(*block);
        return true;
    }
    Complain(path, reason.empty() ? "out of memory" : reason);
    return false;
}

// All at once, so that the blocks behind them move only once.
bool Insert(LoadedFile* file, const Order& order, const std::string& path, TouchedBlocks* made) {
    std::vector<Block> blocks;
    if (!file->At(order.place) || !MakeBlocks(&file->list, order, path, &blocks)) return false;
    int selection = order.kind == kLoopBlock ? 0 : static_cast<int>(order.place);
    *made = {static_cast<uint32_t>(selection) + 1, static_cast<uint32_t>(blocks.size())};
    if (InsertBlocks(&file->list, &selection, blocks)) return true;
    Complain(path, "out of memory");
    return false;
}

}  // namespace

const char kInsertHelp[] =
    "Usage: zephyr insert IN OUT --at INDEX --kind KIND [OPTION...] [FILE...]\n"
    "\n"
    "Loads the GIF file IN, inserts new blocks after block number INDEX (0 is the\n"
    "header) and writes the result to OUT, all other blocks as they were. Kinds:\n"
    "\n"
    "  image      the picture of each FILE (PNG, JPEG, BMP, or the first image of a\n"
    "             GIF file), in the order given; one that is transparent somewhere\n"
    "             comes with a control block that says so\n"
    "  control    a control block without flags, with a delay of 1/100 second\n"
    "  comment    a comment with a text to be replaced\n"
    "  plaintext  a plain text block with such a text; IN needs a global palette\n"
    "  loop       a loop block, right after the header whatever INDEX is (and --at\n"
    "             may be left out); only one is allowed\n"
    "\n"
    "What to do with an image whose colours are not IN's global palette:\n"
    "\n"
    "  --remap    show each pixel in the nearest colour of that palette\n"
    "  --dither   show it in mixtures of those colours\n"
    "  --keep     keep its colours, as a local palette\n"
    "\n"
    "In a document without a global palette there is nothing to remap or dither to,\n"
    "and an inserted image keeps its colours.\n"
    "\n"
    "When one of several images can't be inserted, nothing is written.\n"
    "\n"
    "  --owner NAME, --organisation NAME\n"
    "             add a file-identity comment with these names; one that is not\n"
    "             given is that which Windows is registered to, elsewhere empty\n"
    "  --fit-screen\n"
    "             set the logical screen to the right and bottom edge of the images\n"
    "  --strict   fail, and write nothing, when IN is damaged; with --classic, when\n"
    "             its load ended before the trailer\n"
    "  --classic  read and write as the editor does by default: what is not\n"
    "             understood is dropped, every block is written anew, the screen is\n"
    "             fitted, the comment is always there, and an image of other colours\n"
    "             needs --keep also in a document without a global palette\n";

int RunInsert(const Words& words) {
    Options options(words, {"--remap", "--dither", "--keep", "--strict", "--fit-screen"},
                    {"--at", "--kind", "--owner", "--organisation"});
    if (!options.Error().empty()) return WrongUsage("insert", options.Error());
    Order order;
    std::string error = ReadOrder(options, &order);
    if (!error.empty()) return WrongUsage("insert", error);

    const std::string& in = options.Operands()[0];
    LoadedFile file;
    if (!file.Open(in, options)) return kExitFailed;
    // Nothing to choose from: without a global palette nobody could show the image in other colours than its own.
    if (options.IsWhole() && FindGlobalPalette(file.list).depth == 0) order.colours = Colours::kKeep;
    TouchedBlocks made;
    if (!Insert(&file, order, in, &made)) return kExitFailed;
    return SaveDocument(&file.list, options.Operands()[1], options, made);
}

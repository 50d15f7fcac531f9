// zephyr insert: new blocks, as the editor's Insert command makes them.
#include "cli/commands.h"
#include "cli/complaints.h"
#include "cli/document.h"
#include "cli/names.h"
#include "cli/options.h"
#include "cli/save_document.h"
#include "cli/usage.h"
#include "editing/palette_match.h"
#include "gif/default_blocks.h"
#include "gif/first_image.h"
#include "platform/prompts.h"
#include "resources/string_ids.h"

namespace {

struct KindName {
    const char* name;
    uint16_t kind;
};

constexpr KindName kKindNames[] = {
    {"image", kImageBlock},         {"control", kControlBlock}, {"comment", kCommentBlock},
    {"plaintext", kPlainTextBlock}, {"loop", kLoopBlock},
};

struct PaletteOption {
    const char* option;
    int choice;
};

constexpr PaletteOption kPaletteOptions[] = {
    {"--remap", kPaletteRemap}, {"--dither", kPaletteDither}, {"--keep", kPaletteKeepAsLocal}};

// What the words ask for.
struct Order {
    uint16_t kind = kEmptyBlock;
    int paletteChoice = kAskForPalette;
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

    for (const PaletteOption& known : kPaletteOptions) {
        if (!options.Has(known.option)) continue;
        if (order->paletteChoice != kAskForPalette) return "give one of --remap, --dither and --keep";
        order->paletteChoice = known.choice;
    }
    bool images = order->kind == kImageBlock;
    if (images && order->files.empty()) return "give at least one image FILE";
    if (!images && !order->files.empty()) return "a FILE is for --kind image only";
    if (!images && order->paletteChoice != kAskForPalette) return "--remap, --dither and --keep are for images only";
    const std::string* at = options.Value("--at");
    if (!at && order->kind != kLoopBlock) return "give --at and the number of a block";
    std::string error = WrongNames(options);
    if (at && error.empty()) (void)ParseIndex(*at, &order->place, &error);
    return error;
}

// Why no image came from the file.
std::string WhyNotInserted(const std::string& path) {
    File file;
    int depth;
    OwnedMemory image(file.OpenForReading(path.c_str()) ? ReadFirstImage(file, &depth) : nullptr);
    if (!image) return WhyNoPicture(path);
    if (paletteChoiceForInsert != kAskForPalette) return "out of memory";
    return "its colours are not the document's: give --remap, --dither or --keep";
}

bool OutOfMemory(const std::string& path) {
    Complain(path, "out of memory");
    return false;
}

// Appends the image of the file at `path` to `images`, fitted to `document`.
bool TakeImage(BlockList* document, const std::string& path, BlockList* images) {
    Block image;
    if (!MakeDefaultBlock(nullptr, document, &image, kImageBlock, nullptr, path.c_str())) {
        Complain(path, WhyNotInserted(path));
        return false;
    }
    if (AppendBlock(images, &image)) return true;
    FreeBlock(&image);
    return OutOfMemory(path);
}

// All at once, so that the blocks behind them move only once.
bool InsertImages(BlockList* list, uint32_t place, const Words& files, const std::string& path) {
    OwnedBlockList images;
    if (!CreateBlockList(&images)) return OutOfMemory(path);
    for (const std::string& file : files)
        if (!TakeImage(list, file, &images)) return false;
    return InsertBlocks(list, place + 1, &images) || OutOfMemory(path);
}

// Why the document can't take a block of the kind, or an empty text.
std::string WhyNotAllowed(const BlockList& list, uint16_t kind) {
    if (kind == kLoopBlock && HasLoopBlock(list)) return LoadStr(IDS_SECOND_LOOP);
    if (kind == kPlainTextBlock && !FindGlobalPalette(list, nullptr))
        return "there is no global palette, whose colours a plain text block needs";
    return "";
}

bool InsertOther(BlockList* list, uint32_t place, uint16_t kind, const std::string& path) {
    std::string reason = WhyNotAllowed(*list, kind);
    if (!reason.empty()) {
        Complain(path, reason);
        return false;
    }
    int selection = static_cast<int>(place);
    return InsertBlock(nullptr, list, &selection, kind, nullptr, nullptr);
}

bool Insert(BlockList* list, const Order& order, const std::string& path) {
    Block block;
    if (!FindBlock(*list, path, order.place, &block)) return false;
    paletteChoiceForInsert = order.paletteChoice;
    if (order.kind == kImageBlock) return InsertImages(list, order.place, order.files, path);
    return InsertOther(list, order.kind == kLoopBlock ? 0 : order.place, order.kind, path);
}

}  // namespace

const char kInsertHelp[] =
    "Usage: zephyr insert IN OUT --at INDEX --kind KIND [OPTION...] [FILE...]\n"
    "\n"
    "Loads the GIF file IN, inserts new blocks after block number INDEX (0 is the\n"
    "header), fits the logical screen to the images and writes the result to OUT.\n"
    "Kinds:\n"
    "\n"
    "  image      the first image of each GIF file FILE, in the order given\n"
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
    "In a document without a global palette every inserted image gets a local one;\n"
    "there --keep is what you want, as there is nothing to remap or dither to.\n"
    "\n"
    "When one of several images can't be inserted, nothing is written.\n"
    "\n"
    "  --owner NAME, --organisation NAME\n"
    "             names for the file-identity comment; by default those that\n"
    "             Windows is registered to, elsewhere empty\n"
    "  --strict   fail, and write nothing, when the load of IN ended before its\n"
    "             trailer\n";

int RunInsert(const Words& words) {
    Options options(words, {"--remap", "--dither", "--keep", "--strict"},
                    {"--at", "--kind", "--owner", "--organisation"});
    if (!options.Error().empty()) return WrongUsage("insert", options.Error());
    Order order;
    std::string error = ReadOrder(options, &order);
    if (!error.empty()) return WrongUsage("insert", error);

    const std::string& in = options.Operands()[0];
    Document document;
    if (!document.Open(in, options) || !Insert(&document.list, order, in)) return kExitFailed;
    return SaveDocument(&document.list, options.Operands()[1], options);
}

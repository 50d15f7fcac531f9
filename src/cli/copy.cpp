// zephyr copy: blocks a second time, or those of another document.
#include "cli/commands.h"
#include "cli/complaints.h"
#include "cli/edited_file.h"
#include "cli/names.h"
#include "cli/usage.h"
#include "editing/block_copy.h"

namespace {

struct ColourOption {
    const char* option;
    ForeignColours colours;
};
constexpr ColourOption kColourOptions[] = {
    {"--remap", ForeignColours::kRemap}, {"--dither", ForeignColours::kDither}, {"--keep", ForeignColours::kKeep}};

// What the words ask for.
struct Order {
    Selection blocks, place;
    ForeignColours colours = ForeignColours::kRefuse;
    Looks looks = Looks::kLeft;
};

// Returns what is wrong with the words, or an empty text.
std::string ReadColours(const Options& options, Order* order) {
    for (const ColourOption& known : kColourOptions) {
        if (!options.Has(known.option)) continue;
        if (order->colours != ForeignColours::kRefuse) return "give one of --remap, --dither and --keep";
        order->colours = known.colours;
    }
    if (order->colours != ForeignColours::kRefuse && !options.Value("--from"))
        return "--remap, --dither and --keep are for blocks of another file (--from)";
    if (order->looks == Looks::kLeft) return "";
    if (order->colours != ForeignColours::kRefuse && order->colours != ForeignColours::kKeep)
        return "frames that keep their looks keep their colours: give --keep-looks without --remap and --dither";
    order->colours = ForeignColours::kKeep;
    return "";
}

std::string ReadOrder(const Options& options, Order* order) {
    if (std::string wrong = WrongNames(options); !wrong.empty()) return wrong;
    if (options.Operands().size() < 3) return "give IN, OUT and the blocks to be copied";
    if (options.Has("--keep-looks")) order->looks = Looks::kKept;
    if (std::string wrong = ReadColours(options, order); !wrong.empty()) return wrong;
    std::string wrong = ReadSelection(options, 2, "", &order->blocks);
    return wrong.empty() ? ReadPlace(options, &order->place) : wrong;
}

int CopyWithin(const Options& options, const Order& order) {
    EditedFile file(options);
    std::vector<uint32_t> blocks;
    uint32_t at = 0;
    if (!file.Open() || !file.Find(order.blocks, &blocks) || !file.FindPlace(order.place, &at)) return kExitFailed;
    EditOutcome outcome = DuplicateBlocks(blocks, at, order.looks, file.List());
    return file.Finish(outcome, {at + 1, static_cast<uint32_t>(blocks.size())});
}

int CopyFrom(const std::string& path, const Options& options, const Order& order) {
    EditedFile file(options);
    LoadedFile other;
    std::string why;
    uint32_t at = 0;
    if (!file.Open() || !file.FindPlace(order.place, &at) || !other.Open(path, options)) return kExitFailed;
    const std::vector<uint32_t> blocks = order.blocks.Find(other.list, &why);
    CopyOutcome outcome;
    if (blocks.empty())
        outcome.refusal = why;
    else
        outcome = CopyBlocks(other.list, blocks, at, order.colours, order.looks, file.List());
    if (outcome.wantsChoice) outcome.refusal += ": give --remap, --dither or --keep";
    if (outcome) return file.Finish(outcome, {outcome.first, outcome.copied});
    Complain(path, outcome.refusal);
    return kExitFailed;
}

}  // namespace

const char kCopyHelp[] =
    "Usage: zephyr copy [OPTION...] IN OUT SELECTION... --at INDEX\n"
    "       zephyr copy [OPTION...] IN OUT SELECTION... --from OTHER --at INDEX\n"
    "\n"
    "Loads the GIF file IN, puts copies of the blocks of SELECTION, in the order of\n"
    "its words, behind block number INDEX of IN and writes the result to OUT. With\n"
    "--from they are blocks of the GIF file OTHER. The header is never copied, and\n"
    "there is one loop block at most. A SELECTION is a number as 7, a range as\n"
    "3-last, a kind as comment or image:0, or frames as frame:2-4: images with the\n"
    "controls before them; several come with commas or as several words.\n"
    "\n"
    "What to do with images and plain texts of OTHER whose colours IN does not have\n"
    "at the same places of its global palette:\n"
    "\n"
    "  --remap    show each pixel in the nearest colour of that palette\n"
    "  --dither   show images in mixtures of those colours\n"
    "  --keep     keep the colours of images, as local palettes\n"
    "\n"
    "In a document without a global palette an image keeps its colours unasked. What\n"
    "is transparent stays so; where the palette has no index left for that, nothing\n"
    "is written.\n"
    "\n"
    "  --keep-looks\n"
    "             frames look as they did in their documents: those that stand behind\n"
    "             others than before and would look different are composed anew\n"
    "  --fit-screen, --owner NAME, --organisation NAME, --strict, --classic\n"
    "             as with the command delete\n";

int RunCopy(const Words& words) {
    Options options(words, {"--keep-looks", "--remap", "--dither", "--keep", "--strict", "--fit-screen"},
                    {"--at", "--from", "--owner", "--organisation"});
    if (!options.Error().empty()) return WrongUsage("copy", options.Error());
    Order order;
    if (std::string wrong = ReadOrder(options, &order); !wrong.empty()) return WrongUsage("copy", wrong);
    const std::string* other = options.Value("--from");
    return other ? CopyFrom(*other, options, order) : CopyWithin(options, order);
}

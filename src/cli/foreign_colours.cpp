#include "cli/foreign_colours.h"

namespace {

struct ColourOption {
    const char* option;
    ForeignColours colours;
};
constexpr ColourOption kColourOptions[] = {
    {"--remap", ForeignColours::kRemap}, {"--dither", ForeignColours::kDither}, {"--keep", ForeignColours::kKeep}};

}  // namespace

std::string ReadForeignColours(const Options& options, ForeignColours* colours) {
    *colours = ForeignColours::kRefuse;
    for (const ColourOption& known : kColourOptions) {
        if (!options.Has(known.option)) continue;
        if (*colours != ForeignColours::kRefuse) return "give one of --remap, --dither and --keep";
        *colours = known.colours;
    }
    return "";
}

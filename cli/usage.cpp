#include "cli/usage.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "cli/commands.h"

namespace {

struct Help {
    const char* command;
    const char* text;
};

constexpr Help kHelp[] = {
    {"",
     "Usage: zephyr COMMAND [ARGUMENT...]\n"
     "\n"
     "Works on animated GIF files without a window.\n"
     "\n"
     "  list [--json] FILE          print the blocks of a file\n"
     "  save IN OUT                 load a file and write it again\n"
     "  extract FILE INDEX OUT.bmp  write the picture of an image block\n"
     "  build -o OUT FILE FILE...   make an animation from pictures\n"
     "\n"
     "  zephyr COMMAND --help       more about one command\n"
     "  zephyr --version            the program's version\n"
     "\n"
     "Exit status: 0 done, 1 the operation failed, 2 wrong usage.\n"},
    {"list",
     "Usage: zephyr list [--json] FILE\n"
     "\n"
     "Prints one line per block of the GIF file FILE, as the editor's list shows it.\n"
     "With --json, prints one JSON object instead: the result of the load (1 done, 0 failed,\n"
     "2 not a GIF file) and the blocks with their descriptor bytes, texts and palettes.\n"
     "The blocks read before a failure are printed too.\n"},
    {"save",
     "Usage: zephyr save [--owner NAME] [--organisation NAME] IN OUT\n"
     "\n"
     "Loads the GIF file IN, fits the logical screen to its images and writes it to OUT\n"
     "as GIF89a. The names go into the file-identity comment; they are empty by default.\n"},
    {"extract",
     "Usage: zephyr extract FILE INDEX OUT.bmp\n"
     "\n"
     "Writes the picture of block number INDEX (0 is the header) of the GIF file FILE\n"
     "as a BMP file.\n"},
    {"build",
     "Usage: zephyr build -o OUT [OPTION...] FILE FILE...\n"
     "\n"
     "Makes an animation from the first image of each GIF file FILE, in the order given, and\n"
     "writes it to OUT.\n"
     "\n"
     "  --match MANNER       whose colours the frames get:\n"
     "       super             one palette made from all frames (the default)\n"
     "       first             the palette of the first file\n"
     "       photo             a fixed palette, dithered: for photographs\n"
     "       drawn             a fixed palette, the nearest colours: for drawings\n"
     "       sixteen           sixteen standard colours\n"
     "  --web                for photo and drawn: the 216 web colours, not 256 of a cube\n"
     "  --loop               repeat for ever; otherwise the animation plays once\n"
     "  --delay N            show each frame for N hundredths of a second (0 to 65535,\n"
     "                       default 100)\n"
     "  --skip-corrupted     leave out files without a readable picture; otherwise the\n"
     "                       first one ends the command\n"
     "  --owner NAME, --organisation NAME\n"
     "                       names for the file-identity comment; empty by default\n"},
};

}  // namespace

int WrongUsage(const char* command, const std::string& what) {
    std::string name = *command ? std::string("zephyr ") + command : "zephyr";
    fprintf(stderr, "%s: %s (see %s --help)\n", name.c_str(), what.c_str(), name.c_str());
    return kExitUsage;
}

bool PrintHelp(const std::string& command) {
    for (const Help& help : kHelp)
        if (command == help.command) return fputs(help.text, stdout), true;
    return false;
}

bool FlushOutput() {
    if (fflush(stdout) == 0 && !ferror(stdout)) return true;
    fprintf(stderr, "zephyr: standard output: %s\n", strerror(errno));
    return false;
}

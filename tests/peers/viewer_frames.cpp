// Plays a GIF file through the viewer and writes what its window shows after every image: the logical screen, as
// FOLDER\000.ppm and so on. Every delay is over at once; the file plays once, whatever its loop block says.
//
//   viewer_frames FILE.gif FOLDER
#include <cstdio>
#include <string>

#include "gif/descriptor.h"
#include "gif/gif_reader.h"
#include "tests/gui/viewer_stage.h"

namespace {

constexpr int kMargin = 100;  // around the logical screen; images larger than the client area are placed otherwise

bool WriteFrame(const Picture& shown, const std::string& path) {
    FILE* file = fopen(path.c_str(), "wb");
    if (!file) return false;
    fprintf(file, "P6\n%d %d\n255\n", shown.width - 2 * kMargin, shown.height - 2 * kMargin);
    for (int y = kMargin; y < shown.height - kMargin; ++y)
        for (int x = kMargin; x < shown.width - kMargin; ++x)
            for (int shift : {0, 8, 16}) fputc(static_cast<int>(shown.At(x, y) >> shift & 255), file);
    return fclose(file) == 0;
}

bool WriteFrames(BlockList* list, const std::string& folder) {
    const Block* header = FindHeader(*list);
    if (!header) return false;
    const HeaderFields screen = GetHeaderFields(*header);
    ViewerStage stage(list, screen.screenWidth + 2 * kMargin, screen.screenHeight + 2 * kMargin);
    int frame = 0;
    for (uint32_t reached = 0; UINT message = stage.Step(); reached = stage.State().nextIndex) {
        if (stage.State().nextIndex < reached) return true;  // it repeats
        if (message != WM_VIEWER_DELAY) continue;
        if (!WriteFrame(stage.Look(), folder + "\\" + std::to_string(1000 + frame++).substr(1) + ".ppm")) return false;
        if (pendingWait > 0) stage.Tick();
    }
    return true;
}

}  // namespace

int main(int count, char** arguments) {
    BlockList list;
    if (count != 3 || !CreateBlockList(&list)) return fputs("usage: viewer_frames FILE.gif FOLDER\n", stderr), 2;
    ReadGifFile(&list, arguments[1]);  // what a broken file still has is played
    bool written = WriteFrames(&list, arguments[2]);
    return written ? 0 : (fprintf(stderr, "viewer_frames: cannot play %s\n", arguments[1]), 1);
}

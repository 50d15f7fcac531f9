// Plays a GIF file through the viewer and writes what its window shows after every image: the logical screen, as
// FOLDER\000.ppm and so on. Every delay is over at once; the file plays once, whatever its loop block says.
//
//   viewer_frames FILE.gif FOLDER
#include <cstdio>
#include <string>

#include "gif/gif_reader.h"
#include "tests/gui/viewer_stage.h"

namespace {

constexpr int kMargin = 100;  // around the logical screen; images larger than the client area are placed otherwise

bool WriteFrame(const Picture& shown, const std::string& path) {
    FILE* file = fopen(path.c_str(), "wb");
    if (!file) return false;
    fprintf(file, "P6\n%d %d\n255\n", shown.width - 2 * kMargin, shown.height - 2 * kMargin);
    for (int y = kMargin; y < shown.height - kMargin; ++y)
        for (int x = kMargin; x < shown.width - kMargin; ++x) {
            COLORREF colour = shown.At(x, y);
            const unsigned char bytes[] = {GetRValue(colour), GetGValue(colour), GetBValue(colour)};
            fwrite(bytes, 1, sizeof bytes, file);
        }
    return fclose(file) == 0;
}

bool WriteFrames(BlockList* list, const std::string& folder) {
    ViewerState first = {};
    if (!BeginViewing(&first, list)) return false;
    ViewerStage stage(list, static_cast<int>(first.screenWidth) + 2 * kMargin,
                      static_cast<int>(first.screenHeight) + 2 * kMargin);
    EndViewing(&first);
    int frame = 0;
    uint32_t reached = 0;
    while (UINT message = stage.Step()) {
        if (stage.State().nextIndex < reached) return true;  // it repeats
        reached = stage.State().nextIndex;
        if (message != WM_VIEWER_DELAY) continue;
        char name[20];
        snprintf(name, sizeof name, "\\%03d.ppm", frame++);
        if (!WriteFrame(stage.Look(), folder + name)) return false;
        if (pendingWait > 0) stage.Tick();
    }
    return true;
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 3) return fputs("usage: viewer_frames FILE.gif FOLDER\n", stderr), 2;
    BlockList list = {};
    if (!CreateBlockList(&list)) return 1;
    ReadGifFile(&list, arguments[1]);  // what a broken file still has is played
    bool written = WriteFrames(&list, arguments[2]);
    DestroyBlockList(&list);
    return written ? 0 : (fprintf(stderr, "viewer_frames: cannot play %s\n", arguments[1]), 1);
}

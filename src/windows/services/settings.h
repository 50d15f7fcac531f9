// The program's settings; the shell keeps them in a file between runs.
#pragma once

#include <cstdint>

struct Settings {
    uint32_t showStartupBanner = 1;  // non-zero: the information panel is shown at start
    uint32_t interlaceDelay = 4;     // milliseconds that each row of an interlaced image takes to appear; 1000 at most
    uint32_t fileMenuRange = 10;     // how many recent files are kept; 0: none
    uint32_t carefulMode = 0;        // non-zero: careful mode (careful.h)
    uint32_t readableDetails = 0;    // non-zero: the list's lines in the system's colours for text
    uint32_t preview = 0;            // non-zero: a pane right of the list shows the frame of the selected line
    uint32_t filmstrip = 0;          // non-zero: a strip of all frames under the list
    uint32_t undoMemory = 256;       // MiB that the steps of a document's history may hold
};
extern Settings settings;

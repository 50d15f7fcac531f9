#include "windows/app/screen_reach.h"

#include <string>

#include "gif/descriptor.h"
#include "windows/services/messages.h"

bool ReachesBeyondScreen(const BlockList& list, const Block& block) {
    const Block* header = FindHeader(list);
    if (!header || block.kind != kImageBlock) return false;
    const HeaderFields screen = GetHeaderFields(*header);
    const ImageFields image = GetImageFields(block);
    return image.left + image.width > screen.screenWidth || image.top + image.height > screen.screenHeight;
}

void TellBeyondScreen(HWND window, const BlockList& list) {
    const HeaderFields screen = GetHeaderFields(*FindHeader(list));
    const std::string text = "The image reaches beyond the screen of " + std::to_string(screen.screenWidth) + " x " +
                             std::to_string(screen.screenHeight) +
                             ", and players cut it off there. The header's editor sets the screen.";
    MessageBox(window, text.c_str());
}

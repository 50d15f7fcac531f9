#include "size/pixel_choices.h"

AlikePixels::AlikePixels(const PixelsToEncode& image) : image_(&image) {
    for (unsigned own = 0; own < others_.size(); ++own)
        for (unsigned index = 0; index < others_.size(); ++index)
            if (index != own && (*image.alike)[own][index]) others_[own].push_back(static_cast<uint8_t>(index));
}

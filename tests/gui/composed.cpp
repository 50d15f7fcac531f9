#include "tests/gui/composed.h"

#include <gtest/gtest.h>

#include "animation/stage.h"

ComposedFrame Compose(const BlockList& list, uint32_t frame) {
    Animation animation;
    Stage stage;
    EXPECT_TRUE(animation.Open(list, Texts::kDrawn));
    EXPECT_TRUE(stage.Open(animation, 0));
    EXPECT_TRUE(stage.Show(frame));
    ComposedFrame composed{animation.Width(), animation.Height(), {}, {}};
    for (int y = 0; y < composed.height; ++y)
        for (int x = 0; x < composed.width; ++x) {
            const uint32_t pixel = stage.Canvas().Row(y)[x];  // red lowest
            composed.pixels.push_back((pixel & 0xFF) << 16 | (pixel & 0xFF00) | (pixel >> 16 & 0xFF));
            composed.isOpaque.push_back(pixel >> 24 != 0);
        }
    return composed;
}

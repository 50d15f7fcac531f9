#include "imaging/nearest_colour.h"

int NearestColour(int red, int green, int blue, const RgbTriple* palette, int count) {
    int bestDistance = 1000000;  // more than any two colours can differ
    int best = 0;
    for (int i = 0; i < count && bestDistance > 0; ++i) {
        int dr = red - palette[i].red, dg = green - palette[i].green, db = blue - palette[i].blue;
        int distance = dr * dr + dg * dg + db * db;
        if (distance < bestDistance) {
            bestDistance = distance;
            best = i;
        }
    }
    return best;
}

int ExactColour(int red, int green, int blue, const RgbTriple* palette, int depth) {
    for (int i = 0; i < 1 << depth; ++i)
        if (palette[i].red == red && palette[i].green == green && palette[i].blue == blue) return i;
    return -1;
}

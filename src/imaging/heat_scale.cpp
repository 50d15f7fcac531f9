#include "imaging/heat_scale.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

// A helix in Oklab (Björn Ottosson, "A perceptual color space for image processing", 2020), in which equal distances
// look equal: lightness and hue rise evenly and the chroma stays, so all steps are of one length. These values keep it
// within sRGB.
constexpr double kDarkest = 0.25, kLightest = 0.95;
constexpr double kFirstHue = 270, kLastHue = 480;  // degrees: violet, red, yellow
constexpr double kChroma = 0.15;

double Cube(double value) {
    return value * value * value;
}

// An sRGB byte (IEC 61966-2-1) of a linear part of light.
uint8_t ByteOf(double light) {
    light = std::clamp(light, 0.0, 1.0);
    const double value = light <= 0.0031308 ? 12.92 * light : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
    return static_cast<uint8_t>(std::lround(255 * value));
}

RgbTriple FromOklab(double lightness, double a, double b) {
    const double l = Cube(lightness + 0.3963377774 * a + 0.2158037573 * b);
    const double m = Cube(lightness - 0.1055613458 * a - 0.0638541728 * b);
    const double s = Cube(lightness - 0.0894841775 * a - 1.2914855480 * b);
    return {ByteOf(4.0767416621 * l - 3.3077115913 * m + 0.2309699292 * s),
            ByteOf(-1.2684380046 * l + 2.6097574011 * m - 0.3413193965 * s),
            ByteOf(-0.0041960863 * l - 0.7034186147 * m + 1.7076147010 * s)};
}

}  // namespace

RgbTriple HeatColour(double heat) {
    heat = std::clamp(heat, 0.0, 1.0);
    const double hue = (kFirstHue + heat * (kLastHue - kFirstHue)) * std::numbers::pi / 180;
    return FromOklab(kDarkest + heat * (kLightest - kDarkest), kChroma * std::cos(hue), kChroma * std::sin(hue));
}

// What the GIF format allows of LZW codes; decoders and encoder share it.
#pragma once

constexpr int kLeastCodeSize = 2;  // minimum code sizes that images may have
constexpr int kMostCodeSize = 8;
constexpr unsigned kMostCodes = 4096;
constexpr unsigned kMostCodeBits = 12;

// What the GIF format allows of LZW codes; decoders and encoder share it.
#pragma once

constexpr int kLeastCodeSize = 2;  // minimum code sizes that images may have
constexpr int kMostCodeSize = 8;
constexpr int kLeastWholeCodeSize = 1;  // what some writers use, and most readers take
constexpr int kMostWholeCodeSize = 11;
constexpr unsigned kMostCodes = 4096;
constexpr unsigned kMostCodeBits = 12;

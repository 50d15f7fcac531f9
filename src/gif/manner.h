// The two manners of keeping a document.
#pragma once

#include <cstdint>

// Classic is exact about what the editor always did: what is not understood is dropped, what is written is written
// anew. Whole loses nothing: what nobody changed is written as it was read.
enum class Manner : uint8_t { kClassic, kWhole };

// Reading JSON just far enough to tell what it is made of.
#pragma once

#include <string>

// `json` with every string value as "s", every number as "n", and keys without their quotes; blanks between values
// left out. "broken at N" when the text at byte N is not what JSON allows there.
std::string JsonShape(const std::string& json);

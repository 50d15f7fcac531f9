// What a JSON text is made of.
#pragma once

#include <string>

// `json` with every string value as "s", every number as "n", and keys without their quotes; blanks between them left
// out.
std::string JsonShape(const std::string& json);

// The program's texts. The editor has them in its resources, the command line built in.
#pragma once

// A number that the string table deliberately does not have: what is told by it reads as a damaged program.
constexpr unsigned kQuirkMissingString = 198;

// The text number `id` of the string table (texts/string_ids.h), in Windows-1252. A number without a text gives
// "String table error - this application may be damaged". The text lies in one shared buffer of 256 bytes that the
// next call overwrites.
const char* LoadStr(unsigned id);

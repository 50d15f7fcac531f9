// What file.cpp needs of the operating system. Nobody else includes this.
#pragma once

#include <cstddef>
#include <cstdint>

// A file is the system's own number for it, -1 for none. `isOrdinary`: neither a device nor a pipe.
intptr_t SystemOpenForReading(const char* path);            // -1 on failure, and for a folder
intptr_t SystemCreate(const char* path, bool* isOrdinary);  // -1 on failure
// Bytes read, 0 at the end of the file, negative on an error. The system may return less than asked for.
ptrdiff_t SystemRead(intptr_t file, void* to, size_t bytes);
// Bytes written (maybe fewer than asked for), or negative on an error.
ptrdiff_t SystemWrite(intptr_t file, const void* from, size_t bytes);
bool SystemSeek(intptr_t file, uint64_t position);
bool SystemClose(intptr_t file);
bool SystemIsSpecial(const char* path);  // something stands there that is no ordinary file
void SystemDelete(const char* path);
bool SystemReplace(const char* from, const char* to);

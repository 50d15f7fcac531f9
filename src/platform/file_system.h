// What file.cpp and the two forms of replace_file need of the operating system. Besides, what moves files
// without them asks here for the system's words.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// A file is the system's own number for it, -1 for none. `isSeekable`: an ordinary file or a disk, not a pipe or
// terminal. `isOrdinary`: neither a device nor a pipe.
intptr_t SystemOpenForReading(const char* path, bool* isSeekable);  // -1 on failure, and for a folder
intptr_t SystemCreate(const char* path, bool* isOrdinary);          // -1 on failure
// Bytes read, 0 at the end of the file, negative on an error. The system may return less than asked for.
ptrdiff_t SystemRead(intptr_t file, void* to, size_t bytes);
// Bytes written (maybe fewer than asked for), or negative on an error.
ptrdiff_t SystemWrite(intptr_t file, const void* from, size_t bytes);
bool SystemSeek(intptr_t file, uint64_t position);
uint64_t SystemSize(intptr_t file);  // in bytes; 0 when it is not known
bool SystemClose(intptr_t file);
bool SystemIsSpecial(const char* path);  // something stands there that is no ordinary file
void SystemDelete(const char* path);

// The system's number for why the last of the above failed, numbers for reasons of our own, and its words for one
// (UTF-8, one line).
int SystemLastError();
extern const int kSystemNoMemory;
extern const int kSystemFileTooLarge;
std::string SystemErrorText(int error);

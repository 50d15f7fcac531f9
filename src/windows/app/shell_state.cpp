#include "windows/app/shell_state.h"

BlockList document;
bool documentChanged;
std::string currentFileName;
bool documentIsNamed;
std::string partlyReadFile;
uint32_t selectedLine;

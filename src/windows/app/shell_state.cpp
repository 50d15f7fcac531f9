#include "windows/app/shell_state.h"

BlockList document;
bool documentChanged;
std::string currentFileName;
uint32_t selectedLine;

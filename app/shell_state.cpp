#include "app/shell_state.h"

BlockList document;
bool documentChanged;
char currentFileName[kPathBytes];
uint32_t selectedLine;

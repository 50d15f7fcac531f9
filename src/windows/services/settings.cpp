#include "windows/services/settings.h"

Settings settings;

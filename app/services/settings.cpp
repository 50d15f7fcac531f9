#include "app/services/settings.h"

Settings settings;

#include "app/services/settings.h"

Settings settings;
DitherSettings ditherSettings;

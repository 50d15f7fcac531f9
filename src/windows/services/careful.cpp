#include "windows/services/careful.h"

#include "windows/services/settings.h"

bool Careful(Care) {
    return settings.carefulMode != 0;
}

// The string table as the command line and the native tests have it: built in.
#include <algorithm>
#include <cstring>
#include <iterator>

#include "texts/string_ids.h"
#include "texts/strings.h"

namespace {

struct Entry {
    unsigned id;
    const char* text;
};

constexpr Entry kEntries[] = {
#define STRING(id, text) {id, text},
#include "texts/string_table.inc"
#undef STRING
};

}  // namespace

const char* LoadStr(unsigned id) {
    static char buffer[256];
    const auto* entry = std::lower_bound(std::begin(kEntries), std::end(kEntries), id,
                                         [](const Entry& e, unsigned wanted) { return e.id < wanted; });
    bool found = entry != std::end(kEntries) && entry->id == id;
    const char* text = found ? entry->text : "String table error - this application may be damaged";
    strncpy(buffer, text, sizeof buffer - 1);
    return buffer;
}

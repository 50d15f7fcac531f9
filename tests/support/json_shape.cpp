#include "tests/support/json_shape.h"

#include <algorithm>

std::string JsonShape(const std::string& json) {
    std::string shape;
    for (size_t at = 0; at < json.size();) {
        size_t end = at + 1;
        if (json[at] == '"') {
            while (end < json.size() && json[end] != '"') end += json[end] == '\\' ? 2u : 1u;
            shape += json.compare(++end, 1, ":") == 0 ? json.substr(at + 1, end - at - 2) : "s";
        } else if (isdigit(json[at])) {
            end = std::min(json.find_first_not_of("0123456789", at), json.size());
            shape += 'n';
        } else if (json[at] != ' ') {
            shape += json[at];
        }
        at = end;
    }
    return shape;
}

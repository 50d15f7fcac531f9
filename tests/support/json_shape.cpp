#include "tests/support/json_shape.h"

#include <cstring>

namespace {

class Reader {
public:
    explicit Reader(const std::string& json) : json_(json) {}

    std::string Read() {
        bool isGood = Value();
        return isGood ? shape_ + json_.substr(at_) : "broken at " + std::to_string(at_);
    }

private:
    char Next() const { return at_ < json_.size() ? json_[at_] : '\0'; }
    bool Take(char c) {
        if (Next() != c) return false;
        ++at_;
        return true;
    }
    void SkipBlanks() {
        while (Next() == ' ') ++at_;
    }

    bool Value() {
        SkipBlanks();
        switch (Next()) {
            case '{': return Many('{', '}', [this] { return Key() && Value(); });
            case '[': return Many('[', ']', [this] { return Value(); });
            case '"': shape_ += 's'; return Text(nullptr);
            default: shape_ += 'n'; return Number();
        }
    }

    template <typename Part>
    bool Many(char open, char close, Part part) {
        shape_ += open;
        ++at_;
        for (bool isFirst = true; !Take(close); isFirst = false) {
            if (!isFirst && !Take(',')) return false;
            if (!isFirst) shape_ += ',';
            if (!part()) return false;
            SkipBlanks();
        }
        shape_ += close;
        return true;
    }

    bool Key() {
        SkipBlanks();
        if (!Text(&shape_) || !Take(':')) return false;
        shape_ += ':';
        return true;
    }

    bool Text(std::string* to) {
        if (!Take('"')) return false;
        for (; !Take('"'); ++at_) {
            char c = Next();
            if (static_cast<unsigned char>(c) < 32) return false;
            if (c == '\\' && !strchr("\"\\/bfnrtu", json_[++at_])) return false;
            if (to) *to += c;
        }
        return true;
    }

    bool Number() {
        size_t digits = strspn(json_.c_str() + at_, "0123456789");
        at_ += digits;
        return digits > 0;
    }

    const std::string& json_;
    size_t at_ = 0;
    std::string shape_;
};

}  // namespace

std::string JsonShape(const std::string& json) {
    return Reader(json).Read();
}

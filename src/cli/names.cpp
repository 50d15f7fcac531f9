#include "cli/names.h"

#include "platform/text_encoding.h"

namespace {

constexpr char kOwner[] = "--owner";
constexpr char kOrganisation[] = "--organisation";
constexpr size_t kMostCharacters = 259;

std::string NameOf(const Options& options, const char* option, const std::string& known) {
    const std::string* name = options.Value(option);
    return name ? Windows1252FromUtf8(*name) : known;
}

}  // namespace

std::string WrongNames(const Options& options) {
    for (const char* option : {kOwner, kOrganisation}) {
        const std::string* name = options.Value(option);
        if (!name) continue;
        if (!FitsWindows1252(*name)) return std::string(option) + " takes only characters that Windows-1252 has";
        if (Windows1252FromUtf8(*name).size() > kMostCharacters)
            return std::string(option) + " takes at most " + std::to_string(kMostCharacters) + " characters";
    }
    return "";
}

bool NamesAreGiven(const Options& options) {
    return options.Has(kOwner) || options.Has(kOrganisation);
}

Identity NamesOf(const Options& options) {
    Identity known = GetUserIdentity();
    return {NameOf(options, kOwner, known.owner), NameOf(options, kOrganisation, known.organisation)};
}

#include "cli/names.h"

#include "platform/identity.h"
#include "platform/text_encoding.h"

namespace {

constexpr char kOwner[] = "--owner";
constexpr char kOrganisation[] = "--organisation";

std::string NameOf(const Options& options, const char* option, const char* known) {
    const std::string* name = options.Value(option);
    return name ? Windows1252FromUtf8(*name) : std::string(known);
}

}  // namespace

std::string WrongNames(const Options& options) {
    for (const char* option : {kOwner, kOrganisation}) {
        const std::string* name = options.Value(option);
        if (!name) continue;
        if (!FitsWindows1252(*name)) return std::string(option) + " takes only characters that Windows-1252 has";
        if (Windows1252FromUtf8(*name).size() >= kIdentityBytes)
            return std::string(option) + " takes at most " + std::to_string(kIdentityBytes - 1) + " characters";
    }
    return "";
}

void UseNames(const Options& options) {
    SetUserIdentity(nullptr, nullptr);
    Identity known;
    GetUserIdentity(&known);
    SetUserIdentity(NameOf(options, kOwner, known.owner).c_str(),
                    NameOf(options, kOrganisation, known.organisation).c_str());
}

#include "cli/identity_options.h"

#include "platform/identity.h"
#include "platform/text_encoding.h"

void ChooseIdentity(const Options& options) {
    auto name = [&](const char* option) {
        const std::string* value = options.Value(option);
        return value ? Windows1252FromUtf8(*value) : std::string();
    };
    SetUserIdentity(name("--owner").c_str(), name("--organisation").c_str());
}

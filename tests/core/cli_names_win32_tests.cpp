// Whose names the command line writes where there is a registry.
#include "platform/identity.h"
#include "platform/windows_api.h"
#include "tests/support/cli_runner.h"
#include "tests/support/test_blocks.h"

namespace {

constexpr wchar_t kKey[] = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion";

// A text value of the registry, put back at the end of the scope.
class RegisteredName {
public:
    RegisteredName(const wchar_t* value, const std::wstring& name) : value_(value) {
        EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, kKey, 0, KEY_READ | KEY_WRITE, &key_), ERROR_SUCCESS);
        DWORD bytes = sizeof before_ - sizeof *before_;
        existed_ = RegQueryValueExW(key_, value, nullptr, nullptr, reinterpret_cast<BYTE*>(before_), &bytes) == 0;
        EXPECT_EQ(Set(name), ERROR_SUCCESS);
    }
    ~RegisteredName() {
        if (existed_)
            Set(before_);
        else
            RegDeleteValueW(key_, value_);
        RegCloseKey(key_);
    }
    RegisteredName(const RegisteredName&) = delete;
    RegisteredName& operator=(const RegisteredName&) = delete;

private:
    LSTATUS Set(const std::wstring& name) const {
        return RegSetValueExW(key_, value_, 0, REG_SZ, reinterpret_cast<const BYTE*>(name.c_str()),
                              static_cast<DWORD>((name.size() + 1) * sizeof name[0]));
    }

    HKEY key_ = nullptr;
    const wchar_t* value_;
    wchar_t before_[260] = {};
    bool existed_ = false;
};

}  // namespace

TEST(CliNames, AreTheRegisteredOnesUnlessGiven) {
    const RegisteredName owner(L"RegisteredOwner", L"Zo\u00EB"), organisation(L"RegisteredOrganization", L"Kites");
    TempFolder folder;
    const std::string in = folder.Path("in.gif"), out = folder.Path("out.gif");
    WriteAll(in, GifBytes().Header("GIF89a", 9, 9, 0x81).Add({0x3B}));
    const std::pair<Words, std::string> cases[] = {{{}, "Zo\xEB\r\nKites"},
                                                   {{"--owner=A"}, "A\r\nKites"},
                                                   {{"--organisation="}, "Zo\xEB\r\n"},
                                                   {{"--owner=A", "--organisation=B"}, "A\r\nB"}};
    for (const auto& [options, names] : cases) {
        Words words = {"save", in, out};
        words.insert(words.end(), options.begin(), options.end());
        ASSERT_EQ(RunClassic(words).status, kExitDone);
        EXPECT_EQ(TextOf(BlockAt(LoadedGif(ReadAll(out)), 1)), "FILE IDENTITY\r\nCreated or modified by\r\n" + names);
    }
}

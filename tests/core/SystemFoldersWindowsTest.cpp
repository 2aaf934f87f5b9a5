#include "core/SystemFolders.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <string>

namespace plinket3 {
namespace {

/// A text of the registry as a shop's installer leaves it; what was there before comes back.
class StoredText {
public:
    StoredText(HKEY root, const wchar_t* key, const wchar_t* name, const std::wstring& text) : name_(name) {
        EXPECT_EQ(RegCreateKeyExW(root, key, 0, nullptr, 0, KEY_READ | KEY_WRITE | KEY_WOW64_32KEY, nullptr, &key_,
                                  &disposition_),
                  ERROR_SUCCESS);
        had_ = RegQueryValueExW(key_, name, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
        if (!had_) {
            EXPECT_EQ(RegSetValueExW(key_, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                                     static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))),
                      ERROR_SUCCESS);
        }
    }
    ~StoredText() {
        if (!had_)
            RegDeleteValueW(key_, name_);
        if (disposition_ == REG_CREATED_NEW_KEY)
            RegDeleteKeyW(key_, L"");
        RegCloseKey(key_);
    }
    StoredText(const StoredText&) = delete;
    StoredText& operator=(const StoredText&) = delete;

    bool Stored() const { return !had_; }

private:
    HKEY key_ = nullptr;
    const wchar_t* name_;
    DWORD disposition_ = 0;
    bool had_ = false;
};

TEST(SystemFoldersWindowsTest, TheShopsAreWhereTheRegistrySaysThatTheyAre) {
    const StoredText user(HKEY_CURRENT_USER, L"Software\\Valve\\Steam", L"SteamPath", L"d:/games/st\u00e9am");
    const StoredText machine(HKEY_LOCAL_MACHINE, L"Software\\Valve\\Steam", L"InstallPath", L"E:\\Steam");
    const StoredText gog(HKEY_LOCAL_MACHINE, L"Software\\GOG.com\\Games\\1135892318", L"path", L"F:\\Doom");
    const StoredText bethesda(HKEY_LOCAL_MACHINE, L"Software\\Bethesda Softworks\\Bethesda.net", L"installLocation",
                              L"G:\\Bethesda\\");
    if (!user.Stored() || !machine.Stored() || !gog.Stored() || !bethesda.Stored())
        GTEST_SKIP() << "a shop is installed here";
    const GamePlaces places = UsualGamePlaces();
    const auto has = [](const std::vector<std::filesystem::path>& folders, const wchar_t* folder) {
        return std::ranges::count(folders, std::filesystem::path(folder)) == 1;
    };
    EXPECT_TRUE(has(places.steam, L"d:/games/st\u00e9am"));
    EXPECT_TRUE(has(places.steam, L"E:\\Steam"));
    EXPECT_TRUE(has(places.games, L"F:\\Doom"));
    EXPECT_TRUE(has(places.shops, L"G:\\Bethesda\\games"));
}

} // namespace
} // namespace plinket3

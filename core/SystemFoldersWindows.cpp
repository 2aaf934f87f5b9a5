#include "core/SystemFolders.h"

#include "core/Paths.h"

#include <array>
#include <string_view>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <shlobj.h>

namespace plinket3 {

const char folderListSeparator = ';';

namespace {

std::filesystem::path KnownFolder(const KNOWNFOLDERID& id) {
    wchar_t* text = nullptr;
    const bool known = SUCCEEDED(SHGetKnownFolderPath(id, KF_FLAG_DEFAULT, nullptr, &text));
    const std::filesystem::path folder(known ? text : L"");
    CoTaskMemFree(text);
    return folder;
}

/// A text of the registry, of its part for programs of 32 bits, as the shops of games are; empty when there is none.
std::wstring RegistryText(HKEY root, const std::wstring& key, const wchar_t* value) {
    constexpr DWORD text = RRF_RT_REG_SZ | RRF_SUBKEY_WOW6432KEY;
    std::array<wchar_t, 4096> room{};
    auto size = static_cast<DWORD>(sizeof room);
    return RegGetValueW(root, key.c_str(), value, text, nullptr, room.data(), &size) == ERROR_SUCCESS ? room.data()
                                                                                                      : L"";
}

/// The keys below one.
std::vector<std::wstring> RegistryKeys(HKEY root, const wchar_t* key) {
    std::vector<std::wstring> names;
    HKEY opened = nullptr;
    if (RegOpenKeyExW(root, key, 0, KEY_READ | KEY_WOW64_32KEY, &opened) != ERROR_SUCCESS)
        return names;
    std::array<wchar_t, 256> name{};
    for (DWORD index = 0, length = name.size();
         RegEnumKeyExW(opened, index, name.data(), &length, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
         ++index, length = name.size())
        names.emplace_back(name.data(), length);
    RegCloseKey(opened);
    return names;
}

} // namespace

std::filesystem::path UserSettingsFolder() { return KnownFolder(FOLDERID_RoamingAppData); }

std::string EnvironmentText(const char* name) {
    const std::wstring wide(name, name + std::string_view(name).size());
    std::wstring text(GetEnvironmentVariableW(wide.c_str(), nullptr, 0), L'\0');
    text.resize(GetEnvironmentVariableW(wide.c_str(), text.data(), static_cast<DWORD>(text.size())));
    return PathText(text);
}

GamePlaces UsualGamePlaces() {
    const std::filesystem::path programs = KnownFolder(FOLDERID_ProgramFiles),
                                old = KnownFolder(FOLDERID_ProgramFilesX86);
    const std::filesystem::path drive = programs.root_path();
    GamePlaces places;
    places.folders = {drive / "Doom", drive / "Doom2", drive / "IWAD", drive / "WADs"};
    places.steam = {old / "Steam"};
    for (const auto& [root, value] : {std::pair(HKEY_CURRENT_USER, L"SteamPath"), {HKEY_LOCAL_MACHINE, L"InstallPath"}})
        if (std::wstring folder = RegistryText(root, L"Software\\Valve\\Steam", value); !folder.empty())
            places.steam.emplace_back(std::move(folder));
    places.shops = {drive / "GOG Games", old / "GOG Galaxy" / "Games", old / "Bethesda.net Launcher" / "games",
                    drive / "XboxGames", drive / "Games"};
    constexpr const wchar_t* gog = L"Software\\GOG.com\\Games";
    for (const std::wstring& game : RegistryKeys(HKEY_LOCAL_MACHINE, gog))
        if (std::wstring folder = RegistryText(HKEY_LOCAL_MACHINE, gog + (L"\\" + game), L"path"); !folder.empty())
            places.games.emplace_back(std::move(folder));
    if (std::wstring folder =
            RegistryText(HKEY_LOCAL_MACHINE, L"Software\\Bethesda Softworks\\Bethesda.net", L"installLocation");
        !folder.empty())
        places.shops.push_back(std::filesystem::path(std::move(folder)) / "games");
    places.programs = {programs,
                       old,
                       KnownFolder(FOLDERID_UserProgramFiles),
                       drive / "Games",
                       drive / "Doom",
                       KnownFolder(FOLDERID_Profile) / "scoop" / "apps"};
    return places;
}

} // namespace plinket3

#include "core/SystemFolders.h"

#include <cstdlib>

namespace plinket3 {

const char folderListSeparator = ':';

namespace {

/// The root when there is none, so that no path is one below the folder that the program happens to run in.
std::filesystem::path Home() {
    const std::filesystem::path home = EnvironmentText("HOME");
    return home.is_absolute() ? home : "/";
}

/// A folder of the XDG base directories; `otherwise` is the one below the home folder that stands for an unset
/// variable.
std::filesystem::path BaseFolder(const char* variable, const char* otherwise) {
    const std::filesystem::path set = EnvironmentText(variable);
    return set.is_absolute() ? set : Home() / otherwise;
}

} // namespace

std::filesystem::path UserSettingsFolder() { return BaseFolder("XDG_CONFIG_HOME", ".config"); }

std::string EnvironmentText(const char* name) {
    const char* text = std::getenv(name);
    return text == nullptr ? "" : text;
}

GamePlaces UsualGamePlaces() {
    const std::filesystem::path home = Home(), data = BaseFolder("XDG_DATA_HOME", ".local/share");
    GamePlaces places;
    places.folders = {"/usr/share/games/doom", "/usr/local/share/games/doom", "/usr/share/doom",
                      data / "games" / "doom"};
    places.steam = {data / "Steam", home / ".steam/steam",
                    home / ".var/app/com.valvesoftware.Steam/.local/share/Steam"};
    places.shops = {home / "GOG Games", home / "Games"};
    places.programs = {"/usr/games",        "/usr/local/games", "/usr/local/bin",
                       home / ".local/bin", home / "bin",       "/snap/bin"};
    return places;
}

} // namespace plinket3

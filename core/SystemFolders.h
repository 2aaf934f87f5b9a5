#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// Where the system of this user keeps things: one file for each system implements it.
namespace plinket3 {

/// The folder in which programs keep the settings of this user, one folder each. Empty when Windows does not tell.
std::filesystem::path UserSettingsFolder();

/// A variable of the environment as UTF-8; empty when it is not set.
std::string EnvironmentText(const char* name);

/// What stands between the folders of a list of them in the environment.
extern const char folderListSeparator;

/// Where games may have been put.
struct GamePlaces {
    std::vector<std::filesystem::path> folders;  // in which IWADs lie themselves
    std::vector<std::filesystem::path> steam;    // of the shop Steam, each with a list of its libraries
    std::vector<std::filesystem::path> shops;    // that hold one folder for each game
    std::vector<std::filesystem::path> games;    // each of one game
    std::vector<std::filesystem::path> programs; // in which the programs of ports lie, or a folder for each
};

/// Those that are usual on this system, whether or not they exist.
GamePlaces UsualGamePlaces();

} // namespace plinket3

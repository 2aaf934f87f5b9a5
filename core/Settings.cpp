#include "core/Files.h"
#include "core/Numbers.h"
#include "core/modConfig.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <memory>
#include <utility>

namespace plinket3 {

namespace {

constexpr std::string_view typeKey = "Type"; // with a capital, unlike the "type" of the other configurations
constexpr std::string_view iwadsKey = "IWADs";
constexpr std::string_view recentFilesKey = "recentFiles";
constexpr std::string_view lastFolderKey = "lastDir";
constexpr std::string_view iwadKeyEnd = "wad";

struct DefaultNumber {
    std::string_view key;
    std::int32_t value;
};
constexpr DefaultNumber defaultFlags[]{
    {"createBackup", 1}, {"stateActivate", 0}, {"frameCharacter", 0}, {"firstRun", 1}};
constexpr DefaultNumber defaultPositions[]{{"lastConfig", 0}, {"lastIWAD", 0}};

std::string TextIn(const SettingValue* value) {
    const auto* text = value == nullptr ? nullptr : std::get_if<std::string>(value);
    return text == nullptr ? std::string() : *text;
}

/// The position that an IWAD's key tells: 3 for "3wad".
std::optional<std::size_t> IwadPosition(std::string_view key) {
    std::size_t position = 0;
    const auto [end, error] = std::from_chars(key.data(), key.data() + key.size(), position);
    if (error != std::errc() || std::string_view(end, key.data() + key.size()) != iwadKeyEnd)
        return std::nullopt;
    return position;
}

void StoreIwads(SettingTree& tree, const std::vector<Settings::Iwad>& iwads) {
    tree.Clear();
    for (std::size_t position = 0; position < iwads.size(); ++position)
        tree.Set(std::to_string(position).append(iwadKeyEnd), iwads[position].name + ";" + iwads[position].path);
}

} // namespace

void Settings::CreateDefaults(const std::filesystem::path& documentsFolder) {
    std::string lastFolder = documentsFolder.string();
    const char separator = static_cast<char>(std::filesystem::path::preferred_separator);
    if (lastFolder.size() > 1 && lastFolder.back() == separator)
        lastFolder.pop_back();
    const auto root = configuration_.Root(true);
    root->Set(typeKey, std::string(modConfig::settingsType));
    root->Set(iwadsKey, std::make_shared<SettingTree>());
    root->Set(recentFilesKey, std::make_shared<SettingTree>());
    for (const DefaultNumber& flag : defaultFlags)
        root->Set(flag.key, flag.value);
    root->Set(lastFolderKey, std::move(lastFolder));
    for (const DefaultNumber& position : defaultPositions)
        root->Set(position.key, position.value);
}

Status Settings::Load() {
    const Status loaded = configuration_.LoadConfiguration(file_);
    readable_ = static_cast<bool>(loaded);
    if (readable_ && Text(typeKey) == modConfig::settingsType)
        return {};
    return Status::Failure("Invalid program configuration file.");
}

Status Settings::Save() const {
    if (!readable_)
        return Status::Failure("the settings could not be read and are left as they are");
    return configuration_.SaveConfiguration(file_, "\r\n", true);
}

std::int32_t Settings::Number(std::string_view key) const {
    const SettingValue* value = configuration_.Root(true)->Find(key);
    const std::optional<double> number = value == nullptr ? std::nullopt : NumberIn(*value);
    if (number)
        return RoundToInt32(*number);
    const auto* standard = std::ranges::find(defaultFlags, key, &DefaultNumber::key);
    return standard == std::end(defaultFlags) ? 0 : standard->value;
}

void Settings::Number(std::string_view key, std::int32_t value) { configuration_.Root(true)->Set(key, value); }

std::string Settings::Text(std::string_view key) const { return TextIn(configuration_.Root(true)->Find(key)); }

void Settings::Text(std::string_view key, std::string_view value) {
    configuration_.Root(true)->Set(key, std::string(value));
}

std::vector<Settings::Iwad> Settings::Iwads() const {
    std::map<std::size_t, Iwad> byPosition;
    for (const auto& [key, value] : Structure(iwadsKey)->Entries()) {
        const std::optional<std::size_t> position = IwadPosition(key);
        if (!position)
            continue;
        const std::string text = TextIn(&value);
        const std::size_t split = std::min(text.find(';'), text.size());
        byPosition[*position] = {text.substr(0, split), text.substr(std::min(split + 1, text.size()))};
    }
    std::vector<Iwad> iwads;
    iwads.reserve(byPosition.size());
    for (auto& [position, iwad] : byPosition)
        iwads.push_back(std::move(iwad));
    return iwads;
}

void Settings::AddIwad(std::string_view name, std::string_view path) {
    std::vector<Iwad> iwads = Iwads();
    iwads.push_back({ReplaceAll(name, ";", ""), std::string(path)});
    StoreIwads(*Structure(iwadsKey), iwads);
}

void Settings::RemoveIwad(std::size_t index) {
    std::vector<Iwad> iwads = Iwads();
    if (index >= iwads.size())
        return;
    iwads.erase(iwads.begin() + static_cast<std::ptrdiff_t>(index));
    StoreIwads(*Structure(iwadsKey), iwads);
}

std::vector<std::string> Settings::RecentFiles() const {
    std::vector<std::string> files;
    for (const auto& [key, value] : Structure(recentFilesKey)->Entries())
        if (const auto* file = std::get_if<std::string>(&value))
            files.push_back(*file);
    return files;
}

void Settings::AddRecentFile(std::string_view path) {
    const auto recent = Structure(recentFilesKey);
    // Kept: room is made before the path is looked for, so a known path shortens a full list. docs/kept-behaviour.md
    while (recent->Count() >= maximumRecentFiles)
        recent->Remove(recent->Entries().front().first);
    const auto& entries = recent->Entries();
    const auto same = std::ranges::find_if(
        entries, [&](const auto& entry) { return EqualIgnoringCase(TextIn(&entry.second), path); });
    if (same != entries.end())
        recent->Remove(same->first);
    int key = 1;
    while (recent->Exists(std::to_string(key)))
        ++key;
    recent->Set(std::to_string(key), std::string(path));
}

void Settings::PruneRecentFiles() {
    const auto recent = Structure(recentFilesKey);
    std::vector<std::string> gone;
    for (const auto& [key, value] : recent->Entries())
        if (!FileExists(TextIn(&value)))
            gone.push_back(key);
    for (const std::string& key : gone)
        recent->Remove(key);
}

std::shared_ptr<SettingTree> Settings::Structure(std::string_view key) const {
    const auto root = configuration_.Root(true);
    if (const SettingValue* value = root->Find(key))
        if (const auto* structure = std::get_if<std::shared_ptr<SettingTree>>(value))
            return *structure;
    auto made = std::make_shared<SettingTree>();
    root->Set(key, made);
    return made;
}

} // namespace plinket3

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
constexpr std::string_view fileSessionsKey = "fileSessions";
constexpr std::string_view portsKey = "ports";
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

/// The structure of that key, made when there is none.
SettingTree& Structure(SettingTree& root, std::string_view key) {
    if (const SettingValue* value = root.Find(key))
        if (const auto* structure = std::get_if<std::shared_ptr<SettingTree>>(value))
            return **structure;
    const auto made = std::make_shared<SettingTree>();
    root.Set(key, made);
    return *made;
}

std::vector<Settings::Iwad> IwadsIn(SettingTree& root) {
    std::map<std::size_t, Settings::Iwad> byPosition;
    for (const auto& [key, value] : Structure(root, iwadsKey).Entries()) {
        const std::optional<std::size_t> position = IwadPosition(key);
        if (!position)
            continue;
        const std::string text = TextIn(&value);
        const std::size_t split = std::min(text.find(';'), text.size());
        byPosition[*position] = {text.substr(0, split), text.substr(std::min(split + 1, text.size()))};
    }
    std::vector<Settings::Iwad> iwads;
    iwads.reserve(byPosition.size());
    for (auto& [position, iwad] : byPosition)
        iwads.push_back(std::move(iwad));
    return iwads;
}

void StoreIwads(SettingTree& root, const std::vector<Settings::Iwad>& iwads) {
    SettingTree& tree = Structure(root, iwadsKey);
    tree.Clear();
    for (std::size_t position = 0; position < iwads.size(); ++position)
        tree.Set(std::to_string(position).append(iwadKeyEnd), iwads[position].name + ";" + iwads[position].path);
}

void AddRecentFileTo(SettingTree& root, std::string_view path) {
    SettingTree& recent = Structure(root, recentFilesKey);
    // Kept: room is made before the path is looked for, so a known path shortens a full list. docs/kept-behaviour.md
    while (recent.Count() >= Settings::maximumRecentFiles)
        recent.Remove(recent.Entries().front().first);
    const auto& entries = recent.Entries();
    const auto same = std::ranges::find_if(
        entries, [&](const auto& entry) { return EqualIgnoringCase(TextIn(&entry.second), path); });
    if (same != entries.end())
        recent.Remove(same->first);
    int key = 1;
    while (recent.Exists(std::to_string(key)))
        ++key;
    recent.Set(std::to_string(key), std::string(path));
}

/// The entry of a patch among the remembered sessions; empty when there is none.
std::string SessionKey(const SettingTree& sessions, std::string_view patch) {
    for (const auto& [key, value] : sessions.Entries())
        if (const auto* session = std::get_if<std::shared_ptr<SettingTree>>(&value))
            if (TextIn((*session)->Find("patch")) == patch)
                return key;
    return {};
}

void RememberSessionIn(SettingTree& root, std::string_view patch, const Settings::FileSession& session) {
    SettingTree& sessions = Structure(root, fileSessionsKey);
    if (const std::string known = SessionKey(sessions, patch); !known.empty())
        sessions.Remove(known);
    while (sessions.Count() >= Settings::mostFileSessions)
        sessions.Remove(sessions.Entries().front().first);
    int key = 1;
    while (sessions.Exists(std::to_string(key)))
        ++key;
    const auto entry = std::make_shared<SettingTree>();
    entry->Set("patch", std::string(patch));
    entry->Set("engine", session.engine);
    entry->Set("iwad", session.iwad);
    entry->Set("dataWad", session.dataWad);
    sessions.Set(std::to_string(key), entry);
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
    loaded_ = true;
    readable_ = static_cast<bool>(loaded);
    changes_.clear();
    if (readable_ && Text(typeKey) == modConfig::settingsType)
        return {};
    return Status::Failure("Invalid program configuration file.");
}

Status Settings::Save() {
    clsConfiguration stored;
    bool readable = readable_;
    if (readable && loaded_ && FileExists(file_))
        readable = static_cast<bool>(stored.LoadConfiguration(file_));
    if (!readable)
        return Status::Failure("the settings could not be read and are left as they are");
    const auto root = stored.Root(true);
    if (TextIn(root->Find(typeKey)) == modConfig::settingsType) {
        for (const Change& change : changes_)
            change(*root);
        configuration_ = stored;
    }
    Status status = configuration_.SaveConfiguration(file_, "\r\n", true);
    if (status)
        changes_.clear();
    return status;
}

void Settings::Apply(const Change& change) {
    change(*configuration_.Root(true));
    changes_.push_back(change);
}

std::int32_t Settings::Number(std::string_view key) const {
    const SettingValue* value = configuration_.Root(true)->Find(key);
    const std::optional<double> number = value == nullptr ? std::nullopt : NumberIn(*value);
    if (number)
        return RoundToInt32(*number);
    const auto* standard = std::ranges::find(defaultFlags, key, &DefaultNumber::key);
    return standard == std::end(defaultFlags) ? 0 : standard->value;
}

void Settings::Number(std::string_view key, std::int32_t value) {
    Apply([key = std::string(key), value](SettingTree& root) { root.Set(key, value); });
}

std::string Settings::Text(std::string_view key) const { return TextIn(configuration_.Root(true)->Find(key)); }

void Settings::Text(std::string_view key, std::string_view value) {
    Apply([key = std::string(key), value = std::string(value)](SettingTree& root) { root.Set(key, value); });
}

std::vector<Settings::Iwad> Settings::Iwads() const { return IwadsIn(*configuration_.Root(true)); }

void Settings::AddIwad(std::string_view name, std::string_view path) {
    const Iwad iwad{ReplaceAll(name, ";", ""), std::string(path)};
    std::vector<Iwad> own = Iwads();
    own.push_back(iwad);
    StoreIwads(*configuration_.Root(true), own);
    changes_.emplace_back([iwad](SettingTree& root) {
        std::vector<Iwad> iwads = IwadsIn(root);
        if (std::ranges::find(iwads, iwad) == iwads.end())
            iwads.push_back(iwad);
        StoreIwads(root, iwads);
    });
}

void Settings::RemoveIwad(std::size_t index) {
    std::vector<Iwad> own = Iwads();
    if (index >= own.size())
        return;
    const Iwad removed = own[index];
    own.erase(own.begin() + static_cast<std::ptrdiff_t>(index));
    StoreIwads(*configuration_.Root(true), own);
    changes_.emplace_back([removed](SettingTree& root) {
        std::vector<Iwad> iwads = IwadsIn(root);
        if (const auto place = std::ranges::find(iwads, removed); place != iwads.end())
            iwads.erase(place);
        StoreIwads(root, iwads);
    });
}

std::vector<Settings::Port> Settings::Ports() const {
    std::vector<Port> ports;
    const SettingValue* value = configuration_.Root(true)->Find(portsKey);
    if (const auto* tree = value == nullptr ? nullptr : std::get_if<std::shared_ptr<SettingTree>>(value))
        for (const auto& [key, entry] : (*tree)->Entries())
            if (const auto* port = std::get_if<std::shared_ptr<SettingTree>>(&entry))
                ports.push_back({TextIn((*port)->Find("name")), TextIn((*port)->Find("program")),
                                 TextIn((*port)->Find("arguments"))});
    return ports;
}

void Settings::Ports(const std::vector<Port>& ports) {
    Apply([ports](SettingTree& root) {
        SettingTree& tree = Structure(root, portsKey);
        tree.Clear();
        for (std::size_t position = 0; position < ports.size(); ++position) {
            const auto entry = std::make_shared<SettingTree>();
            entry->Set("name", ports[position].name);
            entry->Set("program", ports[position].program);
            entry->Set("arguments", ports[position].arguments);
            tree.Set(std::to_string(position + 1), entry);
        }
    });
}

std::vector<std::string> Settings::RecentFiles() const {
    std::vector<std::string> files;
    for (const auto& [key, value] : Structure(*configuration_.Root(true), recentFilesKey).Entries())
        if (const auto* file = std::get_if<std::string>(&value))
            files.push_back(*file);
    return files;
}

void Settings::AddRecentFile(std::string_view path) {
    Apply([path = std::string(path)](SettingTree& root) { AddRecentFileTo(root, path); });
}

Settings::FileSession Settings::SessionOf(std::string_view patch) const {
    const SettingValue* value = configuration_.Root(true)->Find(fileSessionsKey);
    const auto* sessions = value == nullptr ? nullptr : std::get_if<std::shared_ptr<SettingTree>>(value);
    if (sessions == nullptr)
        return {};
    const std::string key = SessionKey(**sessions, patch);
    if (key.empty())
        return {};
    const SettingTree& session = *std::get<std::shared_ptr<SettingTree>>(*(*sessions)->Find(key));
    return {TextIn(session.Find("engine")), TextIn(session.Find("iwad")), TextIn(session.Find("dataWad"))};
}

void Settings::RememberSession(std::string_view patch, const FileSession& session) {
    if (SessionOf(patch) != session)
        Apply([patch = std::string(patch), session](SettingTree& root) { RememberSessionIn(root, patch, session); });
}

void Settings::PruneRecentFiles() {
    Apply([](SettingTree& root) {
        SettingTree kept;
        SettingTree& recent = Structure(root, recentFilesKey);
        for (const auto& [key, value] : recent.Entries())
            if (FileExists(TextIn(&value)))
                kept.Set(key, value);
        recent = std::move(kept);
    });
}

} // namespace plinket3

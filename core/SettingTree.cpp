#include "core/SettingTree.h"

#include <type_traits>

namespace plinket3 {

std::optional<double> NumberIn(const SettingValue& value) {
    return std::visit(
        [](const auto& content) -> std::optional<double> {
            if constexpr (std::is_arithmetic_v<std::decay_t<decltype(content)>>)
                return static_cast<double>(content);
            else
                return std::nullopt;
        },
        value);
}

bool SettingTree::Add(std::string key, SettingValue value) {
    if (!places_.try_emplace(key, entries_.size()).second)
        return false;
    entries_.emplace_back(std::move(key), std::move(value));
    return true;
}

void SettingTree::Set(std::string_view key, SettingValue value) {
    const auto place = places_.find(key);
    if (place != places_.end()) {
        entries_[place->second].second = std::move(value);
        return;
    }
    places_.emplace(key, entries_.size());
    entries_.emplace_back(key, std::move(value));
}

void SettingTree::Remove(std::string_view key) {
    const auto place = places_.find(key);
    if (place == places_.end())
        return;
    const std::size_t index = place->second;
    places_.erase(place); // before the entry: `key` may be a view of the entry's key
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(index));
    for (std::size_t moved = index; moved < entries_.size(); ++moved)
        places_.find(entries_[moved].first)->second = moved;
}

void SettingTree::Clear() {
    places_.clear();
    entries_.clear();
}

const SettingValue* SettingTree::Find(std::string_view key) const {
    const auto place = places_.find(key);
    return place == places_.end() ? nullptr : &entries_[place->second].second;
}

std::shared_ptr<SettingTree> SettingTree::DeepCopy() const {
    auto copy = std::make_shared<SettingTree>(*this);
    for (auto& [key, value] : copy->entries_)
        if (auto* structure = std::get_if<std::shared_ptr<SettingTree>>(&value))
            *structure = (*structure)->DeepCopy();
    return copy;
}

} // namespace plinket3

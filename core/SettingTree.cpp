#include "core/SettingTree.h"

#include <algorithm>
#include <bit>
#include <functional>
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

namespace {

constexpr std::size_t fewEntries = 8;
constexpr std::size_t noPlace = static_cast<std::size_t>(-1);

std::size_t HashOf(std::string_view key) { return std::hash<std::string_view>{}(key); }

} // namespace

/// `noPlace` for a key that there is not.
std::size_t SettingTree::PlaceOf(std::string_view key) const {
    if (slots_.empty()) {
        const auto found = std::ranges::find(entries_, key, &Entry::first);
        return found == entries_.end() ? noPlace : static_cast<std::size_t>(found - entries_.begin());
    }
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t slot = HashOf(key) & mask; slots_[slot] != 0; slot = (slot + 1) & mask)
        if (const std::size_t place = slots_[slot] - 1; entries_[place].first == key)
            return place;
    return noPlace;
}

/// Adds a key that there is not.
void SettingTree::Append(std::string key, SettingValue value) {
    entries_.emplace_back(std::move(key), std::move(value));
    if (entries_.size() <= fewEntries)
        return;
    if (2 * entries_.size() > slots_.size())
        LinkAll();
    else
        Link(entries_.size() - 1);
}

/// Takes the first free slot for an entry.
void SettingTree::Link(std::size_t place) {
    const std::size_t mask = slots_.size() - 1;
    std::size_t slot = HashOf(entries_[place].first) & mask;
    while (slots_[slot] != 0)
        slot = (slot + 1) & mask;
    slots_[slot] = static_cast<std::uint32_t>(place + 1);
}

/// At most a quarter of the slots is taken then.
void SettingTree::LinkAll() {
    slots_.assign(entries_.size() <= fewEntries ? 0 : std::bit_ceil(4 * entries_.size()), 0);
    for (std::size_t place = 0; !slots_.empty() && place < entries_.size(); ++place)
        Link(place);
}

bool SettingTree::Add(std::string key, SettingValue value) {
    if (Exists(key))
        return false;
    Append(std::move(key), std::move(value));
    return true;
}

void SettingTree::Set(std::string_view key, SettingValue value) {
    if (const std::size_t place = PlaceOf(key); place != noPlace)
        entries_[place].second = std::move(value);
    else
        Append(std::string(key), std::move(value));
}

void SettingTree::Remove(std::string_view key) {
    const std::size_t place = PlaceOf(key);
    if (place == noPlace)
        return;
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(place));
    LinkAll();
}

void SettingTree::Clear() {
    entries_.clear();
    slots_.clear();
}

const SettingValue* SettingTree::Find(std::string_view key) const {
    const std::size_t place = PlaceOf(key);
    return place == noPlace ? nullptr : &entries_[place].second;
}

std::shared_ptr<SettingTree> SettingTree::DeepCopy() const {
    auto copy = std::make_shared<SettingTree>(*this);
    for (auto& [key, value] : copy->entries_)
        if (auto* structure = std::get_if<std::shared_ptr<SettingTree>>(&value))
            *structure = (*structure)->DeepCopy();
    return copy;
}

} // namespace plinket3

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace plinket3 {

class SettingTree;

/// A value of the configuration text format. Numbers read from a text are double precision, or single precision when
/// they are written with a "."; the program itself also stores integers. A structure is shared, so that a tree handed
/// out by reference changes with its owner; `SettingTree::DeepCopy` breaks the tie.
using SettingValue = std::variant<double, float, std::int32_t, bool, std::string, std::shared_ptr<SettingTree>>;

/// The value of any kind of number or truth value; absent for texts and structures.
std::optional<double> NumberIn(const SettingValue& value);

/// An ordered dictionary: keys are compared byte by byte and keep the order in which they were added.
class SettingTree {
public:
    using Entry = std::pair<std::string, SettingValue>;

    /// False, with nothing changed, when the key exists.
    [[nodiscard]] bool Add(std::string key, SettingValue value);
    /// Replaces the value in its place, or adds the key at the end.
    void Set(std::string_view key, SettingValue value);
    /// Does nothing when there is no such key.
    void Remove(std::string_view key);
    void Clear();

    /// Null when there is no such key; valid until the tree is changed.
    const SettingValue* Find(std::string_view key) const;
    bool Exists(std::string_view key) const { return Find(key) != nullptr; }
    std::size_t Count() const { return entries_.size(); }
    const std::vector<Entry>& Entries() const { return entries_; }

    /// A tree that shares nothing with this one.
    std::shared_ptr<SettingTree> DeepCopy() const;

private:
    std::size_t PlaceOf(std::string_view key) const;
    void Append(std::string key, SettingValue value);
    void Link(std::size_t place);
    void LinkAll();

    std::vector<Entry> entries_;
    // By the hashes of their keys the entries' places, from 1; 0 for a free slot. Few entries need none. Configurations
    // hold thousands of keys, and a map would take memory for each.
    std::vector<std::uint32_t> slots_;
};

} // namespace plinket3

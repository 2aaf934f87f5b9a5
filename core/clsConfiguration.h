#pragma once

#include "core/SettingTree.h"
#include "core/Status.h"

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace plinket3 {

/// Reads and writes the program's own text files (settings, IWAD detection, engine configurations): a tree of keys and
/// values. docs/formats.md draws the grammar, docs/kept-behaviour.md lists its oddities.
class clsConfiguration {
public:
    clsConfiguration() : root_(std::make_shared<SettingTree>()) {}

    /// Reads a file; the result replaces the root. Fails, with the root left as it was, when the file cannot be read,
    /// when a block holds a key twice or when blocks are nested deeper than 100 levels; the reason names file and key.
    Status LoadConfiguration(const std::filesystem::path& FileName);
    /// The same for a text. Malformed text is no failure: it yields what the grammar's tolerant rules make of it.
    Status InputConfiguration(std::string_view Text);
    void NewConfiguration();

    /// The top-level value of `Key`, or `Default` when there is none. A structure is the live one when `Reference`,
    /// else a deep copy.
    SettingValue ReadSetting(std::string_view Key, const SettingValue& Default, bool Reference) const;
    /// Stores a top-level value. Kept: a structure that replaces another value is copied unless `Reference`, but one
    /// that comes under a new key is always shared.
    void WriteSetting(std::string_view Key, const SettingValue& Value, bool Reference);
    /// Top level only; does nothing when there is no such key.
    void RemoveSetting(std::string_view Key);
    /// The live root when `Reference`, else a deep copy.
    std::shared_ptr<SettingTree> Root(bool Reference) const;

    /// Replaces the file in one step; see `WriteFileAtomically`.
    Status SaveConfiguration(const std::filesystem::path& FileName, std::string_view NewLine, bool WhiteSpace) const;
    std::string OutputConfiguration(std::string_view NewLine, bool WhiteSpace) const;

private:
    std::shared_ptr<SettingTree> root_;
};

} // namespace plinket3

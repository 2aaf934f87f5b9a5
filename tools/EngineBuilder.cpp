#include "tools/EngineBuilder.h"

#include "core/Files.h"
#include "patch/modTables.h"
#include "tools/EngineFacts.h"
#include "tools/FixedUseFacts.h"

#include <map>
#include <memory>
#include <string_view>
#include <system_error>

namespace plinket3::tools {

namespace {

using Structure = std::shared_ptr<SettingTree>;

Structure ToStructure(std::initializer_list<SettingTree::Entry> entries) {
    auto structure = std::make_shared<SettingTree>();
    for (const auto& [key, value] : entries)
        structure->Set(key, value);
    return structure;
}

/// One entry for each element; `entry` gives key and value of an element and its position.
template <class List, class MakeEntry> Structure ToStructure(const List& list, MakeEntry entry) {
    auto structure = std::make_shared<SettingTree>();
    std::int32_t position = 0;
    for (const auto& element : list) {
        const SettingTree::Entry made = entry(element, position++);
        structure->Set(made.first, made.second);
    }
    return structure;
}

/// A list of which only the keys count.
Structure Keys(const std::vector<std::string>& names) {
    return ToStructure(names, [](const std::string& name, std::int32_t) { return SettingTree::Entry(name, 0); });
}

/// A list of which only the values count.
template <class Element> Structure Values(const std::vector<Element>& values) {
    return ToStructure(values, [](const Element& value, std::int32_t position) {
        return SettingTree::Entry(std::to_string(position), value);
    });
}

Structure EngineStructure(const EngineConfiguration& engine) {
    return ToStructure({{"name", engine.name},
                        {"version", static_cast<std::int32_t>(engine.version)},
                        {"table", engine.table},
                        {"allowexeread", engine.allowExeRead ? 1 : 0}, // a truth value would be written as 0
                        {"exesize", engine.exeSize},
                        {"extended", engine.dialect.IsExtended() ? 1 : 0}});
}

/// Written where an engine has more than the fields of old.
Structure DialectStructure(const Dialect& dialect) {
    Structure structure =
        ToStructure({{"rules", std::string(ruleWords[dialect.engineRulesOnly ? 1 : 0])},
                     {"fields", std::string(levelWords[static_cast<std::size_t>(dialect.engineFields)])}});
    if (dialect.unlimited)
        structure->Set("numbers", std::string(numberWords[1]));
    return structure;
}

/// One row for each argument of each action.
Structure Arguments(const std::vector<EngineConfiguration::Action>& actions) {
    auto rows = std::make_shared<SettingTree>();
    for (const EngineConfiguration::Action& action : actions)
        for (const EngineConfiguration::Argument& argument : action.arguments)
            rows->Set(std::to_string(rows->Count()),
                      ToStructure({{"action", action.mnemonic},
                                   {"field", argument.field},
                                   {"name", argument.name},
                                   {"kind", std::string(argumentWords[static_cast<std::size_t>(argument.kind)])},
                                   {"default", argument.standard},
                                   {"zero", argument.zero},
                                   {"meaning", argument.meaning}}));
    return rows;
}

Structure Choices(const std::vector<EngineConfiguration::Choice>& choices) {
    return ToStructure(choices, [](const EngineConfiguration::Choice& choice, std::int32_t position) {
        return SettingTree::Entry(std::to_string(position),
                                  ToStructure({{"value", choice.value}, {"name", choice.name}}));
    });
}

/// Names as keys, tooltips as values.
Structure NamesAndTooltips(const EngineConfiguration::Bits& bits) {
    return ToStructure(bits.names, [&bits](const std::string& name, std::int32_t bit) {
        return SettingTree::Entry(name, bits.tooltips[static_cast<std::size_t>(bit)]);
    });
}

/// The numbers of a record under the keys of its rows.
template <class Record, class Rows> Structure Numbers(const Record& record, const Rows& rows) {
    return ToStructure(rows, [&record](const auto& row, std::int32_t) {
        return SettingTree::Entry(std::string(row.key), record.*row.member);
    });
}

using Files = std::map<std::filesystem::path, std::string>;

Status WriteFiles(const std::filesystem::path& output, const Files& files) {
    for (const auto& [name, bytes] : files) {
        const std::filesystem::path file = output / name;
        std::error_code ignored; // a folder that is missing shows when the file is written
        std::filesystem::create_directories(file.parent_path(), ignored);
        if (const Status written = WriteFileAtomically(file, bytes); !written)
            return Status::Failure(file.string() + ": cannot be written: " + written.Reason());
    }
    return {};
}

} // namespace

std::string FormatEngine(const EngineConfiguration& engine) {
    using Action = EngineConfiguration::Action;
    clsConfiguration configuration;
    const auto write = [&configuration](std::string_view key, const SettingValue& value) {
        configuration.WriteSetting(key, value, true);
    };
    write("type", std::string(modConfig::engineType));
    write("engine", EngineStructure(engine));
    if (engine.dialect.engineFields != FieldLevel::Doom)
        write("dialect", DialectStructure(engine.dialect));
    write("itemcounts", Numbers(engine.itemCounts, countKeys));
    write("offsets", Numbers(engine.offsets, offsetKeys));
    write("flagnames", Keys(engine.flagNames));
    write("flagtooltips", Values(engine.flagTooltips));
    write("thingnames", Keys(engine.thingNames));
    write("weaponnames", Values(engine.weaponNames));
    write("ammonames", Values(engine.ammoNames));
    write("actiondescriptions", ToStructure(engine.actions, [](const Action& action, std::int32_t) {
              return SettingTree::Entry(std::to_string(action.value), action.description);
          }));
    write("codepointermnemonics", ToStructure(engine.actions, [](const Action& action, std::int32_t) {
              return SettingTree::Entry(std::to_string(action.value), action.mnemonic);
          }));
    write("cheatlengths", Values(engine.cheatLengths));
    // The value, which nobody reads, helps a reader of the file: the pointer's number.
    write("codepointerstostates", ToStructure(engine.codePointerStates, [](std::int32_t state, std::int32_t pointer) {
              return SettingTree::Entry(std::to_string(state), pointer);
          }));
    const Structure arguments = Arguments(engine.actions);
    if (arguments->Count() != 0)
        write("actionarguments", arguments);
    for (std::size_t set = 0; set < bitSetCount; ++set)
        if (!engine.laterBits[set].names.empty())
            write(bitSetWords[set], NamesAndTooltips(engine.laterBits[set]));
    if (!engine.pickupItems.empty())
        write("pickupitems", Choices(engine.pickupItems));
    if (!engine.pickupCategories.empty())
        write("pickupcategories", Choices(engine.pickupCategories));
    if (!engine.droppedItems.empty())
        write("droppeditems", ToStructure(engine.droppedItems, [](const auto& dropped, std::int32_t) {
                  return SettingTree::Entry(std::to_string(dropped.first), dropped.second);
              }));
    if (!engine.sharedProjectileGroup.empty())
        write("sharedprojectilegroup", ToStructure(engine.sharedProjectileGroup, [](std::int32_t thing, std::int32_t) {
                  return SettingTree::Entry(std::to_string(thing), 0);
              }));
    if (engine.dialect.keyedTexts)
        write("boomstrings", ToStructure(engine.strings, [](const EngineConfiguration::String& string, std::int32_t) {
                  return SettingTree::Entry(string.mnemonic, string.text);
              }));
    return configuration.OutputConfiguration("\r\n", true);
}

Status BuildEngines(const std::filesystem::path& data, const std::filesystem::path& output) {
    const std::filesystem::path folder = data / "engines";
    Fault fault;
    Files files;
    for (const EngineSource& source : ReadEngineList(folder, fault)) {
        const EngineFacts facts = ReadEngineFacts(folder, source, fault);
        if (fault.Found())
            break;
        files["config/" + source.configuration + ".cfg"] = FormatEngine(facts.engine);
        files["uses/" + source.configuration + ".tsv"] = FormatFixedUses(folder, source, facts, fault);
        files["tables/" + facts.engine.table] = modTables::FormatTable(facts.defaults, facts.engine.dialect);
    }
    return fault.Found() ? Status::Failure(fault.Text()) : WriteFiles(output, files);
}

} // namespace plinket3::tools

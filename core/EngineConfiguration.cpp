#include "core/Numbers.h"

#include "core/Paths.h"
#include "core/modConfig.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <span>
#include <system_error>
#include <type_traits>
#include <utility>

namespace plinket3 {

const std::string* EngineConfiguration::MnemonicOf(std::int32_t codePointer) const {
    const auto found = mnemonicByValue.find(codePointer);
    return found == mnemonicByValue.end() ? nullptr : &found->second;
}

const EngineConfiguration::Action* EngineConfiguration::ActionOf(std::int32_t codePointer) const {
    const auto found = std::ranges::find(actions, codePointer, &Action::value);
    return found == actions.end() ? nullptr : &*found;
}

std::optional<std::int32_t> EngineConfiguration::CodePointerOf(std::string_view mnemonic) const {
    const auto found = valueByMnemonic.find(mnemonic);
    return found == valueByMnemonic.end() ? std::nullopt : std::optional(found->second);
}

namespace modConfig {

namespace {

bool IsOfType(const SettingTree& root, std::string_view type) {
    const SettingValue* value = root.Find("type");
    const auto* text = value == nullptr ? nullptr : std::get_if<std::string>(value);
    return text != nullptr && *text == type;
}

/// Reads the structures of one configuration. The first thing that is missing or wrong stays as the result; from then
/// on, whatever is read may be empty or 0.
class EngineReader {
public:
    EngineReader(std::string fileName, const SettingTree& root)
        : fileName_(std::move(fileName)), root_(root), structure_(&nothing_) {}

    const Status& Result() const { return result_; }

    /// Makes `name` the structure that all others read from. A missing one is a failure.
    void Enter(std::string_view name) {
        if (!EnterOptional(name))
            Fail("missing structure \"" + name_ + '"');
    }

    /// The same; false when there is no such structure.
    bool EnterOptional(std::string_view name) {
        name_ = name;
        structure_ = &nothing_;
        const SettingValue* value = root_.Find(name);
        if (value == nullptr)
            return false;
        if (const auto* structure = std::get_if<std::shared_ptr<SettingTree>>(value))
            structure_ = structure->get();
        else
            Fail('"' + name_ + "\" is not a structure");
        return true;
    }

    /// Calls visit(reader) for each structure within the structure `name`, which may be missing.
    template <class Visit> void EachStructure(std::string_view name, Visit visit) {
        if (!EnterOptional(name))
            return;
        for (const auto& [key, value] : structure_->Entries()) {
            EngineReader inner(fileName_, *structure_);
            inner.Enter(key);
            inner.name_ = name_ + "." + key;
            if (inner.result_)
                visit(inner);
            if (result_)
                result_ = inner.result_;
        }
    }
    bool Has(std::string_view key) const { return structure_->Find(key) != nullptr; }
    /// Refuses the value of `key`; `what` ends the sentence that its place begins.
    void FailAt(std::string_view key, const std::string& what) { Fail(Place(key) + " " + what); }

    std::string Text(std::string_view key) {
        const SettingValue* value = Value(key);
        return value == nullptr ? std::string() : TextOf(key, *value);
    }

    /// The place of a text in `choices`; 0 when it is none of them.
    std::size_t OneOf(std::string_view key, std::span<const std::string_view> choices) {
        const std::string text = Text(key);
        const auto found = std::ranges::find(choices, text);
        if (found != choices.end())
            return static_cast<std::size_t>(found - choices.begin());
        Fail(Place(key) + " is none of those that there are: \"" + text + '"');
        return 0;
    }

    template <class Integer = std::int32_t> Integer Whole(std::string_view key) {
        const SettingValue* value = Value(key);
        return value == nullptr ? Integer() : WholeOf<Integer>(key, *value);
    }

    std::int32_t Count(std::string_view key) {
        const auto count = Whole(key);
        if (count < 0)
            Fail(Place(key) + " is negative");
        return count;
    }

    bool Flag(std::string_view key) {
        const SettingValue* value = Value(key);
        return value != nullptr && NumberOf(key, *value) != 0;
    }

    // The whole structure by position.
    std::vector<std::string> Keys() {
        return List<std::string>([](const std::string& key, const SettingValue&) { return key; });
    }
    std::vector<std::string> Texts() {
        return List<std::string>([this](const auto& key, const auto& value) { return TextOf(key, value); });
    }
    std::vector<std::int32_t> Wholes() {
        return List<std::int32_t>([this](const auto& key, const auto& value) { return WholeOf(key, value); });
    }
    std::vector<std::int32_t> WholeKeys() {
        return List<std::int32_t>([this](const auto& key, const auto&) { return WholeKey(key); });
    }
    /// Code pointer values (keys) with their texts.
    std::vector<std::pair<std::int32_t, std::string>> NumberedTexts() {
        return List<std::pair<std::int32_t, std::string>>(
            [this](const auto& key, const auto& value) { return std::pair(WholeKey(key), TextOf(key, value)); });
    }
    std::vector<std::pair<std::int32_t, std::int32_t>> NumberedWholes() {
        return List<std::pair<std::int32_t, std::int32_t>>(
            [this](const auto& key, const auto& value) { return std::pair(WholeKey(key), WholeOf(key, value)); });
    }
    std::vector<EngineConfiguration::String> NamedTexts() {
        return List<EngineConfiguration::String>([this](const auto& key, const auto& value) {
            return EngineConfiguration::String{key, TextOf(key, value)};
        });
    }

private:
    template <class Element, class Convert> std::vector<Element> List(Convert convert) const {
        std::vector<Element> list;
        list.reserve(structure_->Count());
        for (const auto& [key, value] : structure_->Entries())
            list.push_back(convert(key, value));
        return list;
    }

    const SettingValue* Value(std::string_view key) {
        const SettingValue* value = structure_->Find(key);
        if (value == nullptr)
            Fail("missing key " + Place(key));
        return value;
    }

    std::string TextOf(std::string_view key, const SettingValue& value) {
        if (const auto* text = std::get_if<std::string>(&value))
            return *text;
        Fail(Place(key) + " is not a text");
        return {};
    }

    double NumberOf(std::string_view key, const SettingValue& value) {
        const std::optional<double> number = NumberIn(value);
        if (!number)
            Fail(Place(key) + " is not a number");
        return number.value_or(0);
    }

    template <class Integer = std::int32_t> Integer WholeOf(std::string_view key, const SettingValue& value) {
        const double rounded = std::nearbyint(NumberOf(key, value));
        if (rounded >= std::numeric_limits<Integer>::min() && rounded <= std::numeric_limits<Integer>::max())
            return static_cast<Integer>(rounded);
        Fail(Place(key) + " is out of range");
        return 0;
    }

    /// A key that stands for a number: decimal, or behind "&H" or "&O".
    std::int32_t WholeKey(std::string_view key) {
        const bool decimal = !key.empty() && key.find_first_not_of("0123456789", key[0] == '-' ? 1 : 0) == key.npos;
        if (decimal || key.starts_with('&'))
            return WholeOf(key, ConfigurationNumber(key));
        Fail(Place(key) + " is a key that is not a number");
        return 0;
    }

    std::string Place(std::string_view key) const { return '"' + name_ + '.' + std::string(key) + '"'; }

    void Fail(const std::string& what) {
        if (result_)
            result_ = Status::Failure(fileName_ + ": " + what);
    }

    std::string fileName_;
    const SettingTree& root_;
    const SettingTree nothing_;
    const SettingTree* structure_;
    std::string name_;
    Status result_;
};

void ReadActions(EngineReader& reader, EngineConfiguration& engine) {
    reader.Enter("actiondescriptions");
    for (auto& [value, description] : reader.NumberedTexts())
        engine.actions.push_back({value, {}, std::move(description)});
    reader.Enter("codepointermnemonics");
    for (auto& [value, mnemonic] : reader.NumberedTexts()) {
        engine.valueByMnemonic.try_emplace(mnemonic, value);
        engine.mnemonicByValue.try_emplace(value, std::move(mnemonic));
    }
    for (EngineConfiguration::Action& action : engine.actions)
        if (const std::string* mnemonic = engine.MnemonicOf(action.value))
            action.mnemonic = *mnemonic;
}

constexpr std::string_view miscellaneousOffsetKeys[]{"bfgammousage1",        "bfgammousage2",    "bfgammousage3",
                                                     "bluearmorclass",       "godmodehealth1",   "godmodehealth2",
                                                     "greenarmorclass",      "idfaarmor",        "idfaarmorclass",
                                                     "idkfaarmor",           "idkfaarmorclass",  "initammo",
                                                     "inithealth",           "maxarmor1",        "maxarmor2",
                                                     "maxhealth1",           "maxhealth2",       "maxsoulspherehealth1",
                                                     "maxsoulspherehealth2", "megaspherehealth", "monstersinfight",
                                                     "soulspherehealth"};

/// The sets of bits that came after the thing flags: names and tooltips in one structure.
void ReadLaterBits(EngineReader& reader, EngineConfiguration& engine) {
    for (std::size_t set = 0; set < bitSetCount; ++set)
        if (static_cast<BitSet>(set) != BitSet::Things && reader.EnterOptional(bitSetWords[set]))
            engine.laterBits[set] = {reader.Keys(), reader.Texts()};
}

void ReadArguments(EngineReader& reader, EngineConfiguration& engine) {
    reader.EachStructure("actionarguments", [&](EngineReader& row) {
        EngineConfiguration::Argument argument;
        const std::string mnemonic = row.Text("action");
        argument.field = row.Text("field");
        argument.name = row.Text("name");
        argument.kind = static_cast<EngineConfiguration::Argument::Kind>(row.OneOf("kind", argumentWords));
        argument.standard = row.Whole("default");
        argument.zero = row.Text("zero");
        argument.meaning = row.Text("meaning");
        const auto action = std::ranges::find(engine.actions, mnemonic, &EngineConfiguration::Action::mnemonic);
        if (action == engine.actions.end())
            return row.FailAt("action", "is no action: \"" + mnemonic + '"');
        action->arguments.push_back(std::move(argument));
    });
}

std::vector<EngineConfiguration::Choice> ReadChoices(EngineReader& reader, std::string_view structure) {
    std::vector<EngineConfiguration::Choice> choices;
    reader.EachStructure(structure, [&](EngineReader& row) {
        choices.push_back({row.Whole("value"), row.Text("name")});
    });
    return choices;
}

void ReadEngine(EngineReader& reader, EngineConfiguration& engine) {
    reader.Enter("engine");
    engine.name = reader.Text("name");
    engine.version = reader.Whole<std::int16_t>("version");
    engine.table = reader.Text("table");
    engine.allowExeRead = reader.Flag("allowexeread");
    engine.exeSize = reader.Whole("exesize");
    engine.dialect = Dialect::Of(reader.Flag("extended"));
    if (reader.EnterOptional("dialect")) {
        engine.dialect.engineRulesOnly = reader.OneOf("rules", ruleWords) == 1;
        engine.dialect.unlimited = reader.Has("numbers") && reader.OneOf("numbers", numberWords) == 1;
        if (reader.Has("fields"))
            engine.dialect.engineFields = static_cast<FieldLevel>(reader.OneOf("fields", levelWords));
        engine.dialect = engine.dialect.By(Rules::Kept);
    }
    reader.Enter("itemcounts");
    for (const CountKey& row : countKeys)
        engine.itemCounts.*row.member = reader.Count(row.key);
    if (reader.EnterOptional("offsets"))
        for (const OffsetKey& row : offsetKeys)
            engine.offsets.*row.member = reader.Whole(row.key);
    reader.Enter("flagnames");
    engine.flagNames = reader.Keys();
    reader.Enter("flagtooltips");
    engine.flagTooltips = reader.Texts();
    // Kept: things are named by the keys, weapons and ammunition by the values. docs/kept-behaviour.md
    reader.Enter("thingnames");
    engine.thingNames = reader.Keys();
    reader.Enter("weaponnames");
    engine.weaponNames = reader.Texts();
    reader.Enter("ammonames");
    engine.ammoNames = reader.Texts();
    ReadActions(reader, engine);
    ReadArguments(reader, engine);
    ReadLaterBits(reader, engine);
    engine.pickupItems = ReadChoices(reader, "pickupitems");
    engine.pickupCategories = ReadChoices(reader, "pickupcategories");
    if (reader.EnterOptional("droppeditems"))
        engine.droppedItems = reader.NumberedWholes();
    if (reader.EnterOptional("sharedprojectilegroup"))
        engine.sharedProjectileGroup = reader.WholeKeys();
    if (reader.EnterOptional("cheatoffsets"))
        engine.cheatOffsets = reader.WholeKeys();
    if (reader.EnterOptional("cheatlengths"))
        engine.cheatLengths = reader.Wholes();
    if (reader.EnterOptional("codepointerstostates"))
        engine.codePointerStates = reader.WholeKeys();
    if (reader.EnterOptional("codepointeroffsets"))
        engine.codePointerOffsets = reader.WholeKeys();
    if (reader.EnterOptional("boomstrings"))
        engine.strings = reader.NamedTexts();
    if (reader.EnterOptional("miscellaneousoffsets"))
        for (const std::string_view key : miscellaneousOffsetKeys)
            engine.miscellaneousOffsets.push_back(reader.Whole(key));
}

/// `engine` is left as it was after a failure.
Status ReadConfiguration(const std::filesystem::path& file, const SettingTree& root, EngineConfiguration& engine) {
    EngineConfiguration loaded;
    loaded.fileName = PathText(file.filename());
    loaded.offsets = engine.offsets; // Kept: a file without "offsets" leaves the former ones. docs/kept-behaviour.md
    EngineReader reader(PathText(file), root);
    ReadEngine(reader, loaded);
    if (reader.Result())
        engine = std::move(loaded);
    return reader.Result();
}

bool IsConfiguration(const std::filesystem::directory_entry& entry) {
    std::error_code error;
    return EqualIgnoringCase(PathText(entry.path().extension()), ".cfg") && !entry.is_directory(error);
}

} // namespace

std::vector<EngineEntry> EnumerateEngines(const std::filesystem::path& folder,
                                          const std::function<void(std::string_view)>& skipped) {
    std::vector<std::filesystem::path> files;
    std::error_code error;
    std::filesystem::directory_iterator entry(folder, error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error))
        if (IsConfiguration(*entry))
            files.push_back(entry->path());
    std::ranges::sort(files);

    std::vector<EngineEntry> engines;
    for (const std::filesystem::path& file : files) {
        clsConfiguration configuration;
        if (const Status loaded = configuration.LoadConfiguration(file); !loaded) {
            skipped(loaded.Reason());
            continue;
        }
        const auto root = configuration.Root(true);
        if (!IsOfType(*root, engineType))
            continue;
        EngineReader reader(PathText(file), *root);
        reader.Enter("engine");
        EngineEntry engine{file, reader.Text("name"), reader.Whole<std::int16_t>("version"), false};
        if (!reader.Result()) {
            skipped(reader.Result().Reason());
            continue;
        }
        // What else is missing is said when the user chooses the engine.
        engine.extended = reader.Flag("extended");
        if (EngineConfiguration loaded; ReadConfiguration(file, *root, loaded))
            engine.configuration = std::make_shared<const EngineConfiguration>(std::move(loaded));
        engines.push_back(std::move(engine));
    }
    return engines;
}

Status LoadEngine(const std::filesystem::path& file, EngineConfiguration& engine) {
    clsConfiguration configuration;
    if (Status loaded = configuration.LoadConfiguration(file); !loaded)
        return loaded;
    const auto root = configuration.Root(true);
    if (!IsOfType(*root, engineType))
        return Status::Failure("Invalid engine configuration file.");
    return ReadConfiguration(file, *root, engine);
}

bool LoadEngineConfiguration(const std::filesystem::path& file, EngineConfiguration& engine, Notifier& notifier) {
    const Status loaded = LoadEngine(file, engine);
    if (!loaded)
        notifier.Show(MessageKind::Exclamation, loaded.Reason());
    return static_cast<bool>(loaded);
}

Status LoadIwadDetect(const std::filesystem::path& file, clsConfiguration& iwadDetect) {
    if (iwadDetect.LoadConfiguration(file) && IsOfType(*iwadDetect.Root(true), iwadDetectType))
        return {};
    return Status::Failure("Invalid IWAD detect configuration file.");
}

std::string DetectIwadName(const clsConfiguration& iwadDetect, const std::filesystem::path& iwad) {
    const SettingValue name = iwadDetect.ReadSetting(ToLower(PathText(iwad.stem())), std::string(), true);
    const auto* text = std::get_if<std::string>(&name);
    return text == nullptr ? std::string() : *text;
}

} // namespace modConfig

} // namespace plinket3

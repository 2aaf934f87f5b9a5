#include "cli/Command.h"
#include "core/Text.h"

#include <nlohmann/json.hpp>

namespace plinket3::cli {

namespace {

using Json = nlohmann::ordered_json;

std::string Utf8(std::string_view text) { return Latin1ToUtf8(text); }

template <class Record> void PutFields(Json& object, const Record& record) {
    for (const Field<Record>& field : fieldsOf<Record>)
        object[std::string(field.label)] = record.*field.member;
}

template <class Record> Json Records(const std::vector<Record>& records, const std::vector<std::string>& names) {
    Json list = Json::array();
    for (std::size_t i = 0; i < records.size(); ++i) {
        Json object;
        object["name"] = Utf8(names[i]);
        PutFields(object, records[i]);
        list.push_back(std::move(object));
    }
    return list;
}

Json States(const PatchSet& set, const EngineConfiguration& engine) {
    Json list = Json::array();
    for (std::size_t i = 0; i < set.states.size(); ++i) {
        Json object;
        PutFields(object, set.states[i]);
        object["Code pointer"] = set.codePointers[i];
        const std::string* mnemonic = engine.MnemonicOf(set.codePointers[i]);
        object["Mnemonic"] = mnemonic != nullptr ? Json(Utf8(*mnemonic)) : Json();
        list.push_back(std::move(object));
    }
    return list;
}

Json Sounds(const PatchSet& set) {
    Json list = Json::array();
    for (std::size_t i = 0; i < set.sounds.size(); ++i) {
        Json object;
        object["name"] = Utf8(set.SoundName(static_cast<std::int32_t>(i)));
        PutFields(object, set.sounds[i]);
        list.push_back(std::move(object));
    }
    return list;
}

Json Sprites(const PatchSet& set) {
    Json list = Json::array();
    for (std::size_t i = 0; i < set.spriteNames.size(); ++i)
        list.push_back({{"name", Utf8(set.SpriteName(static_cast<std::int32_t>(i)))}, {"value", set.spriteValues[i]}});
    return list;
}

Json Strings(const PatchSet& set, const EngineConfiguration& engine) {
    Json list = Json::array();
    for (std::size_t i = 0; i < set.strings.size(); ++i) {
        const StringRecord& string = set.strings[i];
        const bool keyed = engine.extended && i < engine.strings.size();
        list.push_back({{"key", keyed ? Json(Utf8(engine.strings[i].mnemonic)) : Json()},
                        {"position", string.position},
                        {"length", string.length},
                        {"text", Utf8(string.text)}});
    }
    return list;
}

Json Cheats(const PatchSet& set) {
    Json list = Json::array();
    for (std::size_t i = 0; i < set.cheats.size(); ++i)
        list.push_back({{"label", i < cheatLabels.size() ? Json(cheatLabels[i]) : Json()},
                        {"max", set.cheats[i].maximumLength},
                        {"text", Utf8(set.cheats[i].text)}});
    return list;
}

Json Pars(const PatchSet& set) {
    Json list = Json::array();
    for (const ParRecord& par : set.pars)
        list.push_back({{"episode", par.episode}, {"map", par.map}, {"seconds", par.seconds}});
    return list;
}

} // namespace

std::string DumpJson(const Program& program) {
    const PatchSet& set = program.patch.current;
    const EngineConfiguration& engine = program.engine;
    Json dump;
    dump["engine"] = {{"file", Utf8(engine.fileName)},
                      {"name", Utf8(engine.name)},
                      {"version", engine.version},
                      {"extended", engine.extended}};
    dump["patch"] = {{"file", Utf8(program.patch.fileName.string())},
                     {"version", program.patch.doomVersion},
                     {"format", program.patch.patchFormat}};
    dump["things"] = Records(set.things, set.thingNames);
    dump["states"] = States(set, engine);
    dump["sounds"] = Sounds(set);
    dump["sprites"] = Sprites(set);
    dump["strings"] = Strings(set, engine);
    dump["weapons"] = Records(set.weapons, set.weaponNames);
    dump["ammo"] = Records(set.ammo, set.ammoNames);
    dump["cheats"] = Cheats(set);
    Json misc;
    PutFields(misc, set.misc);
    dump["misc"] = std::move(misc);
    dump["pars"] = Pars(set);
    return dump.dump();
}

} // namespace plinket3::cli

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

/// Writes the records `at(0)` ... as one list. Each is forgotten when it is written: a list may have a million.
template <class At> void PutList(std::ostream& out, std::string_view key, std::size_t count, At at) {
    out << ",\"" << key << "\":[";
    for (std::size_t i = 0; i < count; ++i)
        out << (i == 0 ? "" : ",") << at(i).dump();
    out << ']';
}

template <class Record> void PutRecords(std::ostream& out, std::string_view key, const std::vector<Record>& records,
                                        const std::vector<std::string>& names) {
    PutList(out, key, records.size(), [&](std::size_t i) {
        Json object;
        object["name"] = Utf8(names[i]);
        PutFields(object, records[i]);
        return object;
    });
}

Json StateAt(const PatchSet& set, const EngineConfiguration& engine, std::size_t i) {
    Json object;
    PutFields(object, set.states[i]);
    object["Code pointer"] = set.codePointers[i];
    const std::string* mnemonic = engine.MnemonicOf(set.codePointers[i]);
    object["Mnemonic"] = mnemonic != nullptr ? Json(Utf8(*mnemonic)) : Json();
    return object;
}

Json SoundAt(const PatchSet& set, std::size_t i) {
    Json object;
    object["name"] = Utf8(set.SoundName(static_cast<std::int32_t>(i)));
    PutFields(object, set.sounds[i]);
    return object;
}

Json SpriteAt(const PatchSet& set, std::size_t i) {
    return {{"name", Utf8(set.SpriteName(static_cast<std::int32_t>(i)))}, {"value", set.spriteValues[i]}};
}

Json StringAt(const PatchSet& set, const EngineConfiguration& engine, std::size_t i) {
    const StringRecord& string = set.strings[i];
    const bool keyed = engine.extended && i < engine.strings.size();
    return {{"key", keyed ? Json(Utf8(engine.strings[i].mnemonic)) : Json()},
            {"position", string.position},
            {"length", string.length},
            {"text", Utf8(string.text)}};
}

Json CheatAt(const PatchSet& set, std::size_t i) {
    return {{"label", i < cheatLabels.size() ? Json(cheatLabels[i]) : Json()},
            {"max", set.cheats[i].maximumLength},
            {"text", Utf8(set.cheats[i].text)}};
}

Json ParOf(const ParRecord& par) { return {{"episode", par.episode}, {"map", par.map}, {"seconds", par.seconds}}; }

} // namespace

void DumpJson(const Program& program, std::ostream& out) {
    const PatchSet& set = program.patch.current;
    const EngineConfiguration& engine = program.engine;
    // File names are mostly UTF-8 already.
    constexpr auto bytesThatAreNot = Json::error_handler_t::replace;
    const Json engineFacts{{"file", engine.fileName},
                           {"name", Utf8(engine.name)},
                           {"version", engine.version},
                           {"extended", engine.extended}};
    const Json patchFacts{{"file", program.patch.fileName.string()},
                          {"version", program.patch.doomVersion},
                          {"format", program.patch.patchFormat}};
    Json misc;
    PutFields(misc, set.misc);
    out << "{\"engine\":" << engineFacts.dump(-1, ' ', false, bytesThatAreNot)
        << ",\"patch\":" << patchFacts.dump(-1, ' ', false, bytesThatAreNot);
    PutRecords(out, "things", set.things, set.thingNames);
    PutList(out, "states", set.states.size(), [&](std::size_t i) { return StateAt(set, engine, i); });
    PutList(out, "sounds", set.sounds.size(), [&](std::size_t i) { return SoundAt(set, i); });
    PutList(out, "sprites", set.spriteNames.size(), [&](std::size_t i) { return SpriteAt(set, i); });
    PutList(out, "strings", set.strings.size(), [&](std::size_t i) { return StringAt(set, engine, i); });
    PutRecords(out, "weapons", set.weapons, set.weaponNames);
    PutRecords(out, "ammo", set.ammo, set.ammoNames);
    PutList(out, "cheats", set.cheats.size(), [&](std::size_t i) { return CheatAt(set, i); });
    out << ",\"misc\":" << misc.dump();
    PutList(out, "pars", set.pars.size(), [&](std::size_t i) { return ParOf(set.pars[i]); });
    out << '}';
}

} // namespace plinket3::cli

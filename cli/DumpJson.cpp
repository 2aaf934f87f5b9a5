#include "cli/Command.h"

#include "core/Paths.h"
#include "core/Text.h"
#include "patch/EngineNames.h"
#include "patch/PatchDocument.h"

#include <nlohmann/json.hpp>

#include <utility>
#include <vector>

namespace plinket3::cli {

namespace {

using Json = nlohmann::ordered_json;

std::string Utf8(std::string_view text) { return Latin1ToUtf8(text); }

Json TextOrNull(std::string_view text) { return text.empty() ? Json() : Json(Utf8(text)); }

/// The fields that came with the levels from `first` to `last`.
template <class Record> void PutFields(Json& object, FieldLevel first, FieldLevel last, const Record& record) {
    for (const Field<Record>& field : fieldsOf<Record>)
        if (field.since >= first && field.since <= last) {
            FieldValue value = ValueOf(record, field);
            if constexpr (std::is_same_v<Record, AmmoRecord>)
                value = value ? value : DerivedAmount(record, field);
            object[std::string(field.label)] = value ? Json(*value) : Json();
        }
}

/// Writes one list. Each record is forgotten when it is written: a list may have a million.
class ListWriter {
public:
    ListWriter(std::ostream& out, std::string_view key) : out_(out) { out_ << ",\"" << key << "\":["; }
    void Put(const Json& entry) {
        out_ << separator_ << entry.dump();
        separator_ = ",";
    }
    void End() { out_ << ']'; }

private:
    std::ostream& out_;
    const char* separator_ = "";
};

template <class Entries, class Describe>
void PutList(std::ostream& out, std::string_view key, const Entries& entries, Describe describe) {
    ListWriter list(out, key);
    for (const auto& entry : entries)
        list.Put(describe(entry));
    list.End();
}

/// What a record is described by, kind by kind.
class Descriptions {
public:
    Descriptions(const PatchSet& set, const EngineConfiguration& engine) : set_(set), engine_(engine) {}

    template <class Record> Json Of(RecordKind kind, std::int32_t number, const Record& record) const {
        const auto i = static_cast<std::size_t>(number);
        Json object;
        if (engine_.dialect.EngineRules() && HasNumber<Record>())
            object["index"] = number;
        if constexpr (std::is_same_v<Record, SpriteRecord>) {
            object["name"] = Utf8(set_.SpriteName(number));
            object["value"] = record.value;
            return object;
        } else if constexpr (std::is_same_v<Record, StringRecord>) {
            const bool keyed = engine_.dialect.keyedTexts && i < engine_.strings.size();
            return {{"key", keyed ? Json(Utf8(engine_.strings[i].mnemonic)) : Json()},
                    {"position", record.position},
                    {"length", record.length},
                    {"text", Utf8(record.text)}};
        } else if constexpr (std::is_same_v<Record, CheatRecord>) {
            return {{"label", i < cheatLabels.size() ? Json(cheatLabels[i]) : Json()},
                    {"max", record.maximumLength},
                    {"text", Utf8(record.text)}};
        } else {
            if constexpr (isNamed<Record>)
                object["name"] = Utf8(record.name);
            if constexpr (std::is_same_v<Record, SoundRecord>)
                object["name"] = Utf8(set_.SoundName(number));
            PutFields(object, FieldLevel::Doom, FieldLevel::Doom, record);
            if constexpr (std::is_same_v<Record, StateRecord>) {
                object["Code pointer"] = record.codePointer;
                const std::string* mnemonic = engine_.MnemonicOf(record.codePointer);
                object["Mnemonic"] = mnemonic != nullptr ? Json(Utf8(*mnemonic)) : Json();
            }
            PutFields(object, FieldLevel::Dehextra, engine_.dialect.fields, record);
            for (std::size_t text = 0; text < textFields.size(); ++text)
                if (textFields[text].kind == kind && textFields[text].since <= engine_.dialect.fields)
                    object[std::string(textFields[text].label)] =
                        TextOrNull(set_.TextOf(kind, number, static_cast<int>(text)));
            return object;
        }
    }

private:
    /// Strings are known by their keys and cheats by their labels.
    template <class Record> static constexpr bool HasNumber() {
        return !std::is_same_v<Record, StringRecord> && !std::is_same_v<Record, CheatRecord>;
    }

    const PatchSet& set_;
    const EngineConfiguration& engine_;
};

Json OtherStringOf(const PatchDocument::OtherString& other) {
    return {{"key", Utf8(other.key)},
            {"position", 0},
            {"length", other.text.size()},
            {"text", Utf8(other.text)},
            {"known", false}};
}

/// By what a note belongs to: a record, or with no index the patch as a whole.
Json NoteOf(const Notes::value_type& note) {
    const auto [kind, index] = note.first;
    if (kind == patchNotes.kind)
        return {{"kind", "patch"}, {"index", nullptr}, {"text", Utf8(note.second)}};
    std::string name;
    VisitKind(kind, [&name](const auto& each) { name = each.plural; });
    if (name.ends_with('s'))
        name.pop_back();
    return {{"kind", name}, {"index", index}, {"text", Utf8(note.second)}};
}

/// The music that has another name than the engine's.
std::vector<Json> RenamedMusic(const PatchData& patch) {
    std::vector<Json> renamed;
    for (const std::int32_t number : RecordNumbers(patch.current, RecordKind::Music))
        if (const Cell cell{RecordKind::Music, number, lumpNameField};
            ReadCell(patch.current, cell) != ReadCell(patch.defaults, cell))
            renamed.push_back(
                {{"index", number}, {"name", Utf8(std::get<std::string>(ReadCell(patch.current, cell)))}});
    return renamed;
}

Json RenameOf(const PatchDocument::Rename& rename) {
    const char* kind = rename.kind == RecordKind::Sprite  ? "sprite"
                       : rename.kind == RecordKind::Sound ? "sound"
                                                          : "music";
    return {{"kind", kind}, {"from", Utf8(rename.from)}, {"to", Utf8(rename.to)}};
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
                           {"extended", engine.dialect.IsExtended()}};
    Json patchFacts{{"file", PathText(program.patch.fileName)},
                    {"version", program.patch.doomVersion},
                    {"format", program.patch.patchFormat}};
    if (!program.patch.lump.empty())
        patchFacts["lump"] = Utf8(program.patch.lump);
    Json misc;
    PutFields(misc, FieldLevel::Doom, engine.dialect.fields, set.misc);
    out << "{\"engine\":" << engineFacts.dump(-1, ' ', false, bytesThatAreNot)
        << ",\"patch\":" << patchFacts.dump(-1, ' ', false, bytesThatAreNot);
    const Descriptions descriptions(set, engine);
    const PatchDocument none;
    const PatchDocument& document = program.patch.document ? *program.patch.document : none;
    const std::vector<PatchDocument::OtherString>& others = document.OtherStrings();
    VisitTableKinds([&](const auto& kind) {
        ListWriter list(out, kind.plural);
        for (const auto& [number, record] : kind.In(set))
            list.Put(descriptions.Of(kind.kind, number, record));
        if (kind.kind == RecordKind::String) // those that the engine does not know
            for (const PatchDocument::OtherString& other : others)
                list.Put(OtherStringOf(other));
        list.End();
    });
    out << ",\"misc\":" << misc.dump();
    PutList(out, "pars", set.pars, ParOf);
    if (engine.dialect.EngineRules()) {
        PutList(out, "music", RenamedMusic(program.patch), [](const Json& music) { return music; });
        out << ",\"helper\":" << (set.misc.helper == 0 ? Json() : Json(set.misc.helper)).dump();
        PutList(out, "renames", document.Renames(), RenameOf);
        PutList(out, "notes", set.notes, NoteOf);
    }
    out << '}';
}

} // namespace plinket3::cli

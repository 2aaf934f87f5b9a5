#include "core/Text.h"
#include "patch/Cells.h"
#include "patch/EngineNames.h"
#include "patch/modPatchDiff.h"
#include "patch/modPatchFiles.h"
#include "patch/modPatchText.h"
#include "tests/support/EveryField.h"

#include <gtest/gtest.h>

namespace plinket3::test {
namespace {

/// What an engine's own data become when a patch that changes them to `written` is read again.
PatchSet ReadAgain(const PatchSet& written, const PatchSet& defaults, const EngineConfiguration& engine) {
    PatchSet expected = written;
    if (engine.dialect.EngineRules()) {
        for (std::size_t i = 0; i < engine.strings.size(); ++i)
            if (!EngineEscape(written.strings[i].text, "\n")) // engines could not read it back
                expected.strings[i] = defaults.strings[i];
        return expected;
    }
    // Kept: sounds are written from 1 and read from 0. docs/kept-behaviour.md
    expected.sounds = defaults.sounds;
    for (std::size_t i = 0; i + 1 < written.sounds.size(); ++i)
        ForEachDifference(written.sounds[i], defaults.sounds[i], FieldLevel::Doom,
                          [&record = expected.sounds[i + 1]](const Field<SoundRecord>& field, FieldValue value) {
                              SetValue(record, field, value);
                          });
    // Blanks at the ends of a value are lost.
    for (std::size_t i = 0; i < engine.strings.size(); ++i)
        if (StringRecord& string = expected.strings[i]; string.text != engine.strings[i].text)
            string.length = static_cast<std::int32_t>((string.text = Trim(string.text)).size());
    // A flag whose name is a part of another one's comes with it.
    if (engine.dialect.IsExtended())
        for (ThingRecord& thing : expected.things.Dense())
            for (std::size_t bit = 0; bit < engine.flagNames.size(); ++bit)
                for (std::size_t part = 0; part < engine.flagNames.size(); ++part)
                    if (modPatchText::GetFlag(thing.bits, static_cast<int>(bit)) &&
                        engine.flagNames[bit].find(engine.flagNames[part]) != std::string::npos)
                        thing.bits = modPatchText::SetFlag(thing.bits, static_cast<int>(part));
    return expected;
}

class BuiltEngines : public testing::TestWithParam<const char*> {
protected:
    void ExpectRoundTrip() {
        DeriveMisc(patch_.current.misc);
        for (StringRecord& string : patch_.current.strings.Dense())
            string.length = static_cast<std::int32_t>(string.text.size());
        PatchSet read;
        const auto result =
            modPatchFiles::ParsePatch(modPatchFiles::FormatPatch(patch_, engine_), engine_, patch_.defaults, read);
        ASSERT_TRUE(result.status) << result.status.Reason();
        const PatchSet expected = ReadAgain(patch_.current, patch_.defaults, engine_);
        const std::vector<std::string> lines = modPatchDiff::Differences(expected, read, engine_);
        EXPECT_TRUE(lines.empty()) << lines.size() << " differences, first " << lines.front();
        EXPECT_TRUE(read == expected);
    }

    EngineConfiguration engine_;
    PatchData patch_ = BuiltEngine(DATA_FOLDER, GetParam(), engine_);
};
INSTANTIATE_TEST_SUITE_P(Patch, BuiltEngines,
                         testing::Values("doom19", "ultimate", "boom19", "boom21", "mbf19", "mbf203", "dehextra19",
                                         "dehextra21", "mbf21", "dsdhacked", "id24"),
                         [](const auto& name) { return name.param; });

TEST_P(BuiltEngines, ReadBackEveryFieldAtItsLimits) {
    for (const std::int32_t value : {INT32_MIN, -1, 0, 1, 255, INT32_MAX}) {
        patch_.current = patch_.defaults;
        // Twice, so that no field keeps its default even where the value is the default.
        ChangeEveryNumber(patch_.defaults, engine_.dialect.fields,
                          [value](FieldUnit, std::int32_t) { return value == 7 ? 8 : 7; });
        ChangeEveryNumber(patch_.current, engine_.dialect.fields, [value](FieldUnit, std::int32_t) { return value; });
        ExpectRoundTrip();
    }
}

TEST_P(BuiltEngines, ReadBackNamesTextsAndCodePointers) {
    ChangeEveryNumber(patch_.current, engine_.dialect.fields, UsableValue(patch_.defaults));
    ChangeEveryCodePointer(patch_.current, engine_);
    // A carriage return is no character of its own in a patch, so that a text with one is never found again.
    ChangeEveryText(patch_.current, engine_, [](const std::string& text) { return text.find('\r') == text.npos; });
    patch_.current.pars = {{0, 1, 30}, {1, 9, 200}, {0, 32, 0}};
    if (engine_.dialect.unlimited)
        MakeRecords(patch_.current, engine_);
    for (std::size_t text = 0; text < textFields.size(); ++text)
        if (textFields[text].since <= engine_.dialect.fields)
            for (const std::int32_t number : RecordNumbers(patch_.current, textFields[text].kind))
                WriteCell(patch_.current, {textFields[text].kind, number, TextCell(text)},
                          "T" + std::to_string(static_cast<std::uint32_t>(number) % 10000000));
    ExpectRoundTrip();
}

TEST_P(BuiltEngines, ReadBackOneSoundAsTheNext) {
    patch_.current.sounds[1].value += 1;
    ExpectRoundTrip();
}

} // namespace
} // namespace plinket3::test

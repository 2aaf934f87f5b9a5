#include "core/Text.h"
#include "patch/modPatchCheck.h"
#include "patch/modPatchFiles.h"
#include "patch/modPatchText.h"
#include "tests/support/SmallEngine.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

using namespace plinket3;

namespace {

void Check(bool holds) {
    if (!holds)
        std::abort();
}

/// Writes a patch and reads it back into itself.
std::string WriteAndRead(PatchData& patch, const EngineConfiguration& engine) {
    // Kept: sounds come back one later each time. docs/kept-behaviour.md
    patch.current.sounds = patch.defaults.sounds;
    std::string written = modPatchFiles::FormatPatch(patch, engine);
    Check(static_cast<bool>(modPatchFiles::ParsePatch(written, engine, patch.defaults, patch.current).status));
    return written;
}

/// Records without their names: one with a bracket in it comes back shorter.
template <class Numbers, class Record> std::vector<Numbers> NumbersOf(const NumberedList<Record>& records) {
    return {records.Dense().begin(), records.Dense().end()};
}

/// The things' numbers, and their bits only when a patch can hold all of them.
std::vector<ThingNumbers> ThingsOf(const PatchSet& set, bool withBits) {
    std::vector<ThingNumbers> things = NumbersOf<ThingNumbers>(set.things);
    for (ThingNumbers& thing : things)
        thing.bits = withBits ? thing.bits : 0;
    return things;
}

/// The states, and their code pointers only when a patch can hold all of them.
std::vector<StateRecord> StatesOf(const PatchSet& set, bool withCodePointers) {
    std::vector<StateRecord> states = set.states.Dense();
    for (StateRecord& state : states)
        state.codePointer = withCodePointers ? state.codePointer : 0;
    return states;
}

/// A carriage return takes the character behind it along, which at the end of a patch is first there when it is saved.
bool EndsInCarriageReturn(const NumberedList<StringRecord>& strings) {
    return std::any_of(strings.Dense().begin(), strings.Dense().end(),
                       [](const StringRecord& string) { return string.text.ends_with('\r'); });
}

/// What [STRINGS] make of the strings of a set: blanks at their ends are lost, and escapes are undone in their order.
std::vector<StringRecord> ThroughStrings(std::vector<StringRecord> strings, const PatchData& patch,
                                         const EngineConfiguration& engine) {
    for (std::size_t i = 0; i < strings.size(); ++i) {
        std::string& text = strings[i].text;
        text = text == engine.strings[i].text ? patch.defaults.strings[i].text
                                              : modPatchText::UnescapeText(Trim(modPatchText::EscapeText(text)));
        strings[i].length = static_cast<std::int32_t>(text.size());
    }
    return strings;
}

/// What was read from a patch is there again after writing and reading, but for what a patch cannot hold: bits without
/// a name, code pointers of no other state, brackets in names, blanks at the ends of strings, a carriage return at the
/// end of a text. It may need some rounds until nothing is lost.
void CheckRoundTrips(PatchData& patch, const EngineConfiguration& engine) {
    constexpr int mostRounds = 8;
    const PatchSet read = patch.current;
    std::string written = WriteAndRead(patch, engine);
    const Dialect& dialect = engine.dialect;
    Check(ThingsOf(patch.current, !dialect.namedBits) == ThingsOf(read, !dialect.namedBits));
    Check(StatesOf(patch.current, dialect.namedCodePointers) == StatesOf(read, dialect.namedCodePointers));
    Check(dialect.keyedTexts ? patch.current.strings.Dense() == ThroughStrings(read.strings.Dense(), patch, engine)
                             : patch.current.strings == read.strings || EndsInCarriageReturn(read.strings));
    Check(NumbersOf<WeaponNumbers>(patch.current.weapons) == NumbersOf<WeaponNumbers>(read.weapons));
    Check(NumbersOf<AmmoNumbers>(patch.current.ammo) == NumbersOf<AmmoNumbers>(read.ammo));
    Check(patch.current.cheats == read.cheats);
    Check(patch.current.misc == read.misc && patch.current.pars == read.pars);
    for (int round = 0; round < mostRounds; ++round) {
        std::string again = WriteAndRead(patch, engine);
        if (again == written)
            return;
        written = std::move(again);
    }
    Check(false);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    modPatchFiles::Header header;
    if (!modPatchFiles::ScanHeader(bytes, header))
        Check(header.empty());
    for (const bool extended : {false, true}) {
        const EngineConfiguration engine = test::SmallEngine(extended);
        PatchData patch = test::SmallPatch(engine);
        const auto result = modPatchFiles::ParsePatch(bytes, engine, patch.defaults, patch.current);
        const modPatchCheck::CheckResult check = modPatchCheck::CheckPatch(bytes, engine, patch.defaults);
        Check(static_cast<bool>(check.status) == static_cast<bool>(result.status));
        for (const modPatchCheck::Finding& finding : check.findings)
            Check(finding.line > 0 && finding.line <= size + 1 && !finding.text.empty());
        if (result.status)
            CheckRoundTrips(patch, engine);
    }
    EngineConfiguration unlimited = test::SmallMbf21Engine();
    unlimited.dialect.unlimited = true;
    for (const EngineConfiguration& engine : {test::SmallMbf21Engine(), unlimited, test::SmallId24Engine()}) {
        PatchData patch = test::SmallPatch(engine);
        const auto result = modPatchFiles::ParsePatch(bytes, engine, patch.defaults, patch.current);
        const auto check = modPatchCheck::CheckPatch(bytes, engine, patch.defaults, {},
                                                     [](std::string_view, int frame) { return frame == 0; });
        Check(static_cast<bool>(check.status) == static_cast<bool>(result.status));
        for (const modPatchCheck::Finding& finding : check.findings)
            Check(finding.line > 0 && finding.line <= size + 1 && !finding.text.empty());
    }
    return 0;
}

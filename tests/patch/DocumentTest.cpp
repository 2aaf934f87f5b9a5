#include "patch/PatchDocument.h"

#include "core/Text.h"
#include "patch/Cells.h"
#include "patch/LumpNames.h"
#include "patch/PatchLines.h"
#include "patch/modPatchDiff.h"
#include "tests/support/SmallEngine.h"
#include "tests/support/TestSupport.h"
#include "tests/support/TextCases.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <sstream>

namespace plinket3::test {
namespace {

const std::filesystem::path cases = CASES_FOLDER;

EngineConfiguration AsEngines(bool extended) {
    EngineConfiguration engine = SmallEngine(extended);
    engine.dialect = engine.dialect.AsEngines();
    return engine;
}

void Write(PatchSet& set, RecordKind kind, std::int32_t index, int field, const CellValue& value) {
    WriteCell(set, {kind, index, field}, value);
}

constexpr std::string_view mergedSection = "--- merged\n";

/// A case of merge.txt: a patch, and behind "--- merged" what is saved when it is edited so that it says what that
/// says. Its kind, if any, is that of the engine.
class DocumentMerge : public testing::TestWithParam<TextCase> {
protected:
    static EngineConfiguration EngineOf(std::string_view kind) {
        if (kind == "mbf21")
            return SmallMbf21Engine();
        if (kind == "id24")
            return SmallId24Engine();
        EngineConfiguration engine = AsEngines(kind != "normal");
        engine.dialect.unlimited = kind == "unlimited";
        return engine;
    }
};
INSTANTIATE_TEST_SUITE_P(Document, DocumentMerge, testing::ValuesIn(CasesIn(cases / "merge.txt")),
                         [](const auto& each) { return each.param.name; });

TEST_P(DocumentMerge, TouchesOnlyTheLinesOfWhatChanged) {
    const EngineConfiguration engine = EngineOf(GetParam().kind);
    const PatchSet defaults = SmallDefaults(engine);
    const std::string after = Decoded(GetParam().told.substr(mergedSection.size()));
    PatchDocument document, wanted, merged;
    PatchSet set;
    ASSERT_TRUE(document.Read(Decoded(GetParam().text), engine, defaults, set).status);
    ASSERT_TRUE(wanted.Read(after, engine, defaults, set).status);
    const Status status = MergeIntoDocument(document, set, defaults, engine, merged);
    ASSERT_TRUE(status) << status.Reason();
    EXPECT_EQ(merged.Bytes(), after);
}

TEST(PatchDocumentTest, FieldsThatTheEngineDoesNotHaveStay) {
    const EngineConfiguration engine = AsEngines(true);
    const PatchSet defaults = SmallDefaults(engine);
    PatchDocument document, merged;
    PatchSet set;
    ASSERT_TRUE(document.Read("Frame 5\nArgs1 = 3\nDuration = 2\n", engine, defaults, set).status);
    Write(set, RecordKind::State, 5, RowOf(&StateRecord::arg1), 4);
    set.states[5].duration = 3;
    ASSERT_TRUE(MergeIntoDocument(document, set, defaults, engine, merged));
    EXPECT_EQ(merged.Bytes(), "Frame 5\nArgs1 = 3\nDuration = 3\n");
}

/// The lines of random_lines.txt: those behind "---" are for engines whose records have any number.
struct RandomLines {
    RandomLines() {
        std::istringstream file(ReadFile(cases / "random_lines.txt"));
        std::vector<std::string>* lines = &any;
        for (std::string line; std::getline(file, line);)
            if (line == "---")
                lines = &unlimited;
            else
                lines->push_back(Decoded(line));
    }
    std::vector<std::string> any, unlimited;
};

/// Patches of random lines, all in the forms that one may meet, and random edits of them.
class Dice {
public:
    Dice(unsigned seed, bool unlimited) : engine_(seed), unlimited_(unlimited) {}
    std::size_t Below(std::size_t count) { return std::uniform_int_distribution<std::size_t>(0, count - 1)(engine_); }
    template <std::size_t count> std::string Pick(const char* const (&choices)[count]) { return choices[Below(count)]; }
    const std::string& Pick(const std::vector<std::string>& choices) { return choices[Below(choices.size())]; }

    std::string Patch() {
        static const RandomLines lines;
        std::string patch;
        for (std::size_t count = Below(40); count-- > 0;)
            patch += Pick(unlimited_ && Below(3) == 0 ? lines.unlimited : lines.any) + "\n";
        if (Below(3) == 0 && !patch.empty())
            patch.pop_back();
        return Below(2) == 0 ? ReplaceAll(patch, "\n", "\r\n") : patch;
    }

    void Edit(PatchSet& set, const PatchSet& defaults, FieldLevel level) {
        const auto kind = static_cast<RecordKind>(Below(static_cast<std::size_t>(RecordKind::Music) + 1));
        if (unlimited_ && Below(3) == 0)
            return EditExistence(set, kind);
        const std::vector<std::int32_t> numbers = RecordNumbers(set, kind);
        if (HasLumpName(kind) && Below(2) == 0)
            return EditName(set, defaults, {kind, numbers[Below(numbers.size())], lumpNameField});
        const std::vector<Cell> cells = CellsOf(kind, numbers.empty() ? 0 : numbers[Below(numbers.size())]);
        if (numbers.empty() || cells.empty())
            return;
        const Cell cell = cells[Below(cells.size())];
        if (Below(4) == 0)
            return EditNote(set, Below(3) == 0 ? patchNotes : Cell{kind, cell.index, noteField});
        // The last string of the small engine is there twice: a patch that quotes it means the first one.
        const bool quotedTwice = kind == RecordKind::String && cell.index == 3;
        const RowFacts facts = cell.field >= 0 ? FactsOf(kind, cell.field) : RowFacts();
        const TextField* text = TextFieldAt(cell.field);
        if (quotedTwice || !facts.inPatch || facts.since > level || (text != nullptr && text->since > level))
            return;
        if (kind == RecordKind::Par) {
            if (!set.pars.empty() && Below(2) == 0)
                set.pars.erase(set.pars.begin() + static_cast<std::ptrdiff_t>(Below(set.pars.size())));
            else
                set.pars.push_back({static_cast<std::int32_t>(Below(4)), 1, static_cast<std::int32_t>(Below(99))});
        } else if (facts.mayBeUnset && Below(3) == 0) {
            WriteCell(set, cell, Unset());
        } else if (Below(3) == 0) {
            WriteCell(set, cell, ReadCell(defaults, cell));
        } else if (text != nullptr) {
            WriteCell(set, cell, Pick({"NAME", "USER_MESSAGE"}));
        } else if (cell.field == nameField) {
            WriteCell(set, cell, Pick({"New", "Two words", "(x)"}));
        } else if (kind == RecordKind::Cheat) {
            WriteCell(set, cell, Pick({"x", "id code", "a = b", "#"}));
        } else if (cell.field == textField) {
            WriteCell(set, cell, Pick({"x", "two\nlines", "a\n\nb c\n", "a = b"}));
        } else {
            // The small engine's code pointers are 0 to 4, of which a frame has those up to 3.
            WriteCell(set, cell, static_cast<std::int32_t>(Below(4)));
        }
        DeriveMisc(set.misc);
    }

    bool Removed() const { return removed_; }

private:
    /// Makes a record, removes one or gives one another name.
    void EditExistence(PatchSet& set, RecordKind kind) {
        const auto number = std::int32_t{std::array{6, 9, 70, 77, INT32_MAX - 1}[Below(5)]};
        const Cell exists{kind, number, existsField}, name{kind, number, lumpNameField};
        if (!HasCell(set, exists))
            return;
        const bool remove = HasRecord(set, kind, number) && Below(2) == 0;
        WriteCell(set, exists, remove ? 0 : 1);
        if (remove)
            set.notes.erase({kind, number});
        else if (kind == RecordKind::Sprite || (kind == RecordKind::Sound && Below(2) == 0))
            WriteCell(set, name, Pick({"NEWS", "SPR2"}));
        removed_ = removed_ || remove;
    }

    /// Only those that patches for the engine can name.
    void EditName(PatchSet& set, const PatchSet& defaults, const Cell& name) {
        if (unlimited_ ? ReadCell(defaults, name) != CellValue("")
                       : !NameInTexts(defaults, name.kind, name.index).empty())
            WriteCell(set, name, Below(3) == 0 ? ReadCell(defaults, name) : CellValue(Pick({"NEWS", "SPR2"})));
    }

    void EditNote(PatchSet& set, const Cell& note) {
        if (!HasCell(set, note))
            return;
        std::string text = std::get<std::string>(ReadCell(set, note));
        switch (Below(4)) {
        case 0:
            text = Pick({"", "", "a note", " \nof\n\n# lines\n"});
            break;
        case 1:
            text += Pick({"\nmore", "\n", "comment"});
            break;
        case 2:
            text = Pick({"first\n", "\n\n"}) + text;
            break;
        default:
            text.erase(std::min(text.size(), text.find('\n')));
        }
        WriteCell(set, note, text);
    }

    std::mt19937 engine_;
    bool unlimited_, removed_ = false; // a record with all lines of its sections
};

/// The lines that no edit may touch; comments may be, when notes are edited.
std::vector<std::string> OtherLinesOf(const std::string& text, bool comments) {
    std::vector<std::string> lines;
    for (PatchLines each(text); !each.AtEnd();)
        if (const std::string_view line = each.Next(); line.starts_with("#$") || (comments && line.starts_with('#')) ||
                                                       line == "Unknown key = 3" || line == "no pair" ||
                                                       line == "USER_X = kept")
            lines.emplace_back(line);
    return lines;
}

TEST(PatchDocumentTest, AnyEditsReadBackAndLeaveTheOtherLinesAlone) {
    constexpr unsigned patches = 4000;
    unsigned refused = 0;
    for (unsigned seed = 0; seed < patches; ++seed) {
        EngineConfiguration engine = seed % 5 == 4   ? SmallId24Engine()
                                     : seed % 3 == 2 ? SmallMbf21Engine()
                                                     : AsEngines(seed % 3 == 0);
        engine.dialect.unlimited |= seed % 4 == 0;
        Dice dice(seed, engine.dialect.unlimited);
        const PatchSet defaults = SmallDefaults(engine);
        const std::string patch = dice.Patch();
        PatchDocument document, merged;
        PatchSet set;
        if (!document.Read(patch, engine, defaults, set).status)
            continue; // not one line that engines know
        ASSERT_TRUE(MergeIntoDocument(document, set, defaults, engine, merged));
        ASSERT_EQ(merged.Bytes(), patch) << "seed " << seed;

        const PatchSet opened = set;
        for (std::size_t edits = dice.Below(4) + 1; edits-- > 0;)
            dice.Edit(set, defaults, engine.dialect.fields);
        const Status status = MergeIntoDocument(document, set, defaults, engine, merged);
        BytePieces bytes;
        ASSERT_EQ(static_cast<bool>(MergedBytes(document, set, defaults, engine, bytes)), static_cast<bool>(status));
        if (engine.dialect.engineRulesOnly) {
            PatchData fresh;
            PatchSet read;
            fresh.defaults = defaults;
            fresh.current = set;
            fresh.current.notes.clear(); // which need not stand above a header
            ASSERT_TRUE(
                modPatchFiles::ParsePatch(modPatchFiles::FormatPatch(fresh, engine), engine, defaults, read).status);
            ASSERT_EQ(modPatchDiff::Differences(fresh.current, read, engine), std::vector<std::string>()) << seed;
        }
        if (!status) { // a line that resumes its section stands between others that are read there
            ++refused;
            continue;
        }
        const bool sameNotes = set.notes == opened.notes;
        if (!dice.Removed()) {
            ASSERT_EQ(OtherLinesOf(merged.Bytes(), sameNotes), OtherLinesOf(patch, sameNotes)) << "seed " << seed;
        }
        ASSERT_EQ(bytes.Joined(), merged.Bytes()) << "seed " << seed;
        PatchDocument back;
        ASSERT_EQ(modPatchDiff::Differences(set, merged.Said(), engine), std::vector<std::string>());
        const Status undone = MergeIntoDocument(merged, opened, defaults, engine, back);
        ASSERT_TRUE(undone) << "seed " << seed << ": " << undone.Reason() << "\n"
                            << patch << "\n---\n"
                            << merged.Bytes() << "\n---\n"
                            << back.Bytes();
    }
    EXPECT_LT(refused, patches / 1000);
}

TEST(PatchDocumentTest, KeepsTheLinesOfTheSessionUpToDate) {
    const EngineConfiguration engine = AsEngines(true);
    PatchData patch = SmallPatch(engine);
    auto document = std::make_shared<PatchDocument>();
    ASSERT_TRUE(document
                    ->Read("engine config =old.cfg # mine\r\nIWAD=\r\nData WAD = C:\\wads\\My.wad\r\n# IWAD = x\r\n\r\n"
                           "[STRINGS]\r\nIWAD = no\r\n",
                           engine, patch.defaults, patch.current)
                    .status);
    patch.document = document;
    patch.engineConfig = "new.cfg", patch.iwadPath = "/games/doom2.wad", patch.dataWadPaths = {"/home/my.wad"};
    BytePieces bytes;
    ASSERT_TRUE(modPatchFiles::FormatForSaving(patch, engine, bytes));
    EXPECT_EQ(bytes.Joined(),
              "engine config =new.cfg # mine\r\nIWAD= /games/doom2.wad\r\nData WAD = C:\\wads\\My.wad\r\n"
              "# IWAD = x\r\n\r\n[STRINGS]\r\nIWAD = no\r\n");
    patch.engineConfig.clear(), patch.iwadPath = "a#b", patch.dataWadPaths = {"\nx"};
    ASSERT_TRUE(modPatchFiles::FormatForSaving(patch, engine, bytes));
    EXPECT_EQ(bytes.Joined(), document->Bytes());
}

TEST(PatchDocumentTest, RefusesWhatWouldNotBeReadBack) {
    EngineConfiguration engine = AsEngines(true);
    engine.dialect.unlimited = true;
    const PatchSet defaults = SmallDefaults(engine);
    const struct {
        std::string before;
        Cell cell;
        CellValue value;
        const char* reason;
    } rows[]{{"Thing 1\nMass = 2\n Hit points = 3\nThing 2\nMass = 1\n",
              {RecordKind::Thing, 0, RowOf(&ThingRecord::hitPoints)}, // the line that ends its section goes
              ReadCell(defaults, {RecordKind::Thing, 0, RowOf(&ThingRecord::hitPoints)}),
              ""},
             {"Frame 3\n", {RecordKind::Sprite, 80, existsField}, 1, "the name of sprite 80 must have four letters"}};
    for (const auto& row : rows) {
        PatchDocument document, merged;
        PatchSet set;
        ASSERT_TRUE(document.Read(row.before, engine, defaults, set).status);
        WriteCell(set, row.cell, row.value);
        BytePieces bytes;
        const Status status = MergeIntoDocument(document, set, defaults, engine, merged);
        EXPECT_FALSE(status);
        EXPECT_NE(status.Reason().find(row.reason), std::string::npos) << status.Reason();
        EXPECT_FALSE(MergedBytes(document, set, defaults, engine, bytes));
    }
}

TEST(PatchDocumentTest, ANewPatchKeepsBitsWithoutAName) {
    const EngineConfiguration engine = AsEngines(true);
    PatchData patch = SmallPatch(engine);
    patch.current.things[0].bits = 0x102;
    EXPECT_NE(modPatchFiles::FormatPatch(patch, engine).find("Bits = 258\r\n"), std::string::npos);
}

TEST(PatchDocumentTest, FailsForATextThatEnginesCouldNotReadBack) {
    const EngineConfiguration engine = AsEngines(true);
    const PatchSet defaults = SmallDefaults(engine);
    for (const char* text : {"", " x", "x ", "x\\", "a\\nb", "a\rb"}) {
        PatchDocument document;
        PatchSet set;
        ASSERT_TRUE(document.Read("[STRINGS]\nQUIT = x\n", engine, defaults, set).status);
        set.strings[2].text = text;
        PatchDocument merged;
        EXPECT_FALSE(MergeIntoDocument(document, set, defaults, engine, merged)) << text;
    }
}

} // namespace
} // namespace plinket3::test

#include "tests/ui/UiTest.h"
#include "ui/editors/frmEditAmmo.h"
#include "ui/editors/frmEditCheats.h"
#include "ui/editors/frmEditMisc.h"
#include "ui/editors/frmEditPars.h"
#include "ui/editors/frmEditSounds.h"
#include "ui/editors/frmEditStates.h"
#include "ui/editors/frmEditStrings.h"
#include "ui/editors/frmEditThings.h"
#include "ui/editors/frmEditWeapons.h"
#include "ui/fields/SpriteView.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QPushButton>

#include <map>

namespace plinket3::test {

namespace {

constexpr std::int32_t unit = 65536; // of fixed point
constexpr int lastState = 966;       // of doom19, as the other numbers below

/// What the editors of all kinds of records have in common.
class EditorsTest : public EditorTest {
protected:
    void SetUp() override { OpenAll("doom19"); }
    void OpenAll(const char* engine) {
        LoadEngine(engine);
        windows = {{RecordKind::Thing, &Open<frmEditThings>()},   {RecordKind::State, &Open<frmEditStates>()},
                   {RecordKind::Sound, &Open<frmEditSounds>()},   {RecordKind::String, &Open<frmEditStrings>()},
                   {RecordKind::Weapon, &Open<frmEditWeapons>()}, {RecordKind::Ammo, &Open<frmEditAmmo>()},
                   {RecordKind::Cheat, &Open<frmEditCheats>()},   {RecordKind::Misc, &Open<frmEditMisc>()},
                   {RecordKind::Par, &Open<frmEditPars>()}};
    }
    QAbstractItemView& List(RecordKind kind) {
        const std::map<RecordKind, const char*> names{
            {RecordKind::Thing, "lstThings"},   {RecordKind::State, "lvwStates"},   {RecordKind::Sound, "lvwSounds"},
            {RecordKind::String, "lvwStrings"}, {RecordKind::Weapon, "lstWeapons"}, {RecordKind::Ammo, "lstAmmo"}};
        return *windows[kind]->findChild<QAbstractItemView*>(names.at(kind));
    }
    void Activate(RecordKind kind) {
        windows[kind]->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(windows[kind]));
    }
    void Select(const Cell& cell) {
        Activate(cell.kind);
        if (cell.kind != RecordKind::Misc)
            ClickRow(List(cell.kind), cell.index);
    }
    void Click(RecordKind kind, const std::string& button) {
        QTest::mouseClick(&Find<QPushButton>(*windows[kind], button.c_str()), Qt::LeftButton);
    }
    QLineEdit& Box(RecordKind kind, const std::string& name) { return Find<QLineEdit>(*windows[kind], name.c_str()); }

    std::map<RecordKind, EditorWindow*> windows;
};

constexpr Cell Imp(std::int32_t ThingRecord::*member) { return {RecordKind::Thing, 11, RowOf(member)}; }
constexpr Cell Walking(std::int32_t StateRecord::*member) { return {RecordKind::State, 450, RowOf(member)}; }
constexpr Cell LitBall(std::int32_t StateRecord::*member) { return {RecordKind::State, 97, RowOf(member)}; }
constexpr Cell Shells(std::int32_t AmmoRecord::*member) { return {RecordKind::Ammo, 1, RowOf(member)}; }
constexpr Cell Misc(std::int32_t MiscRecord::*member) { return {RecordKind::Misc, 0, RowOf(member)}; }
constexpr Cell Shotgun(std::int32_t WeaponRecord::*member) { return {RecordKind::Weapon, 2, RowOf(member)}; }

struct NumberCase {
    const char* box;
    Cell cell;
    const char* typed; // "\b" empties the box
    std::int32_t stored;
    const char* shown = nullptr; // while typing, if not as typed
    const char* left = nullptr;  // when the box is left, if not the same
    std::int32_t unit = 1;       // of what is shown
    std::int32_t flag = 0;       // that stays as it is and is not shown here
};
constexpr NumberCase numberCases[]{
    {"txtHitPoints", Imp(&ThingRecord::hitPoints), "99999999999", INT32_MAX, "2147483647"},
    {"txtHitPoints", Imp(&ThingRecord::hitPoints), "-2147483649", INT32_MIN, "-2147483648"},
    {"txtHitPoints", Imp(&ThingRecord::hitPoints), "12 imps", 12, nullptr, "12"},
    {"txtRadius", Imp(&ThingRecord::width), "12.5", 12 * unit, nullptr, "12", unit},
    {"txtRadius", Imp(&ThingRecord::width), "13.5", 14 * unit, nullptr, "14", unit},
    {"txtRadius", Imp(&ThingRecord::width), "40000", -1673527296, nullptr, "-25536", unit},
    {"txtHeight", Imp(&ThingRecord::height), "-3", -3 * unit, nullptr, nullptr, unit},
    {"txtMass", Imp(&ThingRecord::mass), "none", 0, nullptr, "0"},
    {"txtReactionTime", Imp(&ThingRecord::reactionTime), "2.5", 2, nullptr, "2"},
    {"txtDuration", Walking(&StateRecord::duration), "1500", 999, "999"},
    {"txtDuration", Walking(&StateRecord::duration), "-7", -1, "-1"},
    {"txtDuration", Walking(&StateRecord::duration), "2.5", 2, "2"},
    {"txtParameter1", Walking(&StateRecord::unknown1), "40000", 32768, "32768"},
    {"txtParameter1", Walking(&StateRecord::unknown1), "-40000", -32767, "-32767"},
    {"txtFrame", LitBall(&StateRecord::subnumber), "40", 31 | litBit, "31", nullptr, 1, litBit},
    {"txtFrame", Walking(&StateRecord::subnumber), "40", 31, "31"},
    {"txtSprite", Walking(&StateRecord::sprite), "99999", 137, "137"},
    {"txtNextState", Walking(&StateRecord::nextState), "99999", lastState, "966"},
    {"txtNextState", Walking(&StateRecord::nextState), "-5", 0, "0"},
    {"txtMaxAmmo", Shells(&AmmoRecord::maxAmmo), "1000000", 999999, "999999"},
    {"txtMaxAmmo", Shells(&AmmoRecord::maxAmmo), "-1", 0, "0"},
    {"txtMaxAmmo", Shells(&AmmoRecord::maxAmmo), "7.25", 7, nullptr, "7"},
    {"txtPickupAmmo", Shells(&AmmoRecord::perAmmo), "\b", 0, "", "0"},
    {"txtIH", Misc(&MiscRecord::initialHealth), "10000", 9999, "9999"},
    {"txtIB", Misc(&MiscRecord::initialBullets), "-1", 0, "0"},
    {"txtSPHealth", Misc(&MiscRecord::soulsphereHealth), "300", 255, "255"},
    {"txtBFGShot", Misc(&MiscRecord::bfgCells), "200", 127, "127"},
    {"txtBFGShot", Misc(&MiscRecord::bfgCells), "-1", 255, nullptr, "255"},
    {"txtBFGShot", Misc(&MiscRecord::bfgCells), "-200", 128, "-128", "128"},
};

TEST_F(EditorsTest, TypedNumbersAreLimitedStoredMarkedAndUndoneAsOneStep) {
    for (const NumberCase& row : numberCases) {
        SCOPED_TRACE(std::string(row.box) + " " + row.typed);
        Select(row.cell);
        QLineEdit& box = Box(row.cell.kind, row.box);
        const auto standard = (std::get<std::int32_t>(edits.DefaultValue(row.cell)) & ~row.flag) / row.unit;
        const char* shown = row.shown != nullptr ? row.shown : row.typed;
        EXPECT_EQ(box.text().toInt(), standard);
        EXPECT_FALSE(box.font().bold());
        EXPECT_FALSE(box.accessibleName().isEmpty());
        Type(box, row.typed);
        EXPECT_EQ(box.text(), shown);
        EXPECT_EQ(std::get<std::int32_t>(edits.Value(row.cell)), row.stored);
        EXPECT_TRUE(program.patch.changed);
        EXPECT_TRUE(box.font().bold());
        QTest::keyClick(&box, Qt::Key_Tab);
        EXPECT_EQ(box.text(), row.left != nullptr ? row.left : shown);
        edits.Undo();
        EXPECT_FALSE(edits.CanUndo());
        EXPECT_EQ(Current(), Defaults());
        EXPECT_FALSE(program.patch.changed);
        EXPECT_EQ(box.text().toInt(), standard);
    }
}

TEST_F(EditorsTest, EveryFieldIsBroughtUpInABoxThatStoresItForAllThatIsSelectedAndNothingElse) {
    OpenAll("id24");
    for (const int state : {450, 451}) // which takes all arguments
        program.patch.defaults.states[state].codePointer = program.engine.CodePointerOf("SpawnObject").value();
    program.patch.current = program.patch.defaults;
    int boxes = 0;
    for (const auto& [kind, index] : {std::pair(RecordKind::Thing, 11),
                                      {RecordKind::State, 450},
                                      {RecordKind::Weapon, 2},
                                      {RecordKind::Ammo, 1},
                                      {RecordKind::Misc, 0}}) {
        Activate(kind);
        for (const Cell& cell : edits.CellsOf(kind, index)) {
            if (cell.field < 0 || !FactsOf(kind, cell.field).inPatch)
                continue;
            windows[kind]->ShowCell(cell);
            auto* box = qobject_cast<QLineEdit*>(QApplication::focusWidget());
            if (box == nullptr) // a list of flags or choices
                continue;
            SCOPED_TRACE(box->objectName().toStdString() + " for " + FactsOf(kind, cell.field).label.data());
            EXPECT_FALSE(box->accessibleName().isEmpty());
            ++boxes;
            PatchSet expected = Defaults();
            const auto type = [&](const Cell& last, const char* typed) {
                Type(*box, typed);
                EXPECT_NE(edits.Value(last), edits.DefaultValue(last));
                for (const Cell& each : {cell, last})
                    WriteCell(expected, each, edits.Value(last));
                DeriveMisc(expected.misc);
                EXPECT_EQ(Current(), expected);
                edits.Undo();
                EXPECT_EQ(Current(), Defaults()) << "one step";
            };
            type(cell, box->text() == "3" ? "4" : "3");
            if (kind == RecordKind::Misc)
                continue;
            ClickRow(List(kind), index + 1, Qt::LeftButton, Qt::ControlModifier);
            const Cell other{kind, index + 1, cell.field};
            type(other, edits.DefaultValue(other) == CellValue(8) ? "9" : "8");
        }
    }
    EXPECT_EQ(boxes, 91);
}

TEST_F(EditorsTest, EveryReferenceIsTypedDescribedAssignedBroughtUpAndPlayed) {
    const auto check = [this](const Cell& cell, bool isState) {
        const RecordKind kind = cell.kind;
        Select(cell);
        windows[kind]->ShowCell(cell);
        const std::string name = QApplication::focusWidget()->objectName().toStdString(); // "txt...N"
        const std::string stem = name.substr(3, name.size() - 4);
        SCOPED_TRACE(stem);
        QLineEdit& box = Box(kind, name);
        auto& label = Find<QLabel>(*windows[kind], ("lbl" + stem + "S").c_str());
        const auto stored = [&] { return std::get<std::int32_t>(edits.Value(cell)); };
        EXPECT_EQ(box.text().toInt(), stored());
        Type(box, "99999");
        EXPECT_EQ(stored(), isState ? lastState : 108);
        Type(box, "-5");
        EXPECT_EQ(box.text(), "0");
        EXPECT_EQ(label.text(), "-");
        (isState ? links.selectedStateRow : links.selectedSoundRow).reset();
        Click(kind, "cmd" + stem + "A");
        EXPECT_EQ(stored(), 0) << "nothing is selected";
        EXPECT_EQ(links.calls.back(),
                  std::string("status No row is selected in the ") + (isState ? "state" : "sound") + " editor");
        (isState ? links.selectedStateRow : links.selectedSoundRow) = isState ? 149 : 1;
        Click(kind, "cmd" + stem + "A");
        EXPECT_EQ(stored(), isState ? 149 : 1);
        EXPECT_EQ(links.calls.back(),
                  isState ? "status Took row 150: state 149 (PLAYA)" : "status Took row 2: sound 1 (pistol)");
        EXPECT_EQ(label.text(), isState ? "PLAYA" : "pistol");
        links.calls.clear();
        QTest::mouseClick(&label, Qt::LeftButton);
        EXPECT_EQ(links.calls.back(), !isState                    ? "show sound 1"
                                      : kind == RecordKind::Thing ? "select state 149 11 -1"
                                                                  : "select state 149 -1 2");
        if (isState)
            return;
        QTest::mouseDClick(&label, Qt::LeftButton);
        Click(kind, "cmd" + stem + "P");
        EXPECT_EQ(links.calls, (std::vector<std::string>{"show sound 1", "play sound 1", "play sound 1"}));
    };
    int states = 0, sounds = 0;
    for (const Cell& record : {Imp(&ThingRecord::id), Shotgun(&WeaponRecord::ammoType)})
        for (const Cell& cell : edits.CellsOf(record.kind, record.index)) {
            const FieldUnit unit = cell.field < 0 ? FieldUnit::Number : FactsOf(cell.kind, cell.field).unit;
            if (unit == FieldUnit::State ||
                (unit == FieldUnit::Sound && FactsOf(cell.kind, cell.field).since == FieldLevel::Doom)) {
                check(cell, unit == FieldUnit::State);
                ++(unit == FieldUnit::State ? states : sounds);
            }
        }
    EXPECT_EQ(std::pair(states, sounds), std::pair(13, 5));
}

TEST_F(EditorsTest, NamesAreAskedForStoredAsBytesAndShown) {
    const struct {
        Cell cell;
        const char* asked;
    } rows[]{{{RecordKind::Thing, 11, nameField}, "ask Thing 12|Enter a new name|Imp"},
             {{RecordKind::Weapon, 1, nameField}, "ask Weapon 2|Enter new name|Pistol"},
             {{RecordKind::Ammo, 1, nameField}, "ask Ammo 1|Enter a new name|Shells"}};
    for (const auto& row : rows) {
        Select(row.cell);
        links.calls.clear();
        links.typedText.clear();
        Click(row.cell.kind, "cmdRename");
        EXPECT_EQ(links.calls, std::vector<std::string>{row.asked});
        EXPECT_FALSE(program.patch.changed) << "cancelled";
        links.typedText = QStringLiteral(" Dev\u00efl ");
        Click(row.cell.kind, "cmdRename");
        EXPECT_EQ(edits.Value(row.cell), CellValue(" Dev\xefl "));
        if (row.cell.kind == RecordKind::Thing) { // Kept: the entry of the thing after it
            EXPECT_EQ(links.calls.back(), "filter entry 12  Dev\u00efl ");
        }
        const QModelIndex shown = List(row.cell.kind).model()->index(row.cell.index, 0);
        EXPECT_TRUE(shown.data().toString().endsWith(links.typedText)) << row.asked;
        EXPECT_TRUE(shown.data(Qt::FontRole).value<QFont>().bold());
        EXPECT_FALSE(shown.siblingAtRow(row.cell.index + 1).data(Qt::FontRole).isValid());
        EXPECT_TRUE(program.patch.changed);
        edits.Undo();
        EXPECT_EQ(Current(), Defaults());
        EXPECT_FALSE(shown.data().toString().endsWith(links.typedText));
    }
}

TEST_F(EditorsTest, RestoringAsksAndRestoresWhatIsSelectedAsOneStep) {
    const struct {
        RecordKind kind;
        std::int32_t first; // of three records, of which the third stays as it is
        std::string one, many;
        const char* step = "";
    } rows[]{{RecordKind::Thing, 2, "this thing", "these things", "restore 2 things"},
             {RecordKind::State, 0, "these states", "these states", "restore 2 frames"},
             {RecordKind::Sound, 1, "this sound", "these sounds", "restore 2 sounds"},
             {RecordKind::String, 1, "this string", "these strings", "restore 2 strings"},
             {RecordKind::Weapon, 2, "this weapon", "these weapons", "restore 2 weapons"},
             {RecordKind::Ammo, 1, "this ammo entry", ""},
             {RecordKind::Cheat, 0, "ALL cheat strings", ""},
             {RecordKind::Misc, 0, "ALL miscellaneous values", ""}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.one);
        const bool listed = row.kind != RecordKind::Cheat && row.kind != RecordKind::Misc;
        std::vector<std::vector<Cell>> records;
        for (std::int32_t index = row.first; index < row.first + (row.kind == RecordKind::Misc ? 1 : 3); ++index) {
            records.push_back(edits.CellsOf(row.kind, index));
            for (const Cell& cell : records.back())
                edits.Store(cell, std::holds_alternative<std::string>(edits.Value(cell)) ? CellValue("X") : 3);
        }
        const PatchSet changed = Current();
        const auto answer = [&](const std::string& what, Answer given) {
            notifier.Expect("Are you sure you want to restore " + what + "?", given);
            if (auto* entry = windows[row.kind]->findChild<QAction*>("actRestore");
                entry != nullptr && what == row.many)
                entry->trigger(); // the button restores the thing that is shown
            else
                Click(row.kind, listed ? "cmdRestore" : "cmdRestoreAll");
            notifier.AllAsked();
        };
        const auto isRestored = [&](std::size_t record) {
            return std::ranges::all_of(records[record], [this](const Cell& cell) { return edits.IsDefault(cell); });
        };
        if (listed)
            ClickRow(List(row.kind), row.first);
        answer(row.one, Answer::No);
        EXPECT_EQ(Current(), changed);
        answer(row.one, Answer::Yes);
        EXPECT_TRUE(isRestored(0));
        EXPECT_EQ(isRestored(records.size() - 1), !listed);
        edits.Undo();
        EXPECT_EQ(Current(), changed);
        if (!row.many.empty()) {
            ClickRow(List(row.kind), row.first + 1, Qt::LeftButton, Qt::ControlModifier);
            answer(row.many, Answer::Yes);
            EXPECT_TRUE(isRestored(0) && isRestored(1));
            EXPECT_FALSE(isRestored(2));
            EXPECT_EQ(edits.UndoName(), row.step);
        }
    }
    EXPECT_TRUE(links.calls.empty()) << "the state editor's list of things keeps its names";
}

TEST_F(EditorsTest, LookingAtRecordsChangesNothing) {
    edits.Store(Imp(&ThingRecord::width), 41 * unit / 2);
    program.patch.current.states[454].duration = 5000; // the row limits what an editor stores, a patch may hold more
    edits.MarkSaved();
    const PatchSet before = Current();
    for (const RecordKind kind : {RecordKind::Thing, RecordKind::State, RecordKind::Sound, RecordKind::String,
                                  RecordKind::Weapon, RecordKind::Ammo}) {
        Activate(kind);
        QAbstractItemView& list = List(kind);
        ClickRow(list, 0);
        for (int row = 1; row < list.model()->rowCount(); ++row)
            QTest::keyClick(&list, Qt::Key_Down);
        EXPECT_EQ(list.currentIndex().row(), list.model()->rowCount() - 1);
        for (auto* box : windows[kind]->findChildren<QLineEdit*>())
            if (box->isVisible() && box->isEnabled())
                QTest::mouseClick(box, Qt::LeftButton); // leaving one is no edit, either
    }
    Select(Imp(&ThingRecord::width));
    EXPECT_EQ(Box(RecordKind::Thing, "txtRadius").text(), "20.5");
    EXPECT_EQ(Current(), before);
    EXPECT_FALSE(program.patch.changed);
    EXPECT_EQ(edits.UndoName(), "width of Imp");
    for (int weapon = 0; HasWad() && weapon < 9; ++weapon) {
        ClickRow(List(RecordKind::Weapon), weapon);
        EXPECT_FALSE(windows[RecordKind::Weapon]->findChild<SpriteView*>("picSprite")->Picture().isNull()) << weapon;
    }
}

TEST_F(EditorsTest, ListsKeepTheRulesOfModels) {
    OpenAll("mbf19");
    std::vector<std::unique_ptr<QAbstractItemModelTester>> testers;
    for (const auto& [kind, window] : windows)
        for (auto* view : window->findChildren<QAbstractItemView*>())
            if (view->model() != nullptr && !view->objectName().isEmpty())
                testers.push_back(std::make_unique<QAbstractItemModelTester>(
                    view->model(), QAbstractItemModelTester::FailureReportingMode::Fatal));
    EXPECT_GE(testers.size(), 8U);
    for (const auto& [kind, window] : windows) {
        Activate(kind);
        if (auto* filter = window->findChild<QLineEdit*>("txtFilter"))
            Type(*filter, "im");
        for (const Cell& cell : edits.CellsOf(kind, 1))
            edits.Store(cell, std::holds_alternative<std::string>(edits.Value(cell)) ? CellValue("X") : 3);
    }
    Click(RecordKind::Par, "cmdAdd");
    Click(RecordKind::Par, "cmdRemove");
    while (edits.CanUndo())
        edits.Undo();
    EXPECT_EQ(Current(), Defaults());
    LoadEngine("dehextra19");
    for (const auto& [kind, window] : windows) {
        window->Refresh();
        if (auto* filter = window->findChild<QLineEdit*>("txtFilter"))
            filter->clear();
    }
    EXPECT_EQ(List(RecordKind::Sound).model()->rowCount(), 700);
}

} // namespace

} // namespace plinket3::test

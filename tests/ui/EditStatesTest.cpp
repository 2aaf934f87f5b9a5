#include "patch/StateUse.h"
#include "tests/ui/UiTest.h"
#include "ui/editors/frmEditStates.h"
#include "ui/fields/Labels.h"
#include "ui/fields/SpriteView.h"
#include "ui/states/StateColumns.h"
#include "ui/states/StatePlayer.h"
#include "ui/states/StateTableModel.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QToolButton>

namespace plinket3::test {

namespace {

constexpr int imp = 11, pistol = 1, noRecord = -1;
constexpr std::int32_t walking = 450, attack = 454, pain = 455, litBall = 97; // the last two without an engine action

class frmEditStatesTest : public EditorTest {
protected:
    void SetUp() override { OpenWith("doom19"); }
    void OpenWith(const std::string& engine) {
        LoadEngine(engine);
        window = &Open<frmEditStates>();
        window->resize(900, 700);
    }
    QTableView& List() { return Find<QTableView>(*window, "lvwStates"); }
    QComboBox& Actions() { return Find<QComboBox>(*window, "cmbActions"); }
    QCheckBox& Lit() { return Find<QCheckBox>(*window, "chkLit"); }
    /// Types an action's name, and past the names that are offered below the box.
    void TypeAction(const char* name) {
        Type(*Actions().lineEdit(), name);
        if (QWidget* offered = QApplication::activePopupWidget())
            QTest::keyClick(offered, Qt::Key_Escape);
        window->activateWindow(); // without a window manager the list that popped up stays the active one
        QApplication::processEvents();
    }
    QImage Picture() { return window->findChild<SpriteView*>(QStringLiteral("picSprite"))->Picture(); }
    /// Selects states by clicks; the list must show all states.
    void Select(const std::vector<int>& states) {
        for (const int state : states)
            ClickRow(List(), state, Qt::LeftButton, state == states.front() ? Qt::NoModifier : Qt::ControlModifier);
    }
    const StateRecord& State(std::int32_t state) const { return Current().states[static_cast<std::size_t>(state)]; }
    std::int32_t Action(std::int32_t state) const { return State(state).codePointer; }
    void Put(std::int32_t state, std::int32_t StateRecord::*member, std::int32_t value) {
        edits.Store({RecordKind::State, state, RowOf(member)}, value);
    }
    /// Makes states of these durations follow one another.
    void Follow(const std::vector<std::pair<std::int32_t, std::int32_t>>& states) {
        for (std::size_t i = 0; i < states.size(); ++i) {
            Put(states[i].first, &StateRecord::duration, states[i].second);
            if (i + 1 < states.size())
                Put(states[i].first, &StateRecord::nextState, states[i + 1].first);
        }
    }
    std::vector<std::int32_t> Listed() {
        std::vector<std::int32_t> states;
        for (int row = 0; row < List().model()->rowCount(); ++row)
            states.push_back(List().model()->index(row, 0).data().toInt());
        return states;
    }

    frmEditStates* window = nullptr;
};

TEST_F(frmEditStatesTest, OfSeveralStatesOnlyWhatIsTypedChangesAndNothingOfStateZero) {
    const PatchSet before = Current();
    Select({walking, 0, pain, attack});
    for (const char* box : {"txtSprite", "txtFrame", "txtDuration", "txtNextState", "txtParameter1", "txtParameter2"})
        EXPECT_EQ(Box(box).text(), "") << box;
    EXPECT_EQ(Lit().checkState(), Qt::PartiallyChecked);
    EXPECT_EQ(Text("lblSpriteName"), "");

    Type(Box("txtDuration"), "77");
    PatchSet expected = before;
    for (const std::int32_t state : {walking, pain, attack})
        expected.states[static_cast<std::size_t>(state)].duration = 77;
    EXPECT_EQ(Current(), expected);
    EXPECT_EQ(edits.UndoName(), "duration of 3 frames");
    edits.Undo();
    EXPECT_EQ(Current(), before);
    EXPECT_EQ(Box("txtDuration").text(), "") << "the value is no longer that of all";
    edits.Redo();
    Select({walking});
    Type(Box("txtDuration"), "\b");
    EXPECT_EQ(Current(), expected) << "an empty box leaves values alone";
    QTest::keyClick(&Box("txtDuration"), Qt::Key_Tab);
    EXPECT_EQ(Box("txtDuration").text(), "77") << "and shows them again";
    Select({0}); // is only shown
    EXPECT_EQ(Box("txtDuration").text(), "-1");
    EXPECT_FALSE(Box("txtDuration").isEnabled() || Lit().isEnabled() || Actions().isEnabled());
}

TEST_F(frmEditStatesTest, TheLitFlagIsSetAndClearedForAllSelectedButALetterStoresTheBareFrame) {
    Select({litBall, walking});
    Type(Box("txtFrame"), "5");
    EXPECT_EQ(State(litBall).subnumber, 5 | litBit) << "a number leaves each state its flag";
    EXPECT_EQ(State(walking).subnumber, 5);
    Click("chkLit");
    EXPECT_EQ(State(walking).subnumber, 5 | litBit);
    EXPECT_EQ(Lit().checkState(), Qt::Checked);
    Click("chkLit");
    EXPECT_EQ(State(litBall).subnumber, 5);
    EXPECT_EQ(Lit().checkState(), Qt::Unchecked) << "a click never leads back to undetermined";
    EXPECT_EQ(edits.UndoName(), "lit of 2 frames");
    edits.Undo();
    Select({walking});
    EXPECT_EQ(Lit().checkState(), Qt::Checked);
    EXPECT_EQ(Lit().toolTip(), "Default: not lit");

    program.settings.Number("frameCharacter", 1);
    window->Refresh();
    Select({litBall});
    Type(Box("txtFrame"), "c"); // a letter stores the bare frame
    EXPECT_EQ(Box("txtFrame").text(), "C");
    EXPECT_EQ(State(litBall).subnumber, 2);
    EXPECT_FALSE(Lit().isChecked());
}

TEST_F(frmEditStatesTest, ActionsBelongToStatesThatHaveOneUnlessThePatchIsExtended) {
    Select({pain});
    EXPECT_FALSE(Actions().isEnabled());
    EXPECT_FALSE(Find<QPushButton>(*window, "cmdActionBrowse").isEnabled());
    Select({walking});
    EXPECT_TRUE(Actions().isEnabled());
    EXPECT_EQ(Actions().currentText(), "Chase");

    Select({walking, pain});
    EXPECT_EQ(Actions().currentText(), "");
    TypeAction("Look");
    QTest::keyClick(Actions().lineEdit(), Qt::Key_Return);
    EXPECT_EQ(program.engine.MnemonicOf(Action(walking))->compare("Look"), 0);
    EXPECT_EQ(Action(pain), 0) << "a state without an action cannot get one";

    OpenWith("boom19");
    Select({pain});
    ASSERT_TRUE(Actions().isEnabled());
    TypeAction("look"); // the other case will do
    QTest::keyClick(&Actions(), Qt::Key_Tab);
    EXPECT_EQ(*program.engine.MnemonicOf(Action(pain)), "Look");
    EXPECT_EQ(Actions().currentText(), "Look");
    EXPECT_EQ(edits.UndoName(), "action of frame 455");
    Actions().setCurrentIndex(0);
    emit Actions().activated(0);
    EXPECT_EQ(Action(pain), 0);
}

TEST_F(frmEditStatesTest, RefusedActionsGiveTheListBack) {
    Select({walking});
    Actions().setFocus();
    notifier.Expect(MessageKind::Exclamation, "Nullifying states is only possible in extended Dehacked patches.");
    QTest::keyClick(&Actions(), Qt::Key_Home, Qt::ControlModifier);
    Actions().setCurrentIndex(0);
    emit Actions().activated(0);
    EXPECT_EQ(Actions().currentText(), "Chase");
    notifier.AllAsked();

    TypeAction("NULL"); // leaving with the empty action's name typed says nothing and does nothing
    QTest::mouseClick(&Box("txtDuration"), Qt::LeftButton);
    QApplication::processEvents();
    EXPECT_EQ(Actions().currentText(), "NULL");

    notifier.Expect(MessageKind::Exclamation, "Invalid action.");
    TypeAction("Dance");
    QTest::mouseClick(&Box("txtDuration"), Qt::LeftButton);
    EXPECT_TRUE(QTest::qWaitFor([this] { return QApplication::focusWidget() == &Actions(); }));
    EXPECT_EQ(Actions().currentText(), "Chase");
    EXPECT_FALSE(edits.CanUndo());
}

TEST_F(frmEditStatesTest, EnterTakesTheOnlyActionThatIsFound) {
    for (EngineConfiguration::Action& action : program.engine.actions)
        action.description = action.mnemonic == "Look" ? "Awaits the chase of an enemy." : "";
    window->Refresh();
    Select({walking});
    const struct {
        const char *typed, *taken;
    } cases[]{{"oopatt", "TroopAttack"}, {"await", "Look"}, {"chase", "Chase"}, {"vilec", "VileChase"}};
    for (const auto& row : cases) {
        TypeAction(row.typed);
        QTest::keyClick(Actions().lineEdit(), Qt::Key_Return);
        EXPECT_EQ(Actions().currentText(), row.taken) << row.typed;
        EXPECT_EQ(*program.engine.MnemonicOf(Action(walking)), row.taken);
    }
    notifier.Expect(MessageKind::Exclamation, "Invalid action.");
    TypeAction("attack"); // more than one
    QTest::keyClick(Actions().lineEdit(), Qt::Key_Return);
    QApplication::processEvents();
    EXPECT_EQ(Actions().currentText(), "VileChase");
}

TEST_F(frmEditStatesTest, BrowsingStartsAtTheValueAndStoresTheChoice) {
    Select({walking});
    const std::vector<std::string> calls{"pick sprite 0 3", "pick state 451",
                                         "pick action " + std::to_string(Action(walking))};
    for (const char* button : {"cmdSpriteBrowse", "cmdNextStateBrowse", "cmdActionBrowse"})
        Click(button);
    EXPECT_EQ(links.calls, calls);
    EXPECT_FALSE(edits.CanUndo()) << "cancelled";
    for (const int setting : {0, 1, 2, 3, -1}) { // a double click opens the browser of the settings
        program.settings.Number("stateActivate", setting);
        links.calls.clear();
        DoubleClickRow(List(), walking);
        const bool opens = setting >= 0 && setting < 3;
        EXPECT_EQ(links.calls,
                  opens ? std::vector{calls[static_cast<std::size_t>(setting)]} : std::vector<std::string>());
    }

    Select({litBall});
    links.pickedSprite = EditorLinks::SpriteChoice{7, 3 | litBit};
    Click("cmdSpriteBrowse");
    EXPECT_EQ(State(litBall).sprite, 7);
    EXPECT_EQ(State(litBall).subnumber, 3 | litBit);
    EXPECT_EQ(Text("lblSpriteName").toStdString(), Current().SpriteName(7));
    edits.Undo();
    EXPECT_EQ(Current(), Defaults()) << "sprite and frame are one step";
    links.pickedState = 12;
    Click("cmdNextStateBrowse");
    EXPECT_EQ(Box("txtNextState").text(), "12");
    Select({walking});
    links.pickedAction = 0;
    notifier.Expect(MessageKind::Exclamation, "Nullifying states is only possible in extended Dehacked patches.");
    Click("cmdActionBrowse");
    links.pickedAction = 5;
    Click("cmdActionBrowse");
    EXPECT_EQ(Action(walking), 5);
}

TEST_F(frmEditStatesTest, FiltersListTheStatesOfTheirMode) {
    auto& things = Find<QComboBox>(*window, "cmbFilterThings");
    EXPECT_EQ(Listed(), AllStates(Current()));
    EXPECT_FALSE(things.isEnabled());
    things.setCurrentIndex(imp);
    Click("optFilterThings");
    EXPECT_EQ(Listed(), StatesOfThing(Current(), program.engine, imp));
    QTest::keyClick(&things, Qt::Key_Down);
    EXPECT_EQ(Listed(), StatesOfThing(Current(), program.engine, imp + 1));
    Click("optFilterWeapons");
    EXPECT_EQ(Listed(), StatesOfWeapon(Current(), program.engine, 0));
    Click("optFilterUnused");
    EXPECT_EQ(Listed(), UnusedStates(Current(), program.engine));
    window->Refresh();
    EXPECT_EQ(Listed(), AllStates(Current())) << "a new patch starts with all states";
}

TEST_F(frmEditStatesTest, TypingNarrowsTheListByNumberNameAndAction) {
    const struct {
        const char* typed;
        std::vector<std::int32_t> listed;
    } cases[]{{"454", {454}}, {"troog", {454}}, {"TroopAtt", {454}}, {"troo pain", {456}}, {"nosuch", {}}};
    for (const auto& row : cases) {
        Type(Box("txtFilter"), row.typed);
        EXPECT_EQ(Listed(), row.listed) << row.typed;
    }
    EXPECT_EQ(window->SelectedRow(), std::nullopt);
    EXPECT_EQ(Box("txtDuration").text(), "");
    EXPECT_TRUE(Picture().isNull());
    Click("optFilterThings");
    EXPECT_TRUE(Listed().empty()) << "the text narrows every mode";
    Click("optFilterDisabled");
    Type(Box("txtFilter"), "chase");
    QTest::keyClick(&Box("txtFilter"), Qt::Key_Return);
    EXPECT_TRUE(List().hasFocus());
}

TEST_F(frmEditStatesTest, OtherWindowsSelectAStateInAWindowThatWasNeverShown) {
    frmEditStates hidden(Context());
    EXPECT_EQ(hidden.SelectedRow(), 0) << "state 0 is the current one at first";
    hidden.selectSingleState(walking, imp, noRecord);
    const auto states = StatesOfThing(Current(), program.engine, imp);
    const auto place = std::find(states.begin(), states.end(), walking) - states.begin();
    EXPECT_EQ(hidden.SelectedRow(), static_cast<int>(place)) << "the row, not the state";
    EXPECT_EQ(Find<QComboBox>(hidden, "cmbFilterThings").currentIndex(), imp);
    EXPECT_EQ(Find<QLineEdit>(hidden, "txtNextState").text(), "451");

    hidden.selectSingleState(attack, noRecord, noRecord);
    EXPECT_EQ(Find<QLineEdit>(hidden, "txtDuration").text(), "6") << "in the list that is there";
    hidden.selectSingleState(1, noRecord, noRecord);
    EXPECT_EQ(Find<QLineEdit>(hidden, "txtDuration").text(), "6") << "not in the list";
    hidden.selectSingleState(Current().weapons[pistol].firingState, noRecord, pistol);
    EXPECT_TRUE(Find<QRadioButton>(hidden, "optFilterWeapons").isChecked());
    EXPECT_EQ(Find<QLabel>(hidden, "lblUsedBy").text(), "Used by: Pistol (firing)");

    for (const int thing : {20, 21, 22}) // beside the Imp
        edits.Store({RecordKind::Thing, thing, RowOf(&ThingRecord::deathState)}, attack);
    Select({attack});
    EXPECT_TRUE(Text("lblUsedBy").endsWith(" and 1 more")) << Text("lblUsedBy").toStdString();
    edits.Undo();
    EXPECT_FALSE(Text("lblUsedBy").contains("more")) << "follows edits of things";

    hidden.ReplaceThingFilterEntry(imp, QStringLiteral("Goat"));
    hidden.ReplaceThingFilterEntry(100000, QStringLiteral("Nobody"));
    EXPECT_EQ(Find<QComboBox>(hidden, "cmbFilterThings").itemText(imp), "Goat");
}

TEST_F(frmEditStatesTest, TheListsMenuRestoresOneColumnOfTheSelectedStates) {
    Put(walking, &StateRecord::duration, 44);
    Put(walking, &StateRecord::subnumber, 9 | litBit);
    Put(attack, &StateRecord::duration, 44);
    const auto cell = [this](int state, StateColumn column) {
        return List().visualRect(List().model()->index(state, static_cast<int>(column))).center();
    };
    Select({walking, attack});
    TriggerMenu(*List().viewport(), cell(walking, StateColumn::Duration), "restoreColumn");
    EXPECT_EQ(State(walking).duration, Defaults().states[walking].duration);
    EXPECT_EQ(State(attack).duration, Defaults().states[attack].duration);
    EXPECT_EQ(edits.UndoName(), "restore duration of 2 frames");
    TriggerMenu(*List().viewport(), cell(walking, StateColumn::Frame), "restoreColumn");
    EXPECT_EQ(State(walking).subnumber, Defaults().states[walking].subnumber | litBit) << "the flag is another column";
    notifier.Expect("Are you sure you want to restore these states?", Answer::Yes);
    TriggerMenu(*List().viewport(), cell(walking, StateColumn::Frame), "restoreStates");
    EXPECT_EQ(State(walking), Defaults().states[walking]);
}

TEST_F(frmEditStatesTest, TheModelShowsColumnsAndMarksWhatIsNotTheEngines) {
    auto& model = static_cast<StateTableModel&>(*List().model());
    const char* expected[]{"454", "TROOG", "0", "6", "Yes", "444", "6", "0", "-3", "TroopAttack", "", ""};
    Put(attack, &StateRecord::subnumber, 6 | litBit);
    Put(attack, &StateRecord::unknown2, -3);
    for (int column = 0; column < stateColumnCount; ++column) {
        const QModelIndex cell = model.index(attack, column);
        EXPECT_EQ(cell.data(), expected[column]);
        const auto which = static_cast<StateColumn>(column);
        const bool differs = which == StateColumn::Lit || which == StateColumn::Parameter2;
        EXPECT_EQ(cell.data(Qt::FontRole).value<QFont>().bold(), differs) << column;
        EXPECT_EQ(cell.data(Qt::ToolTipRole).isValid(), differs) << column;
    }
    EXPECT_EQ(model.index(attack, static_cast<int>(StateColumn::Parameter2)).data(Qt::ToolTipRole), "Default: 0");
    model.Show({454, 100000}); // the patch may have been replaced by a smaller one
    EXPECT_FALSE(model.index(1, 0).data().isValid());
}

TEST_F(frmEditStatesTest, PlayingShowsEachStateForItsDuration) {
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    Follow({{walking, 2}, {walking + 1, 0}, {attack, 1}, {pain, -1}});
    std::vector<std::int32_t> shown;
    auto& player = *window->findChild<StatePlayer*>();
    QObject::connect(&player, &StatePlayer::StateShown, [&shown](std::int32_t state) { shown.push_back(state); });
    const auto play = [this] { return Find<QToolButton>(*window, "cmdPlay").accessibleName(); };
    Select({walking});
    EXPECT_EQ(Text("lblTic"), "3 tics, then stays");
    Click("cmdPlay");
    EXPECT_EQ(play(), "Pause");
    EXPECT_EQ(Text("lblTic"), "Tic 1 of 3");
    player.Advance();
    EXPECT_EQ(Text("lblTic"), "Tic 2 of 3");
    EXPECT_EQ(shown, (std::vector<std::int32_t>{walking}));
    Click("cmdPlay");
    EXPECT_TRUE(player.IsPlaying() && !player.IsRunning()) << "pauses";
    Put(walking, &StateRecord::duration, 3);
    QTest::keyClick(window, Qt::Key_Period, Qt::AltModifier); // one tic; passes the state without duration
    EXPECT_EQ(Text("lblTic"), "Tic 4 of 4") << "of the states as they are now";
    Click("cmdStep");
    EXPECT_EQ(shown, (std::vector<std::int32_t>{walking, attack, pain}));
    EXPECT_FALSE(player.IsPlaying()) << "the last one stays for ever";
    EXPECT_EQ(Text("lblTic"), "Stays for ever");
    EXPECT_TRUE(Text("lblPreview").startsWith("455:"));
    EXPECT_TRUE(play().startsWith("Play"));
    QTest::keyClick(window, Qt::Key_P, Qt::AltModifier | Qt::ShiftModifier);
    EXPECT_TRUE(Text("lblPreview").startsWith("450:")) << "stopping goes back to the selected state";

    QTest::keyClick(window, Qt::Key_P, Qt::AltModifier);
    EXPECT_TRUE(player.IsRunning());
    QTRY_COMPARE(shown.back(), pain); // by itself
    Click("cmdStep");
    Select({attack});
    EXPECT_FALSE(player.IsPlaying()) << "selecting another ends it";

    Follow({{walking, 1}, {attack, 1}, {walking, 1}});
    Select({walking});
    EXPECT_EQ(Text("lblTic"), "2 tics, again and again");
    shown.clear();
    Click("cmdPlay");
    for (int tic = 0; tic < 99; ++tic)
        player.Advance();
    EXPECT_EQ(shown.size(), 100U) << "a loop goes on";
    EXPECT_EQ(Text("lblTic"), "Tic 2 of 2");
    Follow({{walking, 0}, {attack, 0}, {walking, 0}});
    player.Advance();
    EXPECT_EQ(Text("lblTic"), "Ended: goes round in no time");
    Click("cmdPlay");
    EXPECT_FALSE(player.IsPlaying());
}

TEST_F(frmEditStatesTest, PlayingJumpsAsChosenAndAsFast) {
    OpenWith("mbf21");
    program.fixedUses = LoadFixedUses(program.programFolder, program.engine);
    PatchSet& set = program.patch.current;
    const auto put = [&](std::int32_t state, std::int32_t next, const char* action, std::int32_t first,
                         std::int32_t second) {
        StateRecord& record = set.states[state] = {};
        record.nextState = next;
        record.duration = 1;
        record.codePointer = program.engine.CodePointerOf(action).value();
        record.unknown1 = first;
        record.unknown2 = second;
    };
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
    put(1200, 1201, "NULL", 0, 0);
    put(1201, 1200, "RandomJump", 1202, 100);
    put(1202, 1202, "NULL", 0, 0);
    set.things[imp].initialState = 1202;
    window->Refresh();
    auto& player = *window->findChild<StatePlayer*>();
    std::vector<std::int32_t> shown;
    QObject::connect(&player, &StatePlayer::StateShown, [&shown](std::int32_t state) { shown.push_back(state); });
    std::int32_t dice = 100;
    player.Chance([&dice] { return dice; });
    const auto play = [&](int tics) {
        Click("cmdStop");
        shown.clear();
        for (int tic = 0; tic < tics; ++tic)
            Click("cmdStep");
        return shown;
    };
    using States = std::vector<std::int32_t>;
    window->selectSingleState(1200, noRecord, noRecord);
    auto& jumps = Find<QToolButton>(*window, "cmdJumps");
    EXPECT_FALSE(jumps.isHidden());
    EXPECT_EQ(play(4), (States{1200, 1201, 1200, 1201}));
    dice = 99;
    EXPECT_EQ(play(3), (States{1200, 1202, 1202}));
    EXPECT_EQ(Text("lblTic"), "Jumped, tic 1");

    const auto choices = [&](const char* menu) {
        emit jumps.menu()->aboutToShow();
        return jumps.menu()->findChild<QMenu*>(QString::fromLatin1(menu))->actions();
    };
    const auto choose = [&](const char* name, const char* menu = "jump1201") {
        const QList<QAction*> all = choices(menu);
        const auto place = std::ranges::find(all, QString::fromLatin1(name), &QAction::objectName) - all.begin();
        QString text = all[place]->text();
        all[place]->trigger();
        EXPECT_TRUE(choices(menu)[place]->isChecked()) << name;
        return text;
    };
    EXPECT_EQ(choose("goOn"), "Go on");
    EXPECT_EQ(play(4), (States{1200, 1201, 1200, 1201}));
    dice = 255;
    EXPECT_EQ(choose("jump"), "Jump to 1202 (" + StateLabelText(set, 1202) + ")");
    EXPECT_EQ(play(3), (States{1200, 1202, 1202}));
    EXPECT_EQ(choose("byChance"), "By chance (100 of 256)");
    EXPECT_EQ(play(4), (States{1200, 1201, 1200, 1201}));

    window->selectSingleState(1202, noRecord, noRecord);
    EXPECT_TRUE(jumps.isHidden());
    put(1202, 1202, "Look", 0, 0);
    set.things[imp].firstMovingState = 1200;
    window->Refresh();
    EXPECT_EQ(play(2), (States{1202, 1202})) << "nobody is seen";
    EXPECT_TRUE(choices("jump1202").first()->isChecked());
    EXPECT_EQ(choose("engine1200", "jump1202"), "Jump to 1200 (" + StateLabelText(set, 1200) + "): a target is found");
    EXPECT_EQ(play(3), (States{1200, 1201, 1200}));

    auto& speed = Find<QComboBox>(*window, "cmbSpeed");
    for (const auto& [place, times] : {std::pair(0, 0.25), {2, 1.0}, {4, 4.0}}) {
        Click("cmdStop");
        shown.clear();
        speed.setCurrentIndex(place);
        QElapsedTimer clock;
        clock.start();
        Click("cmdPlay");
        QTRY_VERIFY(shown.size() > 4);
        const double most = static_cast<double>(clock.elapsed()) / 1000 * StatePlayer::ticsPerSecond * times;
        EXPECT_LE(static_cast<double>(shown.size()), most + 1) << times;
    }
}

TEST_F(frmEditStatesTest, PlaysAndEditsStatesThatThePatchMade) {
    constexpr std::int32_t far = 2147483646;
    edits.MakeRecord(RecordKind::State, far);
    edits.MakeRecord(RecordKind::Thing, 1'999'999'999);
    edits.Store({RecordKind::Thing, 1'999'999'999, RowOf(&ThingRecord::deathState)}, far);
    window->selectSingleState(far, 1'999'999'999, noRecord);
    EXPECT_EQ(Listed(), (std::vector<std::int32_t>{0, far}));
    Type(Box("txtDuration"), "1");
    EXPECT_EQ(State(far).duration, 1);
    edits.StoreGroup({{{RecordKind::State, far, RowOf(&StateRecord::nextState)}, 123456}}, "to where no state is");
    EXPECT_EQ(Text("lblNextState"), "-");
    Click("cmdPlay");
    window->findChild<StatePlayer*>()->Advance();
    EXPECT_EQ(Text("lblTic"), "Ended: leads to no state");
    UndoAll();
    EXPECT_EQ(Listed().back(), static_cast<int>(Defaults().states.size()) - 1);
}

} // namespace

} // namespace plinket3::test

#include "tests/ui/MainWindowTest.h"

#include "patch/modTables.h"
#include "ui/LatinText.h"
#include "ui/WindowMenu.h"
#include "ui/fields/SpriteView.h"

#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QToolButton>
#include <QTreeView>
#include <QTreeWidget>

namespace plinket3::test {
namespace {

TEST_F(MainWindowTest, WithoutASessionOnlyWhatNeedsNoneCanBeChosen) {
    QStringList enabled;
    for (const auto* action : window->findChildren<QAction*>())
        if (!action->objectName().isEmpty() && !action->objectName().startsWith("_q_") && // the toolkit's own
            action->isVisible() && action->isEnabled() && action->menu() == nullptr)
            enabled << action->objectName();
    enabled.sort();
    EXPECT_EQ(
        enabled.join(' ').toStdString(),
        "FileExit FileNew FileOpen FileRecovered HelpAbout HelpManual HelpWebsite ViewComparison ViewGamePictures "
        "ViewOptions ViewOtherLines ViewProblems ViewThumbnails");
}

TEST_F(MainWindowTest, CaptionStatusAndParEditorFollowTheMode) {
    NewPatch("MBF");
    EXPECT_EQ(Caption(), "Plinket3 - [" + (folder / "documents/unnamed.bex").string() + "] - Extended mode");
    EXPECT_TRUE(Action("ViewParEditor").isEnabled());
    EXPECT_EQ(Find<QLabel>("lblIWAD").text(), "freedoom2.wad");
    EXPECT_EQ(Find<QLabel>("lblMode").text(), "Extended mode");
    Action("ViewParEditor").trigger();
    EXPECT_TRUE(window->Editors().IsShown(parEditor));

    NewPatch("Doom and Doom II");
    EXPECT_EQ(Caption(), "Plinket3 - [" + (folder / "documents/unnamed.deh").string() + "] - Normal mode");
    EXPECT_FALSE(Action("ViewParEditor").isEnabled());
    EXPECT_FALSE(window->Editors().IsShown(parEditor)) << "a normal patch has no par times";
    EXPECT_TRUE(Action("ViewThingEditor").isEnabled());
}

TEST_F(MainWindowTest, NoWayLeadsBackIntoThePatchThatWasOpenBefore) {
    NewPatch("MBF");
    for (const std::int32_t thing : {1, 2})
        window->Editors().ShowRecord(RecordKind::Thing, thing);
    EXPECT_TRUE(Action("ViewBack").isEnabled());
    NewPatch("MBF");
    EXPECT_FALSE(Action("ViewBack").isEnabled());
}

TEST_F(MainWindowTest, AnEditorsCommandRaisesItFromBehindAnotherAndHidesItInFront) {
    NewPatch("MBF");
    const auto choose = [this](std::size_t editor) {
        Action(editorEntries[editor].command).trigger();
        std::string shown;
        for (const std::size_t other : {0U, 1U, 2U})
            if (window->Editors().IsShown(other))
                shown += std::string(shown.empty() ? "" : " ") + editorEntries[other].button;
        const auto front = window->Editors().Front();
        EXPECT_TRUE(!front || window->Editors().Frame(*front)->isAncestorOf(window->focusWidget()))
            << "what is in front has the keys";
        return shown + ": " + (front ? editorEntries[*front].button : "none");
    };
    EXPECT_EQ(choose(1), "Things States: States");
    EXPECT_EQ(choose(0), "Things States: Things");
    EXPECT_TRUE(Action("ViewThingEditor").isChecked());
    EXPECT_EQ(choose(2), "Things States Sounds: Sounds");
    EXPECT_EQ(choose(2), "Things States: Things") << "another one is active when one goes";
    window->Editors().Frame(0)->close();
    EXPECT_EQ(choose(1), ": none");
    EXPECT_EQ(choose(0), "Things: Things");
}

TEST_F(MainWindowTest, UndoingARenameTakesItOutOfTheStateEditorsListAgain) {
    NewPatch("MBF");
    Action("ViewStateEditor").trigger();
    Action("ViewThingEditor").trigger();
    const auto entry = [this] { return Find<QComboBox>("cmbFilterThings").itemText(1).toStdString(); };
    const std::string before = entry();
    dialogs.Expect("Thing 1", "Goat");
    QTest::mouseClick(&test::Find<QPushButton>(*window->Editors().Frame(0), "cmdRename"), Qt::LeftButton);
    EXPECT_EQ(entry(), "Goat") << "the entry of the thing after it";
    edits->Undo();
    EXPECT_EQ(entry(), before);
    edits->Redo();
    EXPECT_EQ(entry(), "Goat");
    edits->RestoreRecords(RecordKind::Thing, {0}, "things");
    EXPECT_EQ(entry(), "Goat") << "restoring leaves the list alone";
}

TEST_F(MainWindowTest, RecoveredWorkIsListedOpenedAndDeleted) {
    WriteFile(program.settingsFolder / "recovery-3.dat.kept", "nonsense");
    NewPatch("MBF");
    edits->Store({RecordKind::Thing, 11, RowOf(&ThingRecord::hitPoints)}, 7);
    const std::string lost = program.patch.fileName.string();
    window->Commands().KeepRecovery();
    Restart(); // as after a crash
    QStringList kept;
    const auto act = [&kept](const char* button, int row) {
        return [&kept, button, row](QDialog& dialog) {
            auto& list = test::Find<QTreeWidget>(dialog, "lvwKept");
            kept.clear();
            for (int at = 0; at < list.topLevelItemCount(); ++at)
                kept << list.topLevelItem(at)->text(1);
            list.setCurrentItem(list.topLevelItem(row));
            auto& open = test::Find<QPushButton>(dialog, "cmdOpen");
            EXPECT_EQ(open.isEnabled(), list.topLevelItem(row)->text(1) != "(damaged)");
            QTest::mouseClick(&test::Find<QPushButton>(dialog, button), Qt::LeftButton);
            if (dialog.isVisible())
                dialog.reject();
        };
    };
    notifier.Expect("Are you sure you want to delete this unsaved work? It cannot be brought back.", Answer::Yes,
                    Buttons::NoYes);
    {
        const ModalDriver driver("frmRecovered", act("cmdDelete", 1));
        Action("FileRecovered").trigger();
    }
    EXPECT_EQ(kept, QStringList({QString::fromStdString(lost), "(damaged)"}));
    {
        const ModalDriver driver("frmRecovered", act("cmdOpen", 0));
        Action("FileRecovered").trigger();
    }
    EXPECT_EQ(kept, QStringList(QString::fromStdString(lost)));
    ASSERT_TRUE(window->Commands().SessionOpen());
    EXPECT_EQ(program.patch.current.things[11].hitPoints, 7);
    EXPECT_TRUE(Action("FileSave").isEnabled());
}

TEST_F(MainWindowTest, EditorsOpenWithTheFocusWithEveryColumnInViewWithRoomForAllAndWithKeysOfTheirOwn) {
    NewPatch("MBF");
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitFor([this] { return QApplication::activeWindow() == window.get(); }));
    for (std::size_t editor = 0; editor < editorEntries.size(); ++editor) {
        const char* name = editorEntries[editor].window;
        window->Editors().Show(editor, true);
        QApplication::processEvents();
        const QWidget& shown = *window->Editors().Frame(editor)->widget();
        const QWidget* focus = QApplication::focusWidget();
        EXPECT_TRUE(focus != &shown && shown.isAncestorOf(focus)) << name;
        for (const auto* list : shown.findChildren<QTreeView*>())
            EXPECT_TRUE(QTest::qWaitFor([list] { return list->horizontalScrollBar()->maximum() == 0; }, 500)) << name;
        const QMdiSubWindow& frame = *window->Editors().Frame(editor);
        EXPECT_EQ(frame.size().expandedTo(frame.minimumSizeHint()), frame.size()) << name;
        QStringList texts;
        for (const QAction* menu : window->menuBar()->actions())
            texts << menu->text();
        for (const auto* label : shown.findChildren<QLabel*>())
            texts << label->text();
        for (const auto* button : shown.findChildren<QAbstractButton*>())
            texts << button->text();
        QStringList keys;
        for (const QString& text : texts)
            if (const QKeySequence key = QKeySequence::mnemonic(text); !key.isEmpty())
                keys << key.toString();
        EXPECT_EQ(keys.removeDuplicates(), 0) << name << ": " << texts.join('|').toStdString();
    }
}

TEST_F(MainWindowTest, PicturesAsInTheGameAreTakenAwayAndGivenBackAtOnce) {
    NewPatch("MBF");
    for (std::size_t editor = 0; editor < editorEntries.size(); ++editor)
        if (std::string_view(editorEntries[editor].window) == "frmEditThings")
            window->Editors().Show(editor, true);
    QApplication::processEvents();
    const auto* view = window->findChild<SpriteView*>("picThing");
    ASSERT_NE(view, nullptr);
    if (view->Picture().isNull())
        GTEST_SKIP() << "no IWAD with sprites is installed";
    EXPECT_TRUE(Action("ViewGamePictures").isChecked()) << "as shipped";
    for (const bool asInTheGame : {false, true}) {
        Action("ViewGamePictures").trigger();
        EXPECT_EQ(view->Picture().hasAlphaChannel(), asInTheGame);
        EXPECT_EQ(SpriteView::GamePictures(program.settings), asInTheGame);
    }
    EXPECT_TRUE(Action("ViewThumbnails").isChecked()) << "as shipped";
    const auto rowHeight = [this] {
        QApplication::processEvents();
        auto& list = Find<QTreeView>("lstThings");
        return list.visualRect(list.model()->index(0, 0)).height();
    };
    const int withPictures = rowHeight();
    Action("ViewThumbnails").trigger();
    EXPECT_LT(rowHeight(), withPictures);
    Action("ViewThumbnails").trigger();
    EXPECT_EQ(rowHeight(), withPictures);
}

TEST_F(MainWindowTest, F1OpensTheManualAtThePageOfTheEditorOrDialog) {
    const auto pageAfterF1 = [](QWidget& pressedIn) -> std::string {
        pressedIn.activateWindow();
        EXPECT_TRUE(QTest::qWaitFor([&pressedIn] { return QApplication::activeWindow() == &pressedIn; }));
        QTest::keyClick(&pressedIn, Qt::Key_F1);
        const auto manual = [] { return qobject_cast<frmManual*>(QApplication::activeWindow()); };
        return QTest::qWaitFor([&manual] { return manual() != nullptr; })
                   ? manual()->findChild<ManualPage*>()->Title().toStdString()
                   : "no manual";
    };
    EXPECT_EQ(pageAfterF1(*window), "Manual of Plinket3");
    const ModalDriver driver("frmNewFile", [&pageAfterF1](QDialog& dialog) {
        EXPECT_EQ(pageAfterF1(dialog), "Opening a patch");
        AcceptSession("MBF")(dialog);
    });
    Action("FileNew").trigger();
    for (std::size_t editor = 0; editor < editorEntries.size(); ++editor) {
        window->Editors().Show(editor, true);
        EXPECT_EQ(pageAfterF1(*window), editorEntries[editor].menuText);
        window->Editors().Show(editor, false);
    }
}

TEST_F(MainWindowTest, UndoAndRedoNameTheirStepAndArePatchsAlsoWhileATextFieldHasTheFocus) {
    NewPatch("Doom and Doom II");
    auto& hitPoints = Find<QLineEdit>("txtHitPoints");
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    Type(hitPoints, "7");
    EXPECT_EQ(program.patch.current.things[0].hitPoints, 7);
    EXPECT_EQ(Action("EditUndo").text(), "&Undo hit points of Player");
    EXPECT_TRUE(Action("FileSave").isEnabled());
    QTest::keyClick(&hitPoints, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(program.patch.current, program.patch.defaults);
    EXPECT_EQ(hitPoints.text(), "100");
    EXPECT_EQ(Action("EditRedo").text(), "&Redo hit points of Player");
    EXPECT_EQ(Action("EditRedo").shortcuts(), QList({QKeySequence("Ctrl+Shift+Z"), QKeySequence("Ctrl+Y")}));
    EXPECT_FALSE(Action("FileSave").isEnabled());
    QTest::keyClick(&hitPoints, Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(hitPoints.text(), "7");
}

TEST_F(MainWindowTest, APatchIsTakenOverToAnotherEngine) {
    const std::string patch = "# mine\nDoom version = 21\n\nThing 12 (Imp)\nHit points = 70\nMBF21 Bits = BOSS\n";
    Open("mine.deh", patch, "MBF21 ports (Doom version 21)");
    edits->Store({RecordKind::Thing, 11, RowOf(&ThingRecord::mass)}, 50);
    const auto choose = [](const char* engine, const QStringList& lost, const char* button) {
        return [engine, lost, button](QDialog& dialog) {
            auto& engines = *dialog.findChild<QComboBox*>("cmbEngines");
            EXPECT_EQ(engines.findText("MBF21 ports (Doom version 21)"), -1);
            engines.setCurrentText(engine);
            const auto& list = *dialog.findChild<QListWidget*>("lstLost");
            EXPECT_EQ(Rows(list), lost) << Rows(list).join('\n').toStdString();
            EXPECT_EQ(list.isVisible(), !lost.empty());
            QTest::mouseClick(dialog.findChild<QPushButton*>(button), Qt::LeftButton);
        };
    };
    {
        const ModalDriver driver("frmChangeEngine", choose("MBF 2.03 (Doom version 21)",
                                                           {"Thing 12 (Imp): MBF21 Bits 0 -> BOSS"}, "cmdCancel"));
        Action("FileEngine").trigger();
    }
    EXPECT_EQ(program.engine.fileName, "mbf21.cfg");
    EXPECT_TRUE(edits->CanUndo());
    {
        const ModalDriver driver("frmChangeEngine", choose("DSDHacked ports (Doom version 2021)", {}, "cmdAccept"));
        Action("FileEngine").trigger();
    }
    EXPECT_EQ(program.engine.fileName, "dsdhacked.cfg");
    EXPECT_FALSE(edits->CanUndo());
    Action("FileSave").trigger();
    EXPECT_EQ(ReadFile(folder / "mine.deh"),
              "# mine\nDoom version = 2021\n\nThing 12 (Imp)\nHit points = 70\nMBF21 Bits = BOSS\nMass = 50\n");
}

TEST_F(MainWindowTest, APatchWithCommentsIsEditedByEngineRules) {
    const std::string patch = "# by me\n\nThing 12 (Imp)\nHit points = 70\nBlood color = 3\n\nSound 3\nValue = 9\n";
    Open("mine.deh", patch, [](QDialog& dialog) {
        EXPECT_EQ(dialog.findChild<QComboBox*>("cmbRules")->currentText(),
                  "Engine rules, every line is kept (recommended)");
        const QString reason = dialog.findChild<QLabel*>("lblRulesReason")->text();
        EXPECT_TRUE(reason.startsWith("The kept rules refuse it")) << reason.toStdString();
        AcceptSession("Boom 2.02 (Doom version 19)")(dialog);
    });
    EXPECT_EQ(Find<QToolButton>("cmdRules").text(), "Engine rules");

    auto& things = Find<QTreeView>("lstThings");
    things.setCurrentIndex(things.model()->index(11, 0));
    auto& notes = *things.window()->findChild<QPlainTextEdit*>("txtNotes");
    EXPECT_TRUE(notes.isVisible());
    QTest::keyClicks(&notes, "too tough");
    EXPECT_EQ(Action("EditUndo").text(), "&Undo note of Imp");
    {
        const ModalDriver driver("frmPatchNotes", [](QDialog& dialog) {
            auto& text = *dialog.findChild<QPlainTextEdit*>("txtPatchNotes");
            EXPECT_EQ(text.toPlainText(), "by me");
            QTest::keyClicks(&text, "not ");
            QTest::mouseClick(dialog.findChild<QPushButton*>("cmdAccept"), Qt::LeftButton);
        });
        Action("FilePatchNotes").trigger();
    }
    EXPECT_EQ(Action("EditUndo").text(), "&Undo patch notes");
    Action("FileSave").trigger();
    EXPECT_EQ(ReadFile(folder / "mine.deh"), "# not by me\n\n# too tough" + patch.substr(patch.find("\nThing")));

    Action("ViewOtherLines").trigger();
    const QAbstractItemModel& others = *Find<QTreeView>("lvwOtherLines").model();
    ASSERT_EQ(others.rowCount(), 1);
    EXPECT_EQ(others.index(0, 0).data().toInt(), 6) << "as the saved file counts";
    EXPECT_EQ(others.index(0, 2).data().toString(), "Blood color = 3");
}

TEST_F(MainWindowTest, ABarTellsWhatGamesReadOtherwiseAfterASaveByTheKeptRules) {
    NewPatch("Boom 2.02 (Doom version 19)");
    edits->Store({RecordKind::Sound, 3, RowOf(&SoundRecord::value)}, 9);
    dialogs.Expect("Save patch file", (folder / "mine.bex").string());
    Action("FileSaveAs").trigger();
    auto& bar = Find<QFrame>("rulesBar");
    EXPECT_TRUE(bar.isVisible());
    EXPECT_TRUE(Find<QLabel>("lblRulesBar").text().contains("Sound 3"))
        << Find<QLabel>("lblRulesBar").text().toStdString();
    QTest::mouseClick(&Find<QPushButton>("cmdEngineRules"), Qt::LeftButton);
    EXPECT_FALSE(bar.isVisible());
    auto& rules = Find<QToolButton>("cmdRules");
    EXPECT_EQ(rules.text(), "Engine rules");
    Action("FileSave").trigger();
    EXPECT_FALSE(bar.isVisible());
    rules.click();
    EXPECT_EQ(rules.text(), "Kept rules");
}

TEST_F(MainWindowTest, DroppedPatchIsOpened) {
    const std::filesystem::path file = folder / "mine.deh";
    WriteFile(file, std::string(head) + "Thing 12\nSpeed = 5\n");
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(file.string()))});
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(window.get(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    const ModalDriver driver("frmNewFile", AcceptSession("Doom and Doom II"));
    QApplication::sendEvent(window.get(), &drop);
    EXPECT_TRUE(QTest::qWaitFor([this] { return window->Commands().SessionOpen(); }));
    EXPECT_EQ(program.patch.current.things[11].speed, 5);
}

TEST_F(MainWindowTest, StartupDialogListsRecentPatchesAndOpensThem) {
    const std::filesystem::path gone = folder / "new.deh", other = folder / "a&b.deh";
    for (const std::filesystem::path& path : {other, gone})
        program.settings.AddRecentFile(PathText(path));
    window->UpdateRecentList();
    EXPECT_EQ(Action("Recent0").text(), "&1 " + ShownPath(gone));
    EXPECT_EQ(Action("Recent1").text(), "&2 " + ShownPath(other).replace("&", "&&")) << "the menu shows one &";
    EXPECT_FALSE(Action("Recent2").isVisible());
    window->ShowStartup();
    auto& startup = Find<frmStartup>("frmStartup");
    auto& recent = *startup.findChild<QListWidget*>("lstRecent");
    ASSERT_EQ(recent.count(), 2);
    EXPECT_EQ(recent.item(0)->text(), ShownPath(gone));
    notifier.Expect(MessageKind::Exclamation, "Could not open " + PathText(gone) + ": " + WhyNotRead(gone));
    recent.setFocus();
    QTest::keyClick(&recent, Qt::Key_Return);
    EXPECT_TRUE(startup.isHidden());
    window->ShowStartup();
    QTest::mouseClick(startup.findChild<QPushButton*>("cmdCancel"), Qt::LeftButton);
    EXPECT_TRUE(startup.isHidden());
    window->ShowStartup();
    const ModalDriver driver("frmNewFile", AcceptSession("MBF"));
    QTest::mouseClick(startup.findChild<QPushButton*>("cmdNew"), Qt::LeftButton);
    EXPECT_TRUE(window->Commands().SessionOpen());
}

TEST_F(MainWindowTest, ClosingAsksAndPlacesComeBack) {
    NewPatch("MBF");
    Action("ViewSoundEditor").trigger();
    window->Editors().Frame(2)->setGeometry(40, 0, 510, 333);
    const QRect place = window->Editors().Frame(2)->geometry();
    Action("ViewAmmoEditor").trigger();
    const QRect normal = window->Editors().Frame(5)->geometry();
    window->Editors().Frame(5)->showMaximized();
    edits->Store({RecordKind::Thing, 11, RowOf(&ThingRecord::hitPoints)}, 7);
    const std::string question =
        "The file " + program.patch.fileName.string() + " has been changed. Do you want to save it?";
    bool closing = false;
    QObject::connect(window.get(), &frmMain::Closing, [&closing] { closing = true; });
    notifier.Expect(question, Answer::Cancel);
    EXPECT_FALSE(window->close());
    EXPECT_FALSE(closing);
    notifier.Expect(question, Answer::No);
    EXPECT_TRUE(window->close());
    EXPECT_TRUE(closing);

    Restart();
    NewPatch("MBF");
    EXPECT_TRUE(window->Editors().IsShown(2));
    EXPECT_TRUE(window->Editors().Frame(5)->isMaximized());
    window->Editors().Frame(5)->showNormal();
    EXPECT_EQ(window->Editors().Frame(5)->geometry(), normal);
    EXPECT_EQ(window->Editors().Frame(2)->geometry(), place);
}

TEST_F(MainWindowTest, TheMenuWindowArrangesTheEditorsAndGoesFromOneToTheNext) {
    EXPECT_FALSE(Action("WindowTile").isEnabled());
    NewPatch("MBF");
    EditorSet& editors = window->Editors();
    for (const std::size_t editor : {1U, 2U})
        editors.Show(editor, true);
    const auto listed = [this] {
        auto& menu = Find<WindowMenu>("mnuWindow");
        emit menu.aboutToShow();
        std::string text;
        for (const QAction* entry : menu.actions())
            if (entry->isCheckable())
                text += (entry->isChecked() ? "[x] " : "[ ] ") + entry->text().toStdString() + "; ";
        return text;
    };
    EXPECT_EQ(listed(), "[ ] &1 Thing editor; [ ] &2 State editor; [x] &3 Sound editor; ");
    const auto overlap = [&editors] { return editors.Frame(0)->geometry().intersects(editors.Frame(1)->geometry()); };
    Action("WindowTile").trigger();
    EXPECT_FALSE(overlap());
    Action("WindowCascade").trigger();
    EXPECT_TRUE(overlap());
    Find<QAction>("WindowfrmEditThings").trigger();
    EXPECT_EQ(editors.Front(), 0U);

    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitFor([this] { return QApplication::activeWindow() == window.get(); }));
    const auto press = [](Qt::Key key, Qt::KeyboardModifiers modifiers) {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    };
    press(Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(editors.Front(), 1U);
    press(Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(editors.Front(), 0U);
    press(Qt::Key_W, Qt::ControlModifier);
    EXPECT_FALSE(editors.IsShown(0));
    EXPECT_EQ(listed(), "[x] &1 State editor; [ ] &2 Sound editor; ");
    Action("WindowCloseAll").trigger();
    EXPECT_EQ(listed(), "");
    EXPECT_FALSE(Action("WindowNext").isEnabled());
}

TEST_F(MainWindowTest, PlacesOutsideTheScreenComeBackIntoIt) {
    const QRect screen = window->screen()->availableGeometry();
    EXPECT_TRUE(screen.contains(window->frameGeometry())) << "at the first start";
    NewPatch("MBF");
    Action("ViewSoundEditor").trigger();
    Action("ViewProblems").trigger();
    Find<QTreeView>("lvwProblems").header()->resizeSection(1, 123);
    window->Editors().Frame(2)->setGeometry(-4000, -900, 400, 300);
    window->setGeometry(9000, 7000, 5000, 4000);
    EXPECT_TRUE(window->close());
    Restart();
    NewPatch("MBF");
    const QRect place = window->frameGeometry();
    EXPECT_TRUE(screen.contains(place)) << place.x() << " " << place.y() << " " << place.width() << " "
                                        << place.height();
    EXPECT_TRUE(
        window->Editors().Frame(2)->parentWidget()->rect().contains(window->Editors().Frame(2)->geometry().topLeft()));
    EXPECT_EQ(Find<QTreeView>("lvwProblems").header()->sectionSize(1), 123);
}

} // namespace
} // namespace plinket3::test

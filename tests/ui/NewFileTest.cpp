#include "tests/ui/MainWindowTest.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QStatusBar>

namespace plinket3::test {
namespace {

/// The dialog of a new patch or one that is opened, in which its session is chosen.
class NewFileTest : public MainWindowTest {};

TEST_F(NewFileTest, RecommendsWhatThePatchNamesOrHolds) {
    program.settings.AddIwad("Doom II", "/elsewhere/doom2.wad");
    const struct {
        const char *file, *lines, *engine, *reason, *iwad;
        QStringList dataWads;
    } rows[]{{"mine.bex",
              "Engine config = mbf19.cfg\nIWAD = FREEDOOM\nData WAD = \"/x/data.wad\" \"/y.wad\"\n",
              "MBF 2.03 (Doom version 19) (recommended)",
              "Proposed: the patch names it.",
              "Freedoom (recommended)",
              {"/x/data.wad", "/y.wad"}},
             {"mine.deh",
              "Text 4 4\nTROOABCD\n",
              "Doom and Doom II 1.9",
              "Proposed: it has a use for the most lines of the patch.",
              "Freedoom",
              {}},
             {"new.deh",
              "Thing 1\nMelee range = 9\n",
              "MBF21 ports (Doom version 21)",
              "Proposed: it sets Melee range.",
              "Freedoom",
              {}}};
    for (const auto& row : rows) {
        Open(row.file, std::string(head) + row.lines, [&row](QDialog& dialog) {
            EXPECT_EQ(dialog.windowTitle(), QString("File settings of %1").arg(row.file));
            auto& engines = *dialog.findChild<QComboBox*>("cmbEngines");
            auto& reason = *dialog.findChild<QLabel*>("lblEngineReason");
            EXPECT_EQ(engines.currentText(), row.engine);
            EXPECT_EQ(reason.text(), row.reason);
            QTest::keyClick(&engines, engines.currentIndex() == 0 ? Qt::Key_Down : Qt::Key_Up);
            EXPECT_FALSE(reason.isVisible()) << "another engine was chosen";
            EXPECT_EQ(dialog.findChild<QComboBox*>("cmbIWADs")->currentText(), row.iwad);
            EXPECT_EQ(Rows(*dialog.findChild<QListWidget*>("lstDataWADs")), row.dataWads);
            QTest::mouseClick(dialog.findChild<QPushButton*>("cmdCancel"), Qt::LeftButton);
        });
    }
    EXPECT_EQ(Caption(), "Plinket3");
}

TEST_F(NewFileTest, ListsDataWadsInTheOrderInWhichTheyAreLoaded) {
    const ModalDriver driver("frmNewFile", [this](QDialog& dialog) {
        auto& files = *dialog.findChild<QListWidget*>("lstDataWADs");
        const auto press = [&dialog](const char* button) {
            QTest::mouseClick(dialog.findChild<QPushButton*>(button), Qt::LeftButton);
        };
        dialogs.Expect("Select WAD files", "/a.wad|/b.wad|/c.wad");
        press("cmdAddDataWAD");
        EXPECT_FALSE(dialog.findChild<QPushButton*>("cmdDownDataWAD")->isEnabled());
        press("cmdUpDataWAD");
        EXPECT_EQ(Rows(files), QStringList({"/a.wad", "/c.wad", "/b.wad"}));
        files.setFocus();
        EXPECT_TRUE(QTest::qWaitFor([&] { return QApplication::focusWidget() == &files && dialog.isActiveWindow(); }));
        QTest::keyClick(&files, Qt::Key_Up, Qt::AltModifier);
        EXPECT_FALSE(dialog.findChild<QPushButton*>("cmdUpDataWAD")->isEnabled());
        QTest::keyClick(&files, Qt::Key_Down);
        QTest::keyClick(&files, Qt::Key_Delete);
        EXPECT_EQ(Rows(files), QStringList({"/c.wad", "/b.wad"}));
        dialogs.Expect("Select WAD files", "/c.wad|/d.wad");
        press("cmdAddDataWAD");
        QTest::keyClick(&files, Qt::Key_F2);
        QTest::keyClicks(files.findChild<QLineEdit*>(), "/e.wad");
        QTest::keyClick(files.findChild<QLineEdit*>(), Qt::Key_Return);
        QApplication::processEvents(); // the path goes into its row later
        EXPECT_EQ(Rows(files), QStringList({"/c.wad", "/b.wad", "/e.wad"}));
        press("cmdAccept");
    });
    program.settings.Number("patchRules", static_cast<int>(RulesSetting::Engine));
    window->Commands().createNewFile();
    EXPECT_EQ(program.patch.dataWadPaths, (std::vector<std::string>{"/c.wad", "/b.wad", "/e.wad"}));
}

TEST_F(NewFileTest, StaysOpenForAnEngineOfAnotherVersion) {
    notifier.Expect(MessageKind::Exclamation,
                    "The patch file is not compatible with the selected engine configuration.");
    Open("mine.deh", "Patch File for DeHackEd v3.0\nDoom version = 21\nPatch format = 6\n", [](QDialog& dialog) {
        EXPECT_TRUE(dialog.findChild<QComboBox*>("cmbEngines")->currentText().startsWith("Ultimate"))
            << "the engine used last is of another version";
        AcceptSession("Doom and Doom II")(dialog);
        EXPECT_TRUE(dialog.isVisible());
        AcceptSession("Ultimate")(dialog);
    });
    EXPECT_EQ(Find<QLabel>("lblMode").text(), "Normal mode");
    EXPECT_EQ(program.engine.fileName, "ultimate.cfg");
}

TEST_F(NewFileTest, TellsWhatTheIwadIs) {
    WriteFile(folder / "text.wad", "no WAD");
    program.settings.AddIwad("Text", (folder / "text.wad").string());
    const ModalDriver driver("frmNewFile", [](QDialog& dialog) {
        auto& iwads = *dialog.findChild<QComboBox*>("cmbIWADs");
        const auto& facts = *dialog.findChild<QLabel*>("lblIwadFacts");
        QTest::keyClick(&iwads, Qt::Key_Home);
        EXPECT_TRUE(facts.text().endsWith(" MB, MAP01-MAP32")) << facts.text().toStdString();
        QTest::keyClick(&iwads, Qt::Key_End);
        EXPECT_EQ(facts.text(), "The file is no WAD.");
        dialog.reject();
    });
    Action("FileNew").trigger();
}

TEST_F(NewFileTest, GoesBeforeLoadingSaysWhichWadsAreGone) {
    const std::string patch = std::string(head) + "Data WAD = /x/data.wad\n";
    Open("mine.bex", patch, "Boom");
    EXPECT_EQ(Find<QLabel>("lblIWAD").text(), "freedoom2.wad, without data.wad");
    EXPECT_TRUE(Find<QLabel>("lblIWAD").toolTip().endsWith("The data WAD /x/data.wad could not be opened."));

    program.settings.RemoveIwad(0);
    program.settings.AddIwad("Doom II", "/elsewhere/doom2.wad");
    notifier.Expect(MessageKind::Exclamation, "Could not load PLAYPAL lump.");
    Open("mine.bex", patch, "Boom");
    EXPECT_EQ(notifier.over, "") << "the dialog goes before loading begins";
    EXPECT_EQ(Find<QStatusBar>("").currentMessage(), "The IWAD /elsewhere/doom2.wad does not exist");
}

} // namespace
} // namespace plinket3::test

#include "patch/EngineNames.h"
#include "tests/ui/ModalDriver.h"
#include "tests/ui/UiTest.h"
#include "ui/editors/frmEditMusic.h"
#include "ui/editors/frmEditSounds.h"
#include "ui/editors/frmEditSprites.h"
#include "ui/editors/frmEditStates.h"
#include "ui/editors/frmEditThings.h"
#include "ui/editors/frmPropSound.h"

#include <QLabel>
#include <QPushButton>
#include <QTimer>

#include <map>

namespace plinket3::test {

namespace {

/// The lists in which records are made and removed.
class NewRecordsTest : public EditorTest {
protected:
    void OpenAll(const char* engine) {
        LoadEngine(engine);
        windows = {{RecordKind::Thing, &Open<frmEditThings>(), "lstThings"},
                   {RecordKind::State, &Open<frmEditStates>(), "lvwStates"},
                   {RecordKind::Sound, &Open<frmEditSounds>(), "lvwSounds"},
                   {RecordKind::Sprite, &Open<frmEditSprites>(), "lvwSprites"}};
        for (const Shown& shown : windows)
            shown.window->resize(1100, 900);
    }
    struct Shown {
        RecordKind kind;
        EditorWindow* window;
        const char* listName;
        QAbstractItemView& List() const { return *window->findChild<QAbstractItemView*>(listName); }
        QPushButton& Button(const char* name) const { return Find<QPushButton>(*window, name); }
        void Press(Qt::Key key) const {
            window->activateWindow();
            ASSERT_TRUE(QTest::qWaitForWindowActive(window));
            List().setFocus();
            QTest::keyClick(&List(), key);
        }
    };
    std::vector<Shown> windows;
};

void ClickOk(QDialog& dialog) { QTest::mouseClick(&Find<QPushButton>(dialog, "cmdAccept"), Qt::LeftButton); }

TEST_F(NewRecordsTest, RecordsAreMadeAndRemovedInTheirListsAsOneStepEach) {
    OpenAll("dsdhacked");
    const std::string reserved = " belongs to agreements between engines: patches change what has it, but make "
                                 "nothing new of it.";
    const struct {
        const char* proposed;
        const char* taken;
        std::string name, why;
        const char* lumpName = nullptr;
    } cases[]{{"251", "12", "thing", "There is a thing 12 already."},
              {"4000", "4", "frame", "There is a frame 4 already."},
              {"700", "3", "sound", "There is a sound 3 already.", "growl"},
              {"245", "5", "sprite", "There is a sprite 5 already.", "news"}};
    for (std::size_t i = 0; i < windows.size(); ++i) {
        const Shown& shown = windows[i];
        const auto& row = cases[i];
        SCOPED_TRACE(row.name);
        QAbstractItemView& list = shown.List();
        const int before = list.model()->rowCount();
        const std::int32_t first = row.name == "thing" ? 1 : 0;
        ClickRow(list, 2);
        EXPECT_FALSE(shown.Button("cmdRemove").isEnabled());
        EXPECT_TRUE(shown.Button("cmdRemove").toolTip().startsWith("Only what the patch made")) << "the engine's own";
        shown.Press(Qt::Key_Delete);
        EXPECT_FALSE(edits.CanUndo());

        const auto make = [&](const char* number, const std::function<void(QDialog&)>& look) {
            const ModalDriver driver("frmNewRecord", [&](QDialog& dialog) {
                look(dialog);
                if (number != nullptr)
                    Type(Find<QLineEdit>(dialog, "txtNumber"), number);
                if (auto* name = dialog.findChild<QLineEdit*>("txtName"))
                    Type(*name, row.lumpName);
                ClickOk(dialog);
                if (dialog.isVisible())
                    dialog.reject();
            });
            shown.Press(Qt::Key_Insert);
        };
        make("200000", [&](QDialog& dialog) {
            auto& number = Find<QLineEdit>(dialog, "txtNumber");
            EXPECT_EQ(number.text(), row.proposed);
            for (const auto& [typed, why] :
                 std::map<std::string, std::string>{{row.taken, row.why},
                                                    {"-5", "The number of " + row.name + " -5" + reserved},
                                                    {"x", "A whole number stands here, up to 2147483647."},
                                                    {"2147483648", "Numbers go up to 2147483647."}}) {
                Type(number, typed.c_str());
                EXPECT_EQ(Find<QLabel>(dialog, "lblNote").text().toStdString(), why);
                EXPECT_FALSE(Find<QPushButton>(dialog, "cmdAccept").isEnabled());
            }
        });
        EXPECT_TRUE(edits.IsMade(shown.kind, 200000 - first));
        EXPECT_EQ(edits.UndoName(), "new " + row.name + " 200000");
        EXPECT_EQ(list.model()->rowCount(), before + 1);
        EXPECT_TRUE(list.selectionModel()->isRowSelected(before)) << "it is the selected one";
        make(nullptr, [](QDialog&) {});
        ASSERT_EQ(list.model()->rowCount(), before + 2);
        EXPECT_TRUE(shown.Button("cmdRemove").isEnabled());

        EXPECT_EQ(Current().SoundName(200000), row.name == "sound" ? "growl" : "");
        EXPECT_EQ(Current().SpriteName(200000), row.name == "sprite" ? "NEWS" : "");

        const PatchSet made = Current();
        ClickRow(list, before + 1);
        ClickRow(list, before, Qt::LeftButton, Qt::ControlModifier);
        shown.Press(Qt::Key_Delete);
        EXPECT_EQ(Current(), Defaults());
        EXPECT_EQ(list.model()->rowCount(), before);
        edits.Undo();
        EXPECT_EQ(Current(), made) << "both in one step";
        while (edits.CanUndo())
            edits.Undo();
    }
}

TEST_F(NewRecordsTest, AThingThatIsMadeIsShownWhateverTheFilter) {
    OpenAll("dsdhacked");
    const Shown& things = windows.front();
    Type(Find<QLineEdit>(*things.window, "txtFilter"), "imp");
    const ModalDriver driver("frmNewRecord", &ClickOk);
    QTest::mouseClick(&things.Button("cmdNew"), Qt::LeftButton);
    const QModelIndex current = things.List().currentIndex();
    EXPECT_TRUE(current.data().toString().endsWith("thing 251")) << current.data().toString().toStdString();
    QTest::mouseClick(&things.Button("cmdRemove"), Qt::LeftButton);
    EXPECT_EQ(links.calls.back(), "status Removed thing 251");
    EXPECT_EQ(Current(), Defaults());
}

TEST_F(NewRecordsTest, EnginesWithLimitsHaveNeitherButtonsNorKeys) {
    OpenAll("mbf21");
    for (const Shown& shown : windows) {
        ClickRow(shown.List(), 2);
        EXPECT_FALSE(shown.Button("cmdNew").isVisible());
        EXPECT_FALSE(shown.Button("cmdRemove").isVisible());
        shown.Press(Qt::Key_Insert); // a dialog would wait for an answer
        EXPECT_FALSE(edits.CanUndo());
    }
}

class RenamedSprites : public NewRecordsTest, public testing::WithParamInterface<const char*> {};
INSTANTIATE_TEST_SUITE_P(Engines, RenamedSprites, testing::Values("dsdhacked", "mbf21"));

TEST_P(RenamedSprites, AreShownEverywhereAtOnce) {
    constexpr int imp = 11, standing = 442, troo = 0;
    OpenAll(GetParam());
    const Shown &things = windows[0], &states = windows[1], &sprites = windows[3];
    static_cast<frmEditThings*>(things.window)->ShowCell({RecordKind::Thing, imp, existsField});
    static_cast<frmEditStates*>(states.window)->selectSingleState(standing, -1, -1);
    const auto shown = [&](int column) { return sprites.List().model()->index(0, column).data().toString(); };
    EXPECT_EQ(Find<QLabel>(*states.window, "lblSpriteName").text(), "TROO");
    const QString lumps = shown(3);
    const int sarg = *IndexByName(Defaults().sprites, "SARG");
    const QString others = sprites.List().model()->index(sarg, 3).data().toString();

    ClickRow(sprites.List(), troo);
    {
        const ModalDriver driver("frmNewRecord", [&](QDialog& dialog) {
            EXPECT_EQ(dialog.windowTitle(), "Name of sprite TROO");
            EXPECT_FALSE(Find<QLineEdit>(dialog, "txtNumber").isVisible());
            auto& name = Find<QLineEdit>(dialog, "txtName");
            EXPECT_EQ(name.text(), "TROO");
            for (const auto& [typed, why] : std::map<std::string, std::string>{
                     {"tro", "The name of a sprite has 4 characters."},
                     {"tr o", "Names of lumps have letters, digits and [ ] - _ \\ only."}}) {
                Type(name, typed.c_str());
                EXPECT_EQ(Find<QLabel>(dialog, "lblNote").text().toStdString(), why);
                EXPECT_FALSE(Find<QPushButton>(dialog, "cmdAccept").isEnabled());
            }
            Type(name, "sarg");
            ClickOk(dialog);
        });
        sprites.Press(Qt::Key_Return);
    }
    EXPECT_EQ(Current().SpriteName(troo), "SARG");
    EXPECT_EQ(edits.UndoName(), "name of sprite TROO");
    EXPECT_EQ(QStringList({shown(0), shown(1), shown(2), shown(3)}), QStringList({"0", "SARG", "TROO", others}));
    EXPECT_EQ(Find<QLabel>(*states.window, "lblSpriteName").text(), "SARG");
    EXPECT_EQ(Find<QLabel>(*things.window, "lblSpawnStateS").text(), "SARGA");
    if (HasWad()) {
        EXPECT_EQ(Find<QLabel>(*states.window, "lblPreview").text(), "442: SARGA1");
        EXPECT_GT(lumps.toInt(), 0);
    }
    notifier.Expect("Are you sure you want to restore this sprite?", Answer::Yes);
    QTest::mouseClick(&sprites.Button("cmdRestore"), Qt::LeftButton);
    EXPECT_EQ(Current(), Defaults());
    EXPECT_EQ(shown(3), lumps);
    EXPECT_EQ(Find<QLabel>(*things.window, "lblSpawnStateS").text(), "TROOA");
}

TEST_F(NewRecordsTest, MusicGetsTheNameOfAnotherLump) {
    LoadEngine("mbf21");
    auto& window = Open<frmEditMusic>();
    auto& list = Find<QTreeView>(window, "lvwMusic");
    const auto shown = [&list](int row) {
        QStringList texts;
        for (int column = 0; column < list.model()->columnCount(); ++column)
            texts << list.model()->index(row, column).data().toString();
        return texts.join(' ').toStdString();
    };
    const std::string runnin = HasWad() ? "IWAD" : "none";
    EXPECT_EQ(shown(0), "1 e1m1 e1m1 none");
    EXPECT_EQ(shown(32), "33 runnin runnin " + runnin);
    const auto rename = [&](int row, const std::function<void(QDialog&)>& work) {
        const ModalDriver driver("frmNewRecord", work);
        DoubleClickRow(list, row);
    };
    rename(0, [](QDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), "Name of music e1m1");
        auto& name = Find<QLineEdit>(dialog, "txtName");
        Type(name, "toolong");
        EXPECT_EQ(Find<QLabel>(dialog, "lblNote").text(), "The name of music has 1 to 6 characters.");
        EXPECT_FALSE(Find<QPushButton>(dialog, "cmdAccept").isEnabled());
        Type(name, "Runnin");
        ClickOk(dialog);
    });
    EXPECT_EQ(shown(0), "1 Runnin e1m1 " + runnin);
    EXPECT_EQ(edits.UndoName(), "name of music e1m1");
    rename(1, [](QDialog& dialog) {
        Type(Find<QLineEdit>(dialog, "txtName"), "none");
        ClickOk(dialog);
    });
    EXPECT_EQ(shown(1), "2 none e1m2 none");
    list.selectAll();
    notifier.Expect("Are you sure you want to restore these pieces of music?", Answer::Yes);
    QTest::mouseClick(&Find<QPushButton>(window, "cmdRestore"), Qt::LeftButton);
    EXPECT_EQ(Current(), Defaults());
}

TEST_F(NewRecordsTest, TheSoundDialogNamesOneSound) {
    OpenAll("dsdhacked");
    frmPropSound dialog(Context(), nullptr);
    const Shown &things = windows[0], &sounds = windows[2];
    static_cast<frmEditSounds*>(sounds.window)->PropertyDialog(dialog);
    constexpr int player = 0, pain = 25;
    static_cast<frmEditThings*>(things.window)->ShowCell({RecordKind::Thing, player, existsField});
    auto& name = Find<QLineEdit>(dialog, "txtName");
    auto& accept = Find<QPushButton>(dialog, "cmdAccept");
    const auto edit = [&](const std::function<void()>& work) {
        QTimer::singleShot(0, &dialog, [&, work] {
            work();
            QTest::mouseClick(&accept, Qt::LeftButton);
            if (dialog.isVisible())
                dialog.reject();
        });
        QTest::mouseClick(&sounds.Button("cmdEdit"), Qt::LeftButton);
    };
    ASSERT_EQ(Current().things[player].painSound, pain);
    ClickRow(sounds.List(), pain);
    edit([&] {
        EXPECT_EQ(name.text(), "plpain");
        Type(name, "toolong");
        EXPECT_EQ(Find<QLabel>(dialog, "lblNameNote").text(), "The name of a sound has 1 to 6 characters.");
        EXPECT_FALSE(accept.isEnabled());
        Type(name, "ouch");
        EXPECT_FALSE(Find<QLabel>(dialog, "lblNameNote").isVisible());
    });
    EXPECT_EQ(Current().SoundName(pain), "ouch");
    EXPECT_EQ(Find<QLabel>(*things.window, "lblPainSoundS").text(), "ouch");
    ClickRow(sounds.List(), pain + 1, Qt::LeftButton, Qt::ControlModifier);
    edit([&] { EXPECT_FALSE(name.isEnabled()) << "of several"; });
    EXPECT_EQ(Current().SoundName(pain), "ouch");
    notifier.Expect("Are you sure you want to restore these sounds?", Answer::Yes);
    QTest::mouseClick(&sounds.Button("cmdRestore"), Qt::LeftButton);
    EXPECT_EQ(Current(), Defaults());

    OpenAll("doom19");
    static_cast<frmEditSounds*>(windows[2].window)->PropertyDialog(dialog);
    ClickRow(windows[2].List(), pain);
    QTimer::singleShot(0, &dialog, [&] {
        EXPECT_FALSE(name.isVisible()) << "the kept rules know no other names";
        dialog.reject();
    });
    QTest::mouseClick(&windows[2].Button("cmdEdit"), Qt::LeftButton);
    EXPECT_FALSE(windows[3].Button("cmdEdit").isEnabled());
    EXPECT_FALSE(windows[3].Button("cmdRestore").isEnabled());
}

} // namespace

} // namespace plinket3::test

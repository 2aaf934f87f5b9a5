#include "tests/ui/ModalDriver.h"
#include "tests/ui/UiTest.h"
#include "ui/editors/frmEditSounds.h"
#include "ui/editors/frmEditStates.h"
#include "ui/editors/frmEditThings.h"

#include <QLabel>
#include <QPushButton>

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
                   {RecordKind::Sound, &Open<frmEditSounds>(), "lvwSounds"}};
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
    } cases[]{{"251", "12", "thing", "There is a thing 12 already."},
              {"4000", "4", "frame", "There is a frame 4 already."},
              {"700", "3", "sound", "There is a sound 3 already."}};
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
                    Type(*name, "growl");
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

} // namespace

} // namespace plinket3::test

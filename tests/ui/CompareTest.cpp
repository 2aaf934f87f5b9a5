#include "tests/support/TestSupport.h"
#include "tests/ui/ModalDriver.h"
#include "tests/ui/WindowTest.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeView>

#include <algorithm>
#include <iterator>

namespace plinket3::test {
namespace {

using Texts = std::vector<std::string>;

constexpr int imp = 11;
constexpr Cell hitPoints{RecordKind::Thing, imp, RowOf(&ThingRecord::hitPoints)};

const std::string head = "Patch File for DeHackEd v3.0\nDoom version = 2021\nPatch format = 6\n\n";
const std::string mine =
    head + "Thing 12 (Imp)\nHit points = 61\nBits = SOLID+FLOAT\n\nFrame 442\nSprite number = 30\n";
const std::string other = head + "Thing 12 (Imp)\nHit points = 90\nBits = SOLID+COUNTKILL\n\n"
                                 "Frame 442\nSprite number = 31\nSprite subnumber = 32769\n\n"
                                 "Frame 4000\nDuration = 5\n\n[PARS]\npar 1 50\n";
const std::string ancestor = head + "Thing 12 (Imp)\nHit points = 70\nBits = SOLID+FLOAT\n";

/// The main window over a patch that was opened.
class CompareTest : public WindowTest {
protected:
    void Start(const char* engine, const std::string& patch) {
        LoadEngine(engine, true);
        WriteFile(folder / "open.deh", patch);
        ASSERT_TRUE(modPatchFiles::ReadPatch(notifier, folder / "open.deh", program));
        ShowWindow();
        for (int i = 0; i < 2; ++i) // shows it, which makes it, and hides it
            Find<QAction>("ViewComparison").trigger();
        tree = &Find<QTreeView>("tvwDifferences");
        new QAbstractItemModelTester(tree->model(), QAbstractItemModelTester::FailureReportingMode::Fatal, tree);
    }

    void Click(const char* button) { QTest::mouseClick(&Find<QPushButton>(button), Qt::LeftButton); }
    std::string Text(const char* label) { return Find<QLabel>(label).text().toStdString(); }
    void CompareWith(const std::function<void(QDialog&)>& choose) {
        const ModalDriver driver("frmCompareWith", [&choose](QDialog& dialog) {
            choose(dialog);
            QTest::mouseClick(&test::Find<QPushButton>(dialog, "cmdAccept"), Qt::LeftButton);
        });
        Find<QAction>("FileCompare").trigger();
    }
    void CompareWithFiles(const std::string& there, const std::string& old = {}) {
        WriteFile(folder / "there.deh", there);
        WriteFile(folder / "old.deh", old);
        CompareWith([&](QDialog& dialog) {
            dialogs.Expect("Compare with", (folder / "there.deh").string());
            QTest::mouseClick(&test::Find<QPushButton>(dialog, "cmdBrowse"), Qt::LeftButton);
            if (!old.empty())
                Type(test::Find<QLineEdit>(dialog, "txtAncestor"), (folder / "old.deh").string().c_str());
        });
    }
    /// A row by the texts that lead to it.
    QModelIndex Row(const QStringList& path) {
        QModelIndex at;
        for (const QString& text : path) {
            QModelIndex found;
            for (int row = 0; row < tree->model()->rowCount(at); ++row)
                if (const QModelIndex index = tree->model()->index(row, 0, at); index.data() == text)
                    found = index;
            if (!found.isValid())
                return {};
            at = found;
        }
        return at;
    }
    /// Each field with what is said of it.
    Texts Fields(const QModelIndex& at = {}) {
        Texts fields;
        for (int row = 0; row < tree->model()->rowCount(at); ++row) {
            const QModelIndex index = tree->model()->index(row, 0, at);
            std::ranges::copy(Fields(index), std::back_inserter(fields));
            QStringList texts;
            for (int column = 0; column < tree->model()->columnCount(at); ++column)
                texts += index.siblingAtColumn(column).data().toString();
            if (tree->model()->rowCount(index) == 0)
                fields.push_back(texts.join(QStringLiteral(" | ")).toStdString());
        }
        return fields;
    }
    void Select(const QStringList& path) {
        const QModelIndex row = Row(path);
        ASSERT_TRUE(row.isValid()) << path.join(QLatin1Char('/')).toStdString();
        tree->scrollTo(row);
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, tree->visualRect(row).center());
    }
    QTreeView* tree = nullptr;
};

TEST_F(CompareTest, ListsDifferencesInWordsTakesThemOverAndFollowsUndo) {
    Start("dsdhacked", mine);
    CompareWithFiles(other, ancestor);
    EXPECT_EQ(Text("lblCompared"), "Compared with there.deh: 7 differences, 2 conflicts");
    EXPECT_EQ(Fields(),
              (Texts{"Hit points | conflict | 61 | 90 | 70",
                     "Bits | only there | SOLID + FLOAT | -FLOAT +COUNTKILL | as here",
                     "Sprite number | conflict | 30 (SPOS) | 31 (VILE) | 0 (TROO)",
                     "Sprite subnumber | only there | A | B, lit | A", "Record | only there | none | made | none",
                     "Duration | only there | - | 5 | -", "MAP01 | only there | none | 50 s | none"}));
    Select({"States", "Frame 442 (SPOSA)"});
    if (HasWad()) {
        EXPECT_EQ(Text("lblHere"), "Here: SPOSA1");
        EXPECT_TRUE(Text("lblThere").starts_with("There: VILEB")) << Text("lblThere");
        EXPECT_NE(window->findChild<SpriteView*>("picHere")->Picture(),
                  window->findChild<SpriteView*>("picThere")->Picture());
    }

    Select({"Things", "Thing 12 (Imp)", "Hit points"}); // one field ...
    Click("cmdTake");
    EXPECT_EQ(edits.UndoName(), "take over hit points of Imp");
    EXPECT_TRUE(QTest::qWaitFor([this] { return Fields().size() == 6; }));
    EXPECT_EQ(tree->currentIndex(), Row({"Things", "Thing 12 (Imp)", "Bits"})) << "what comes next";
    Select({"States", "Frame 4000 (TNT1A)"}); // ... a record, of which one value needs all the same ...
    EXPECT_FALSE(Find<QPushButton>("cmdShow").isEnabled()) << "it is not there yet";
    Click("cmdTake");
    EXPECT_TRUE(Current().states.Has(4000));
    Find<QAction>("EditUndo").trigger();
    EXPECT_FALSE(Current().states.Has(4000));
    EXPECT_TRUE(QTest::qWaitFor([this] { return Fields().size() == 6; }));
    Select({"States", "Frame 442 (SPOSA)"}); // ... and all of a kind
    Click("cmdTakeKind");
    EXPECT_EQ(Current().states[4000].duration, 5);
    EXPECT_EQ(Current().states[442].sprite, 31);
    EXPECT_EQ(Current().things[imp].bits & 2, 2);
    EXPECT_TRUE(QTest::qWaitFor([this] { return Fields().size() == 2; }));

    while (edits.CanUndo())
        edits.Undo();
    edits.Store(hitPoints, 62);
    EXPECT_TRUE(QTest::qWaitFor([this] { return Fields().size() == 7; }));
    EXPECT_EQ(Fields().front(), "Hit points | conflict | 62 | 90 | 70");
    Select({"Things", "Thing 12 (Imp)", "Hit points"});
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitFor([this] { return QApplication::activeWindow() == window.get(); }));
    QTest::keyClick(tree, Qt::Key_Return);
    ASSERT_NE(QApplication::focusWidget(), nullptr);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), "txtHitPoints");
}

TEST_F(CompareTest, FiltersByKindAndByWhoChangedIt) {
    Start("dsdhacked", mine);
    CompareWithFiles(other, ancestor);
    const struct {
        int kind, changed;
        const char* what;
        std::size_t rows;
    } cases[]{{0, 0, "All differences", 7}, {0, 1, "Changed only here", 0}, {0, 2, "Changed only there", 5},
              {0, 3, "Conflicts", 2},       {2, 3, "Conflicts", 1},         {11, 0, "All differences", 1}};
    for (const auto& [kind, changed, what, rows] : cases) {
        for (const auto& [name, row] : {std::pair{"cmbKind", kind}, {"cmbChanged", changed}}) {
            auto& box = Find<QComboBox>(name);
            box.setFocus();
            QTest::keyClick(&box, Qt::Key_Home);
            for (int times = 0; times < row; ++times)
                QTest::keyClick(&box, Qt::Key_Down);
        }
        EXPECT_EQ(Find<QComboBox>("cmbChanged").currentText(), what);
        EXPECT_EQ(Fields().size(), rows) << kind << what;
        EXPECT_EQ(Find<QLabel>("lblNone").isVisible(), rows == 0);
    }
}

TEST_F(CompareTest, TheSavedPatchAndTheEnginesDataNeedNoFile) {
    Start("dsdhacked", mine);
    const auto choose = [](const char* button) {
        return [button](QDialog& dialog) { test::Find<QRadioButton>(dialog, button).click(); };
    };
    CompareWith(choose("optSaved"));
    EXPECT_EQ(Text("lblNone"), "No differences.");
    edits.Store(hitPoints, 5);
    EXPECT_TRUE(QTest::qWaitFor([this] { return Fields() == Texts{"Hit points | in both | 5 | 61 | 60"}; }));
    notifier.Expect("The file " + (folder / "open.deh").string() +
                        " was changed by another program. Do you want to overwrite it?",
                    Answer::Yes);
    EXPECT_TRUE(window->Commands().Save());
    EXPECT_EQ(Fields(), Texts());
    CompareWith(choose("optEngine"));
    EXPECT_EQ(Fields(), (Texts{"Hit points | only here | 5 | 60 | 60",
                               "Bits | only here | SOLID + FLOAT | +SHOOTABLE -FLOAT +COUNTKILL | "
                               "+SHOOTABLE -FLOAT +COUNTKILL",
                               "Sprite number | only here | 30 (SPOS) | 0 (TROO) | 0 (TROO)"}));
    emit window->Commands().SessionChanged();
    EXPECT_EQ(Text("lblNone"), "Nothing is compared yet.");
}

TEST_F(CompareTest, APatchOfAnotherEngineIsTakenOverAndTellsWhatIsLeftOut) {
    Start("boom19", "Patch File for DeHackEd v3.0\nDoom version = 19\nPatch format = 6\n");
    CompareWithFiles(head + "Thing 12 (Imp)\nHit points = 90\nMBF21 Bits = RANGEHALF\n");
    EXPECT_EQ(Fields(), (Texts{"Hit points | only there | 60 | 90 | 60"}));
    EXPECT_EQ(Find<QPushButton>("cmdLost").text(), "&Left out (1)");
    Click("cmdLost");
    EXPECT_TRUE(Find<QListWidget>("lstLost").item(0)->text().endsWith("Thing 12 (Imp): MBF21 Bits 0 -> RANGEHALF"));

    notifier.Expect(MessageKind::Exclamation,
                    "Could not read " + (folder / "none.deh").string() + ": " + WhyNotRead(folder / "none.deh"));
    const ModalDriver driver("frmCompareWith", [&](QDialog& dialog) {
        Type(test::Find<QLineEdit>(dialog, "txtFile"), (folder / "none.deh").string().c_str());
        QTest::mouseClick(&test::Find<QPushButton>(dialog, "cmdAccept"), Qt::LeftButton);
        EXPECT_TRUE(dialog.isVisible());
        QTest::mouseClick(&test::Find<QPushButton>(dialog, "cmdCancel"), Qt::LeftButton);
    });
    Click("cmdCompareWith");
    EXPECT_EQ(Fields().size(), 1U) << "what was compared before stays";
}

} // namespace
} // namespace plinket3::test

#pragma once

#include "patch/Edits.h"
#include "patch/Program.h"
#include "patch/StepNames.h"
#include "tests/support/TestSupport.h"
#include "ui/editors/EditorWindow.h"
#include "ui/fields/Thumbnails.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QDialog>
#include <QLineEdit>
#include <QTest>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace plinket3::test {

/// Stands in for the other windows: answers what a test has set and records what was asked.
class TestLinks : public EditorLinks {
public:
    explicit TestLinks(Program& program) : thumbnails(program) {}
    void SelectSingleState(int state, int thing, int weapon) override;
    std::optional<int> SelectedStateRow() override { return selectedStateRow; }
    QList<QAction*> RecordActions(RecordKind) const override { return {}; }
    void ShowCell(const Cell& cell) override { Record("show " + MadeName(cell.kind, cell.index)); }
    std::optional<int> SelectedSoundRow() override { return selectedSoundRow; }
    void ReplaceThingFilterEntry(int entry, const QString& text) override;
    Thumbnails& Pictures() override { return thumbnails; }
    void PlaySoundLump(int sound) override { Record("play sound " + std::to_string(sound)); }
    std::optional<SpriteChoice> PickSprite(SpriteChoice start) override;
    std::optional<std::int32_t> PickState(std::int32_t start) override;
    std::optional<std::int32_t> PickAction(std::int32_t start) override;
    std::optional<std::int32_t> PickRecord(RecordKind kind, std::int32_t start) override;
    QString AskText(const QString& title, const QString& prompt, const QString& start) override;
    QList<QAction*> ClipActions() const override { return {}; }
    void Duplicate() override { Record("duplicate"); }
    void ChangeWaits() override {}
    void ShowStatus(const QString& text) override { Record("status " + text.toStdString()); }

    std::optional<int> selectedStateRow, selectedSoundRow;
    std::optional<SpriteChoice> pickedSprite;
    std::optional<std::int32_t> pickedState, pickedAction, pickedRecord;
    QString typedText; // the answer to AskText
    std::vector<std::string> calls;
    Thumbnails thumbnails;

private:
    void Record(std::string call) { calls.push_back(std::move(call)); }
};

/// A program with an engine's data (and Freedoom's WAD, where it is installed) and no windows but the one under test.
class EditorTest : public ::testing::Test {
protected:
    /// `engine` is a configuration's name: "doom19", "mbf19" ...
    void LoadEngine(const std::string& engine);
    EditorContext Context() { return {program, edits, links}; }
    const PatchSet& Current() const { return program.patch.current; }
    const PatchSet& Defaults() const { return program.patch.defaults; }
    bool HasWad() const { return program.wads.Count() > 0; }
    /// Opens an editor that hears of every edit, as it does in the main window.
    template <class Editor> Editor& Open() {
        auto editor = std::make_unique<Editor>(Context());
        Editor& opened = *editor;
        edits.Listen([&opened](const std::vector<Cell>& cells) { opened.CellsChanged(cells); });
        windows_.push_back(std::move(editor));
        opened.show();
        window = &opened;
        return opened;
    }
    // Controls of `window`
    QLineEdit& Box(const char* name);
    QString Text(const char* label);
    void Click(const char* button);
    void UndoAll() {
        while (edits.CanUndo())
            edits.Undo();
        EXPECT_EQ(Current(), Defaults());
    }

    ExpectingNotifier notifier;
    Program program{notifier};
    Edits edits{program.patch};
    TestLinks links{program};
    EditorWindow* window = nullptr; // the one that was opened last

private:
    std::vector<std::unique_ptr<EditorWindow>> windows_;
};

/// Freedoom's WAD, from its Debian package.
inline constexpr const char* freedoom = "/usr/share/games/doom/freedoom2.wad";

/// For a `ModalDriver`: chooses the engine whose name begins so in the session dialog, the recommended one for none,
/// and accepts.
std::function<void(QDialog&)> AcceptSession(const char* engine);

/// Gives the program its folders below `folder`, the settings of a first run and the engines beside the tests.
void UseFolder(Program& program, const std::filesystem::path& folder);

/// The control of that object name inside `window`; fails the test (and returns a fresh one) when there is none.
template <class Widget> Widget& Find(QWidget& window, const char* name) {
    auto* widget = window.findChild<Widget*>(QString::fromLatin1(name));
    if (widget == nullptr) {
        ADD_FAILURE() << "there is no control " << name;
        widget = new Widget(&window);
    }
    return *widget;
}

/// Clicks a row of a list, or double clicks it, as a user does.
void ClickRow(QAbstractItemView& view, int row, Qt::MouseButton button = Qt::LeftButton,
              Qt::KeyboardModifiers modifiers = {});
void DoubleClickRow(QAbstractItemView& view, int row);

/// Right-clicks a place of a control and triggers an entry, by its object name, of the menu that comes.
void TriggerMenu(QWidget& widget, QPoint place, const char* entry);

/// Clicks into a box, as a user does, and types over what it holds.
void Type(QLineEdit& box, const char* text);

} // namespace plinket3::test

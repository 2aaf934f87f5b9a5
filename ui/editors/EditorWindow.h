#pragma once

#include "patch/Edits.h"
#include "patch/Program.h"

#include <QString>
#include <QWidget>

#include <cstdint>
#include <optional>
#include <vector>

namespace plinket3 {

/// What editors ask of each other and of the main window, so that none of them knows another.
class EditorLinks {
public:
    virtual ~EditorLinks() = default;

    /// Brings the state editor up with `state` selected: under the filter of `thing`, else of `weapon`, else (both -1)
    /// under the filter it has.
    virtual void SelectSingleState(int state, int thing, int weapon) = 0;
    /// The position of the selected row in the state editor's list, from 0, whatever the filter; absent when no row is
    /// selected.
    virtual std::optional<int> SelectedStateRow() = 0;
    /// Selects a sound's row in the sound editor and scrolls it into view.
    virtual void ShowSoundInEditor(int sound) = 0;
    virtual std::optional<int> SelectedSoundRow() = 0;
    /// Rewrites one entry of the state editor's list of things; an entry beyond its end is ignored.
    virtual void ReplaceThingFilterEntry(int entry, const QString& text) = 0;

    /// Plays the sound of the current sound table at that index; problems go to the log.
    virtual void PlaySoundLump(int sound) = 0;

    // The pickers. Each starts at the given value and returns nothing when the user cancels.
    struct SpriteChoice {
        std::int32_t sprite = 0, frame = 0; // the frame with the lit bit
    };
    virtual std::optional<SpriteChoice> PickSprite(SpriteChoice start) = 0;
    virtual std::optional<std::int32_t> PickState(std::int32_t start) = 0;
    virtual std::optional<std::int32_t> PickAction(std::int32_t start) = 0; // a code pointer value

    /// Asks for a name that a patch can hold; empty when the user cancels or leaves it empty.
    virtual QString AskText(const QString& title, const QString& prompt, const QString& start) = 0;
    /// A word in the status bar.
    virtual void ShowStatus(const QString& text) = 0;
};

struct EditorContext {
    Program& program;
    Edits& edits;
    EditorLinks& links;
};

/// One of the nine editors. It is made at start-up but builds its controls only when it is first needed, and fills them
/// only while it is seen. Views only look: an editor stores through `Edits` and nowhere else.
class EditorWindow : public QWidget {
    Q_OBJECT
public:
    /// `name` is the object name and what the log says: "  Loaded " and the name.
    EditorWindow(const char* name, const QString& caption, const EditorContext& context);

    /// The patch, the engine or the settings are others now.
    void Refresh();
    /// These cells have another value now.
    void CellsChanged(const std::vector<Cell>& cells);
    /// Builds and fills what is not yet up to date, also while the window is hidden.
    void BringUpToDate();

protected:
    /// Makes the controls. Called once.
    virtual void Build() = 0;
    /// Fills what depends on the engine, the settings and the names. Stores nothing.
    virtual void fillStaticData() = 0;
    /// Shows the current record. Stores nothing.
    virtual void updateForm() = 0;
    /// Shows other values of these cells; never called with an empty list or before the first filling.
    virtual void ShowCells(const std::vector<Cell>& cells) = 0;

    void showEvent(QShowEvent* event) override;

    /// Asks for another name of a record that has one, and stores it. Empty when the user gives none.
    QString AskName(RecordKind kind, std::int32_t record, const QString& title, const QString& prompt);

    const PatchSet& Current() const { return context_.program.patch.current; }
    const PatchSet& Defaults() const { return context_.program.patch.defaults; }

    EditorContext context_;

private:
    bool built_ = false;
    bool upToDate_ = false;
};

} // namespace plinket3

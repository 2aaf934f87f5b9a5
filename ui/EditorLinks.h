#pragma once

#include "patch/Cells.h"

#include <QList>
#include <QString>

#include <cstdint>
#include <optional>

class QAction;

namespace plinket3 {

class Thumbnails;

/// What editors ask of each other and of the main window, so that none of them knows another.
class EditorLinks {
public:
    virtual ~EditorLinks() = default;

    /// Brings the editor of the cell's kind up with its record selected alone, whatever a filter hides, and with the
    /// focus in the control of its field, where it has one that can be used. Of par times `index` is the place in the
    /// list. Nothing happens when there is no such record, or the open patch has nothing that this editor edits.
    virtual void ShowCell(const Cell& cell) = 0;
    /// The same with the focus in the list of records.
    void ShowRecord(RecordKind kind, std::int32_t number) { ShowCell({kind, number, existsField}); }
    /// What can be done with the records selected in the editor in front, where they are of that kind: for menus of
    /// lists.
    virtual QList<QAction*> RecordActions(RecordKind kind) const = 0;
    /// Brings the state editor up with `state` selected: under the filter of `thing`, else of `weapon`, else (both -1)
    /// under the filter it has.
    virtual void SelectSingleState(int state, int thing, int weapon) = 0;
    /// The position of the selected row in the state editor's list, from 0, whatever the filter; absent when no row is
    /// selected.
    virtual std::optional<int> SelectedStateRow() = 0;
    virtual std::optional<int> SelectedSoundRow() = 0;
    /// Rewrites one entry of the state editor's list of things; an entry beyond its end is ignored.
    virtual void ReplaceThingFilterEntry(int entry, const QString& text) = 0;

    /// The small pictures of lists.
    virtual Thumbnails& Pictures() = 0;
    /// Plays the sound of the current sound table at that index; problems go to the log.
    virtual void PlaySoundLump(int sound) = 0;

    // The pickers. Each starts at the given value and returns nothing when the user cancels.
    struct SpriteChoice {
        std::int32_t sprite = 0, frame = 0; // the frame with the lit bit
    };
    virtual std::optional<SpriteChoice> PickSprite(SpriteChoice start) = 0;
    virtual std::optional<std::int32_t> PickState(std::int32_t start) = 0;
    virtual std::optional<std::int32_t> PickAction(std::int32_t start) = 0;                  // a code pointer value
    virtual std::optional<std::int32_t> PickRecord(RecordKind kind, std::int32_t start) = 0; // a thing or a sound

    /// Asks for a name that a patch can hold; empty when the user cancels or leaves it empty.
    virtual QString AskText(const QString& title, const QString& prompt, const QString& start) = 0;
    /// Copying, pasting and duplicating of what is selected in the editor in front, for the menus of lists.
    virtual QList<QAction*> ClipActions() const = 0;
    /// Makes another one of what is selected in the editor in front, after the user has said how.
    virtual void Duplicate() = 0;
    /// A change typed for several records waits to be taken, or no longer does.
    virtual void ChangeWaits() = 0;
    /// A word in the status bar.
    virtual void ShowStatus(const QString& text) = 0;
};

} // namespace plinket3

#pragma once

#include "ui/Audio.h"
#include "ui/FileDialogs.h"
#include "ui/RecordCommands.h"
#include "ui/clip/ClipCommands.h"
#include "ui/editors/EditorWindow.h"
#include "ui/fields/Thumbnails.h"

#include <QMap>
#include <QObject>
#include <QRect>

#include <array>
#include <map>
#include <memory>
#include <string>
#include <vector>

class QMdiArea;
class QMdiSubWindow;

namespace plinket3 {

class frmEditSounds;
class frmEditStates;
class frmPropSound;
class frmPropString;
class frmSelectAction;
class frmSelectRecord;
class frmSelectSprite;
class frmSelectState;

/// An editor's place in menus and toolbars.
struct EditorEntry {
    RecordKind kind;
    const char* window; // class and object name
    const char* command;
    const char* key;
    const char* menuText;
    const char* button;
    const char* manualPage;
};
inline constexpr std::array<EditorEntry, 11> editorEntries{{
    {RecordKind::Thing, "frmEditThings", "ViewThingEditor", "Ctrl+1", "Thing editor", "Things", "things.md"},
    {RecordKind::State, "frmEditStates", "ViewStateEditor", "Ctrl+2", "State editor", "States", "states.md"},
    {RecordKind::Sound, "frmEditSounds", "ViewSoundEditor", "Ctrl+3", "Sound editor", "Sounds", "sounds.md"},
    {RecordKind::String, "frmEditStrings", "ViewStringEditor", "Ctrl+4", "String editor", "Strings", "strings.md"},
    {RecordKind::Weapon, "frmEditWeapons", "ViewWeaponEditor", "Ctrl+5", "Weapon editor", "Weapons", "weapons.md"},
    {RecordKind::Ammo, "frmEditAmmo", "ViewAmmoEditor", "Ctrl+6", "Ammo editor", "Ammo", "ammo.md"},
    {RecordKind::Cheat, "frmEditCheats", "ViewCheatEditor", "Ctrl+7", "Cheat editor", "Cheats", "cheats.md"},
    {RecordKind::Misc, "frmEditMisc", "ViewMiscEditor", "Ctrl+8", "Misc. editor", "Misc.", "misc.md"},
    {RecordKind::Par, "frmEditPars", "ViewParEditor", "Ctrl+9", "Par. editor", "Par.", "pars.md"},
    {RecordKind::Sprite, "frmEditSprites", "ViewSpriteEditor", "Ctrl+0", "Sprite editor", "Sprites", "sprites.md"},
    {RecordKind::Music, "frmEditMusic", "ViewMusicEditor", "Ctrl+M", "Music editor", "Music", "music.md"},
}};
inline constexpr std::size_t parEditor = 8, spriteEditor = 9, musicEditor = 10;

/// The editors with their dialogs, as children of the main window's document area; answers what they ask of each
/// other.
class EditorSet : public QObject, public EditorLinks {
    Q_OBJECT
public:
    EditorSet(Program& program, Edits& edits, Audio& audio, FileDialogs& dialogs, QMdiArea& area);
    ~EditorSet() override;

    /// Makes an editor or one of the editors' dialogs, hidden; false when `name` is none of them.
    bool Load(std::string_view name);

    /// Whether the open patch can hold what the editor edits.
    bool Serves(std::size_t editor) const;
    bool IsShown(std::size_t editor) const;
    /// Shows an editor (and gives it the focus) or hides it.
    void Show(std::size_t editor, bool shown);
    /// Hides the editor in front; shows any other one and brings it there.
    void Toggle(std::size_t editor) { Show(editor, Front() != editor); }
    /// The patch, the engine or the settings are others now.
    void Refresh();
    /// The editor that no other one covers, which has the focus when the main window has; absent when none is shown.
    std::optional<std::size_t> Front() const;
    /// Where an editor that was shown stands, maximised or not, to be kept; and back there. The toolkit's own means
    /// would keep the frame clear of the screen's edge, as if it were a window of the desktop.
    QByteArray Place(std::size_t editor) const;
    void Place(std::size_t editor, const QByteArray& place);
    /// The editor in front and its current record, which is `noRecord` where none is. Absent when no editor is shown.
    std::optional<Cell> Here() const;
    /// The current record of the editor of that kind, wherever that stands; absent when it has none.
    std::optional<std::int32_t> CurrentRecord(RecordKind kind) const;
    /// All that are selected in the editor in front.
    std::vector<std::int32_t> Selected() const;
    /// Whether such a place is there in the open patch.
    bool IsThere(const Cell& place) const;
    /// Brings such a place up.
    void ShowPlace(const Cell& place);
    /// Selects a record alone in its editor without bringing that up. Nothing happens when there is none of that
    /// number.
    void Select(RecordKind kind, std::int32_t number);
    /// What can be done with the selected records, of any kind.
    QList<QAction*> AllRecordActions() const { return commands_.Actions(); }
    QMdiSubWindow* Frame(std::size_t editor) const { return frames_[editor]; }

    // EditorLinks
    void ShowCell(const Cell& cell) override;
    QList<QAction*> RecordActions(RecordKind kind) const override { return commands_.Actions(kind); }
    void SelectSingleState(int state, int thing, int weapon) override;
    std::optional<int> SelectedStateRow() override;
    std::optional<int> SelectedSoundRow() override;
    void ReplaceThingFilterEntry(int entry, const QString& text) override;
    Thumbnails& Pictures() override { return thumbnails_; }
    void PlaySoundLump(int sound) override;
    std::optional<SpriteChoice> PickSprite(SpriteChoice start) override;
    std::optional<std::int32_t> PickState(std::int32_t start) override;
    std::optional<std::int32_t> PickAction(std::int32_t start) override;
    std::optional<std::int32_t> PickRecord(RecordKind kind, std::int32_t start) override;
    QString AskText(const QString& title, const QString& prompt, const QString& start) override;
    QList<QAction*> ClipActions() const override { return clips_.Actions(); }
    void Duplicate() override { clips_.Duplicate(); }
    void ChangeWaits() override { emit ChangeWaiting(); }
    void ShowStatus(const QString& text) override { emit StatusText(text); }

signals:
    /// Editors were shown or hidden.
    void ShownChanged();
    void StatusText(const QString& text);
    /// A change typed for several records waits to be taken, or no longer does.
    void ChangeWaiting();
    /// The user is led elsewhere, and has arrived there.
    void Jumping();
    void Jumped();
    /// Another editor is in front, or other records are selected.
    void PlaceChanged();
    /// The comments at the patch's head, which no editor shows, are to be.
    void PatchNotesWanted();
    /// An editor has its controls and its frame: they can be given back their places.
    void EditorMade(std::size_t editor);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::unique_ptr<EditorWindow> Make(std::string_view name);
    std::optional<std::size_t> PlaceOf(std::string_view name) const;
    static std::size_t EditorOf(RecordKind kind);
    void Hide(std::size_t editor);
    void BringToFront(std::size_t editor);
    void KeepClear(std::size_t editor);
    void RefreshPickers();
    void FollowThingNames(const std::vector<Cell>& cells);

    Program& program_;
    Edits& edits_;
    Audio& audio_;
    FileDialogs& dialogs_;
    Thumbnails thumbnails_;
    QMdiArea& area_;
    RecordCommands commands_;
    std::array<std::unique_ptr<EditorWindow>, editorEntries.size()> unshown_; // until they get a frame
    std::array<EditorWindow*, editorEntries.size()> editors_{};
    std::array<QMdiSubWindow*, editorEntries.size()> frames_{};
    std::array<bool, editorEntries.size()> placed_{};  // by `Place`
    std::array<QRect, editorEntries.size()> opened_{}; // where the others were put at first
    std::array<QRect, editorEntries.size()> normal_{}; // places of frames before they were maximised or minimised
    frmEditStates* states_ = nullptr;
    frmEditSounds* sounds_ = nullptr;
    /// What renaming things has put into the state editor's list: its entry's former text, and the names.
    struct Replaced {
        QString before;
        std::vector<std::string> names;
    };
    std::map<int, Replaced> replaced_; // by entry
    ClipCommands clips_;
    std::unique_ptr<frmPropSound> propSound_;
    std::unique_ptr<frmPropString> propString_;
    std::unique_ptr<frmSelectSprite> selectSprite_;
    std::unique_ptr<frmSelectState> selectState_;
    std::unique_ptr<frmSelectAction> selectAction_;
    std::unique_ptr<frmSelectRecord> selectThing_, selectSound_, selectString_;
};

} // namespace plinket3

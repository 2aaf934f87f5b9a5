#include "ui/EditorSet.h"

#include "ui/FreePlace.h"
#include "ui/LatinText.h"
#include "ui/editors/frmEditAmmo.h"
#include "ui/editors/frmEditCheats.h"
#include "ui/editors/frmEditMisc.h"
#include "ui/editors/frmEditMusic.h"
#include "ui/editors/frmEditPars.h"
#include "ui/editors/frmEditSounds.h"
#include "ui/editors/frmEditSprites.h"
#include "ui/editors/frmEditStates.h"
#include "ui/editors/frmEditStrings.h"
#include "ui/editors/frmEditThings.h"
#include "ui/editors/frmEditWeapons.h"
#include "ui/editors/frmPropSound.h"
#include "ui/editors/frmPropString.h"
#include "ui/pickers/frmSelectAction.h"
#include "ui/pickers/frmSelectRecord.h"
#include "ui/pickers/frmSelectSprite.h"
#include "ui/pickers/frmSelectState.h"

#include <QAction>
#include <QEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>

#include <algorithm>
#include <utility>

namespace plinket3 {

namespace {

bool IsNormal(Qt::WindowStates states) { return !(states & (Qt::WindowMaximized | Qt::WindowMinimized)); }

} // namespace

EditorSet::EditorSet(Program& program, Edits& edits, Audio& audio, FileDialogs& dialogs, QMdiArea& area)
    : program_(program), edits_(edits), audio_(audio), dialogs_(dialogs), thumbnails_(program), area_(area),
      commands_(program, edits, *this, area), clips_(program, edits, *this, area) {
    edits_.Listen([this](const std::vector<Cell>& cells) {
        for (EditorWindow* editor : editors_)
            if (editor != nullptr)
                editor->CellsChanged(cells);
        if (MakesOrRemoves(cells) || RenamesLumps(cells))
            RefreshPickers();
        FollowThingNames(cells);
    });
    connect(&area_, &QMdiArea::subWindowActivated, this, &EditorSet::PlaceChanged);
    for (const auto signal : {&EditorSet::PlaceChanged, &EditorSet::ShownChanged}) {
        connect(this, signal, &commands_, &RecordCommands::Update);
        connect(this, signal, &clips_, &ClipCommands::Update);
    }
}

EditorSet::~EditorSet() = default;

std::optional<std::size_t> EditorSet::PlaceOf(std::string_view name) const {
    for (std::size_t place = 0; place < editorEntries.size(); ++place)
        if (name == editorEntries[place].window)
            return place;
    return std::nullopt;
}

std::unique_ptr<EditorWindow> EditorSet::Make(std::string_view name) {
    const EditorContext context{program_, edits_, *this};
    if (name == "frmEditThings")
        return std::make_unique<frmEditThings>(context);
    if (name == "frmEditStates") {
        auto states = std::make_unique<frmEditStates>(context);
        states_ = states.get();
        return states;
    }
    if (name == "frmEditSounds") {
        auto sounds = std::make_unique<frmEditSounds>(context);
        sounds_ = sounds.get();
        return sounds;
    }
    if (name == "frmEditStrings")
        return std::make_unique<frmEditStrings>(context);
    if (name == "frmEditWeapons")
        return std::make_unique<frmEditWeapons>(context);
    if (name == "frmEditAmmo")
        return std::make_unique<frmEditAmmo>(context);
    if (name == "frmEditCheats")
        return std::make_unique<frmEditCheats>(context);
    if (name == "frmEditMisc")
        return std::make_unique<frmEditMisc>(context);
    if (name == "frmEditPars")
        return std::make_unique<frmEditPars>(context);
    if (name == "frmEditSprites")
        return std::make_unique<frmEditSprites>(context);
    return std::make_unique<frmEditMusic>(context);
}

bool EditorSet::Load(std::string_view name) {
    if (const auto place = PlaceOf(name)) {
        if (editors_[*place] == nullptr) {
            unshown_[*place] = Make(name);
            editors_[*place] = unshown_[*place].get();
            connect(editors_[*place], &EditorWindow::CurrentChanged, this, &EditorSet::PlaceChanged);
        }
        return true;
    }
    const EditorContext context{program_, edits_, *this};
    QWidget* parent = area_.window();
    if (name == "frmPropSound" && !propSound_) {
        propSound_ = std::make_unique<frmPropSound>(context, parent);
        sounds_->PropertyDialog(*propSound_);
    } else if (name == "frmPropString" && !propString_) {
        propString_ = std::make_unique<frmPropString>(context, parent);
        static_cast<frmEditStrings*>(editors_[*PlaceOf("frmEditStrings")])->PropertyDialog(*propString_);
    } else if (name == "frmSelectSprite" || name == "frmSelectState" || name == "frmSelectAction") {
        program_.log.Add("  Loaded " + std::string(name)); // its controls are made when it is first shown
    } else {
        return false;
    }
    return true;
}

/// Only extended patches have par times, and by the kept rules none renames a sprite.
bool EditorSet::Serves(std::size_t editor) const {
    const Dialect& dialect = program_.engine.dialect;
    return editor == parEditor ? dialect.IsExtended()
                               : (editor != spriteEditor && editor != musicEditor) || dialect.EngineRules();
}

bool EditorSet::IsShown(std::size_t editor) const { return frames_[editor] != nullptr && !frames_[editor]->isHidden(); }

void EditorSet::Show(std::size_t editor, bool shown) {
    if ((editor == spriteEditor || editor == musicEditor) && shown)
        Load(editorEntries[editor].window); // which few need
    if (editors_[editor] == nullptr || (!shown && frames_[editor] == nullptr))
        return;
    const bool isNew = frames_[editor] == nullptr;
    if (isNew) {
        editors_[editor]->BringUpToDate(); // so that the frame gets a size that fits the controls
        frames_[editor] = area_.addSubWindow(unshown_[editor].release());
        frames_[editor]->installEventFilter(this);
        for (QAction* action : frames_[editor]->systemMenu()->actions())
            action->setShortcuts({}); // the menu "Window" has them
        frames_[editor]->setAttribute(Qt::WA_DeleteOnClose, false);
        emit EditorMade(editor);
    }
    if (shown)
        BringToFront(editor);
    if (shown && isNew && !placed_[editor] && area_.isVisible())
        KeepClear(editor);
    if (!shown)
        Hide(editor);
    emit ShownChanged();
}

void EditorSet::BringToFront(std::size_t editor) {
    frames_[editor]->show();
    if (frames_[editor]->isMinimized())
        frames_[editor]->showNormal();
    editors_[editor]->show();
    area_.setActiveSubWindow(frames_[editor]);
    editors_[editor]->setFocus();
}

/// Moves a frame that covers others to where it does not, if it must be, made smaller. One that still stands at the
/// left as it was opened gives up to a quarter of its width for it.
void EditorSet::KeepClear(std::size_t editor) {
    QMdiSubWindow& frame = *frames_[editor];
    if (!IsNormal(frame.windowState()))
        return;
    QList<std::size_t> others;
    QList<QRect> places;
    for (std::size_t other = 0; other < frames_.size(); ++other)
        if (other != editor && IsShown(other) && !frames_[other]->isMinimized()) {
            others.append(other);
            places.append(frames_[other]->geometry());
        }
    const auto place = [&] {
        return FreePlace(area_.viewport()->rect(), places, frame.size(), frame.minimumSizeHint());
    };
    const auto isCovered = [&frame](const QRect& other) { return other.intersects(frame.geometry()); };
    if (std::ranges::any_of(places, isCovered)) {
        auto found = place();
        for (qsizetype i = 0; i < others.size() && !found; ++i) {
            QRect& narrow = places[i];
            const QRect before = narrow;
            narrow.setWidth(area_.viewport()->width() - frame.minimumSizeHint().width());
            const bool gives = before == opened_[others[i]] && before.left() == 0 && narrow.width() < before.width() &&
                               narrow.width() >= before.width() * 3 / 4 &&
                               narrow.width() >= frames_[others[i]]->minimumSizeHint().width();
            found = gives ? place() : std::nullopt;
            if (found)
                frames_[others[i]]->setGeometry(narrow);
            else
                narrow = before;
        }
        if (found)
            frame.setGeometry(*found);
    }
    opened_[editor] = frame.geometry();
}

void EditorSet::Hide(std::size_t editor) {
    const bool wasInFront = Front() == editor;
    frames_[editor]->hide();
    if (const auto next = Front(); next && wasInFront)
        BringToFront(*next);
}

void EditorSet::Refresh() {
    replaced_.clear(); // the list is filled anew
    thumbnails_.Clear();
    for (EditorWindow* editor : editors_)
        if (editor != nullptr)
            editor->Refresh();
    RefreshPickers();
}

void EditorSet::RefreshPickers() {
    if (selectSprite_)
        selectSprite_->Refresh();
    if (selectState_)
        selectState_->Refresh();
    if (selectAction_)
        selectAction_->Refresh();
}

std::optional<std::size_t> EditorSet::Front() const {
    const QList<QMdiSubWindow*> frames = area_.subWindowList(QMdiArea::StackingOrder);
    for (auto frame = frames.crbegin(); frame != frames.crend(); ++frame)
        if (!(*frame)->isHidden() && !(*frame)->isMinimized())
            return static_cast<std::size_t>(std::ranges::find(frames_, *frame) - frames_.begin());
    return std::nullopt;
}

QByteArray EditorSet::Place(std::size_t editor) const {
    const QMdiSubWindow* frame = frames_[editor];
    const QRect place = IsNormal(frame->windowState()) ? frame->geometry() : normal_[editor];
    QByteArray text;
    for (const int number : {place.x(), place.y(), place.width(), place.height()})
        text += QByteArray::number(number) + ' ';
    return text += frame->isMaximized() ? "maximised" : "normal";
}

void EditorSet::Place(std::size_t editor, const QByteArray& place) {
    const QByteArrayList parts = place.split(' ');
    if (parts.size() != 5)
        return;
    QRect outline(parts[0].toInt(), parts[1].toInt(), parts[2].toInt(), parts[3].toInt());
    const QRect room = area_.viewport()->rect();
    if (area_.isVisible() &&
        !room.intersects({outline.topLeft(), QSize(outline.width(), 1)})) // its title could not be had
        outline.moveTo(std::clamp(outline.x(), 0, std::max(0, room.width() - outline.width())),
                       std::clamp(outline.y(), 0, std::max(0, room.height() - outline.height())));
    frames_[editor]->setGeometry(outline);
    placed_[editor] = true;
    if (parts[4] == "maximised") {
        frames_[editor]->show(); // one that is hidden would not remember its place
        frames_[editor]->showMaximized();
    }
}

bool EditorSet::eventFilter(QObject* watched, QEvent* event) {
    auto* frame = static_cast<QMdiSubWindow*>(watched);
    const auto editor = static_cast<std::size_t>(std::ranges::find(frames_, frame) - frames_.begin());
    if (event->type() == QEvent::Close) { // an editor is hidden, never destroyed
        event->ignore();
        Show(editor, false);
        return true;
    }
    const bool moved =
        event->type() == QEvent::Move || event->type() == QEvent::Resize || event->type() == QEvent::Show;
    if (moved && IsNormal(frame->windowState()))
        normal_[editor] = frame->geometry();
    return QObject::eventFilter(watched, event);
}

std::size_t EditorSet::EditorOf(RecordKind kind) {
    return static_cast<std::size_t>(std::ranges::find(editorEntries, kind, &EditorEntry::kind) - editorEntries.begin());
}

std::optional<Cell> EditorSet::Here() const {
    const std::optional<std::size_t> editor = Front();
    if (!editor)
        return std::nullopt;
    return Cell{editorEntries[*editor].kind, editors_[*editor]->CurrentRecord().value_or(noRecord), existsField};
}

std::optional<std::int32_t> EditorSet::CurrentRecord(RecordKind kind) const {
    const EditorWindow* editor = editors_[EditorOf(kind)];
    return editor == nullptr ? std::nullopt : editor->CurrentRecord();
}

std::vector<std::int32_t> EditorSet::Selected() const {
    const std::optional<std::size_t> editor = Front();
    return editor ? editors_[*editor]->Selected() : std::vector<std::int32_t>();
}

bool EditorSet::IsThere(const Cell& place) const {
    const PatchSet& set = program_.patch.current;
    if (!Serves(EditorOf(place.kind)))
        return false;
    if (place.kind == RecordKind::Par && place.index != noRecord)
        return static_cast<std::size_t>(place.index) < set.pars.size();
    return place.index == noRecord || HasRecord(set, place.kind, place.index);
}

void EditorSet::ShowPlace(const Cell& place) {
    if (place.index == noRecord)
        Show(EditorOf(place.kind), true);
    else
        ShowCell(place);
}

void EditorSet::ShowCell(const Cell& cell) {
    if (cell == patchNotes)
        return emit PatchNotesWanted();
    if (cell.index == noRecord || !IsThere(cell))
        return;
    emit Jumping();
    const std::size_t editor = EditorOf(cell.kind);
    Show(editor, true);
    editors_[editor]->ShowCell(cell);
    emit Jumped();
}

void EditorSet::Select(RecordKind kind, std::int32_t number) {
    if (EditorWindow* editor = editors_[EditorOf(kind)])
        editor->Select(number);
}

void EditorSet::SelectSingleState(int state, int thing, int weapon) {
    emit Jumping();
    states_->selectSingleState(state, thing, weapon);
    Show(*PlaceOf("frmEditStates"), true);
    emit Jumped();
}

std::optional<int> EditorSet::SelectedStateRow() { return states_->SelectedRow(); }

std::optional<int> EditorSet::SelectedSoundRow() { return sounds_->SelectedRow(); }

void EditorSet::ReplaceThingFilterEntry(int entry, const QString& text) {
    const QString before = states_->ReplaceThingFilterEntry(entry, text);
    replaced_.try_emplace(entry, Replaced{before, {}}).first->second.names.push_back(StoredText(text));
}

/// Undoing a rename takes its text out of the state editor's list again, and redoing it puts it back.
void EditorSet::FollowThingNames(const std::vector<Cell>& cells) {
    for (const Cell& cell : cells) {
        const auto entry = cell.kind == RecordKind::Thing && cell.field == nameField ? replaced_.find(cell.index + 1)
                                                                                     : replaced_.end();
        if (entry == replaced_.end())
            continue;
        const auto& [before, names] = entry->second;
        const std::string name = std::get<std::string>(edits_.Value(cell));
        if (std::ranges::find(names, name) != names.end())
            states_->ReplaceThingFilterEntry(entry->first, ShownText(name));
        else if (edits_.CanRedo()) // Kept: restoring the thing leaves the list alone. docs/kept-behaviour.md
            states_->ReplaceThingFilterEntry(entry->first, before);
    }
}

void EditorSet::PlaySoundLump(int sound) { audio_.PlaySoundLump(program_, program_.log, sound); }

namespace {

/// The dialog, made when it is first shown.
template <class Dialog, class... Arguments> Dialog& Made(std::unique_ptr<Dialog>& dialog, Arguments&&... arguments) {
    if (!dialog)
        dialog = std::make_unique<Dialog>(std::forward<Arguments>(arguments)...);
    return *dialog;
}

} // namespace

std::optional<EditorLinks::SpriteChoice> EditorSet::PickSprite(SpriteChoice start) {
    return Made(selectSprite_, program_, thumbnails_, area_.window()).Choose(start);
}

std::optional<std::int32_t> EditorSet::PickState(std::int32_t start) {
    return Made(selectState_, program_, edits_, thumbnails_, area_.window()).Choose(start);
}

std::optional<std::int32_t> EditorSet::PickAction(std::int32_t start) {
    return Made(selectAction_, program_, area_.window()).Choose(start);
}

std::optional<std::int32_t> EditorSet::PickRecord(RecordKind kind, std::int32_t start) {
    auto& dialog = kind == RecordKind::Thing ? selectThing_ : kind == RecordKind::Sound ? selectSound_ : selectString_;
    return Made(dialog, program_, kind, thumbnails_, area_.window()).Choose(start);
}

QString EditorSet::AskText(const QString& title, const QString& prompt, const QString& start) {
    return dialogs_.AskText(title, prompt, start, FileDialogs::Characters::OfNames);
}

} // namespace plinket3

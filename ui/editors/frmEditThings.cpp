#include "ui/editors/frmEditThings.h"

#include "patch/NewRecords.h"
#include "ui/NewButton.h"
#include "ui/editors/RecordMaker.h"
#include "ui/fields/FieldControl.h"
#include "ui/fields/Labels.h"
#include "ui/lists/FilterBox.h"
#include "ui/lists/SelectedRecords.h"
#include "ui/lists/ThumbnailDelegate.h"
#include "ui/states/StatePreview.h"

#include <QAction>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QScopedValueRollback>
#include <QScrollArea>
#include <QScrollBar>
#include <QSplitter>
#include <QStyle>
#include <QStyledItemDelegate>
#include <QTabWidget>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>

namespace plinket3 {

namespace {

constexpr int longestDigits = 11;   // of a 32-bit number with its sign
constexpr int usualNameLength = 34; // with picture and number before it, and the scroll bar

struct NumberField {
    const char* control;
    std::int32_t ThingRecord::*member;
    const char* hint;
};
constexpr NumberField numberFields[]{
    {"txtID", &ThingRecord::id, QT_TRANSLATE_NOOP("frmEditThings", "The number with which maps place the thing")},
    {"txtHitPoints", &ThingRecord::hitPoints, QT_TRANSLATE_NOOP("frmEditThings", "Damage that it takes to kill it")},
    {"txtSpeed", &ThingRecord::speed,
     QT_TRANSLATE_NOOP("frmEditThings", "Map units: of a projectile each tic, of a monster each step")},
    {"txtRadius", &ThingRecord::width, QT_TRANSLATE_NOOP("frmEditThings", "Map units from its middle to its side")},
    {"txtHeight", &ThingRecord::height, QT_TRANSLATE_NOOP("frmEditThings", "Map units")},
    {"txtMass", &ThingRecord::mass, QT_TRANSLATE_NOOP("frmEditThings", "The more, the less hits push it")},
    {"txtMissileDamage", &ThingRecord::missileDamage,
     QT_TRANSLATE_NOOP("frmEditThings", "Damage of a projectile, multiplied by a roll of the dice")},
    {"txtPainChance", &ThingRecord::painChance,
     QT_TRANSLATE_NOOP("frmEditThings", "How often a hit makes it flinch: never at 0, always at 256")},
    {"txtReactionTime", &ThingRecord::reactionTime,
     QT_TRANSLATE_NOOP("frmEditThings", "How long it waits before it attacks")},
};

using ReferenceField = frmEditThings::ReferenceField;
constexpr ReferenceField stateFields[]{
    {"SpawnState", &ThingRecord::initialState},       {"MoveState", &ThingRecord::firstMovingState},
    {"PainState", &ThingRecord::injuryState},         {"MeleeState", &ThingRecord::closeAttackState},
    {"AttackState", &ThingRecord::farAttackState},    {"DeathState", &ThingRecord::deathState},
    {"ExplodingState", &ThingRecord::explodingState}, {"RespawnState", &ThingRecord::respawnState},
};
constexpr ReferenceField soundFields[]{
    {"AlertSound", &ThingRecord::alertSound},   {"AttackSound", &ThingRecord::attackSound},
    {"PainSound", &ThingRecord::painSound},     {"DeathSound", &ThingRecord::deathSound},
    {"ActionSound", &ThingRecord::actionSound},
};

constexpr ExtraField extraFields[]{
    {"", "InfightingGroup", RowOf(&ThingRecord::infightingGroup),
     QT_TRANSLATE_NOOP("frmEditThings",
                       "Monsters of one group do not fight each other; without one, its kind is its group")},
    {nullptr, "ProjectileGroup", RowOf(&ThingRecord::projectileGroup),
     QT_TRANSLATE_NOOP("frmEditThings", "Projectiles do not hurt monsters of their shooter's group; below 0 they hurt "
                                        "even their own kind")},
    {nullptr, "SplashGroup", RowOf(&ThingRecord::splashGroup),
     QT_TRANSLATE_NOOP("frmEditThings", "Explosions do not hurt things of the exploding thing's group")},
    {nullptr, "FastSpeed", RowOf(&ThingRecord::fastSpeed),
     QT_TRANSLATE_NOOP("frmEditThings", "Speed on nightmare and with fast monsters; -1 for the usual one")},
    {nullptr, "MeleeRange", RowOf(&ThingRecord::meleeRange),
     QT_TRANSLATE_NOOP("frmEditThings", "Map units at which its close attack reaches")},
    {nullptr, "DroppedItem", RowOf(&ThingRecord::droppedItem),
     QT_TRANSLATE_NOOP("frmEditThings", "The thing that it leaves behind when it dies; 0 for none")},
    {nullptr, "RipSound", RowOf(&ThingRecord::ripSound),
     QT_TRANSLATE_NOOP("frmEditThings", "Sound of a projectile with the bit RIP that passes through something")},
    {QT_TRANSLATE_NOOP("frmEditThings", "Pickup"), "PickupAmmoType", RowOf(&ThingRecord::pickupAmmoType),
     QT_TRANSLATE_NOOP("frmEditThings", "Kind of ammunition that it gives")},
    {nullptr, "PickupAmmoCategory", RowOf(&ThingRecord::pickupAmmoCategory),
     QT_TRANSLATE_NOOP("frmEditThings", "How much of it")},
    {nullptr, "PickupWeaponType", RowOf(&ThingRecord::pickupWeaponType),
     QT_TRANSLATE_NOOP("frmEditThings", "Weapon that it gives")},
    {nullptr, "PickupItemType", RowOf(&ThingRecord::pickupItemType),
     QT_TRANSLATE_NOOP("frmEditThings", "What else it gives")},
    {nullptr, "PickupBonusCount", RowOf(&ThingRecord::pickupBonusCount),
     QT_TRANSLATE_NOOP("frmEditThings", "How bright the screen flashes, in tics")},
    {nullptr, "PickupSound", RowOf(&ThingRecord::pickupSound),
     QT_TRANSLATE_NOOP("frmEditThings", "Sound of picking it up")},
    {nullptr, "PickupMessage", pickupMessageField,
     QT_TRANSLATE_NOOP("frmEditThings", "Key of the string that the player then reads")},
    {"", "MinRespawnTics", RowOf(&ThingRecord::minRespawnTics),
     QT_TRANSLATE_NOOP("frmEditThings", "Tics, 35 a second, before it may come back on nightmare")},
    {nullptr, "RespawnDice", RowOf(&ThingRecord::respawnDice),
     QT_TRANSLATE_NOOP("frmEditThings", "The higher, the more often it then comes back")},
    {nullptr, "SelfDamageFactor", RowOf(&ThingRecord::selfDamageFactor),
     QT_TRANSLATE_NOOP("frmEditThings", "Factor on the damage that its own explosions do to it")},
    {nullptr, "Translation", translationField,
     QT_TRANSLATE_NOOP("frmEditThings", "Lump with other colours for its pictures")},
};

NumberForm FormOf(FieldUnit unit) {
    return unit == FieldUnit::Fixed16           ? NumberForm::Fixed
           : unit == FieldUnit::ProjectileSpeed ? NumberForm::Speed
                                                : NumberForm::Long;
}

/// Of the widest label beside a state or sound number, so that both groups line up.
int LabelWidth(const QFontMetrics& metrics) {
    int width = 0;
    for (const std::span<const ReferenceField> fields : {std::span<const ReferenceField>(stateFields), {soundFields}})
        for (const ReferenceField& field : fields)
            width = std::max(width, metrics.horizontalAdvance(FieldLabel(field.member)));
    return width;
}

QAction* NewAction(const char* name, const QString& text, QWidget* owner) {
    auto* action = new QAction(text, owner);
    action->setObjectName(QString::fromLatin1(name));
    owner->addAction(action);
    return action;
}

/// Scrolls only where there is no room for the whole form.
class FormArea : public QScrollArea {
public:
    FormArea(QWidget* form, std::function<void()> resized) : resized_(std::move(resized)) {
        setFrameShape(NoFrame);
        setFocusPolicy(Qt::NoFocus);
        setWidgetResizable(true);
        setWidget(form);
    }
    QSize sizeHint() const override { return widget()->sizeHint() + QSize(verticalScrollBar()->sizeHint().width(), 0); }

protected:
    void resizeEvent(QResizeEvent* event) override {
        resized_();
        QScrollArea::resizeEvent(event);
    }

private:
    std::function<void()> resized_;
};

/// Rows with room between them, so that check boxes do not touch.
class RoomyRows : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        return QStyledItemDelegate::sizeHint(option, index) + QSize(0, option.fontMetrics.height() / 3);
    }
};

/// A list whose rows take the width that there is: long texts end in dots.
QTreeView* NewPlainList(const char* name, const QString& accessibleName) {
    auto* list = new QTreeView;
    list->setObjectName(QString::fromLatin1(name));
    list->setAccessibleName(accessibleName);
    list->setHeaderHidden(true);
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    return list;
}

} // namespace

frmEditThings::frmEditThings(const EditorContext& context)
    : EditorWindow("frmEditThings", tr("Thing editor"), context), names_(context, RecordKind::Thing), listed_(names_),
      flags_(context, {{boxes_.Field(RowOf(&ThingRecord::bits)), context},
                       {boxes_.Field(RowOf(&ThingRecord::bits21)), context},
                       {boxes_.Field(RowOf(&ThingRecord::bits24)), context}}) {}

std::optional<std::int32_t> frmEditThings::CurrentRecord() const {
    return Selection().records.empty() ? std::nullopt : std::optional(Selection().current);
}

bool frmEditThings::SelectRecord(std::int32_t thing) {
    if (names_.Rows().RowOf(thing) < 0)
        return false;
    ShowThings({{thing}, thing});
    if (!list_->selectionModel()->hasSelection())
        filter_->clear(); // it hides the thing
    return true;
}

void frmEditThings::Build() {
    auto* splitter = new QSplitter;
    splitter->setObjectName(QStringLiteral("splThings"));
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(BuildList());
    splitter->addWidget(BuildFields());
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({fontMetrics().averageCharWidth() * usualNameLength, splitter->sizeHint().width()});
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(splitter);
    setFocusProxy(list_);
}

QWidget* frmEditThings::BuildList() {
    filter_ = new FilterBox(tr("Filter the things"), tr("Name or number"));
    filter_->EnterLeads();
    connect(filter_, &QLineEdit::textChanged, this, [this](const QString& text) {
        {
            const QScopedValueRollback filling(filling_, true);
            listed_.Narrow(text);
        }
        if (!Selection().records.empty())
            ShowThings({{Selection().current}, Selection().current});
    });

    list_ = NewPlainList("lstThings", tr("Things"));
    filter_->LeadTo(*list_);
    list_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    list_->setModel(&listed_);
    new ThumbnailDelegate(*list_, 0, context_.links.Pictures(), [this](const QModelIndex& row) {
        return FrameOfThing(Current(), row.data(recordRole).toInt());
    });
    list_->setContextMenuPolicy(Qt::ActionsContextMenu);
    connect(NewAction("actRename", tr("Rename..."), list_), &QAction::triggered, this, &frmEditThings::Rename);
    connect(NewAction("actRestore", tr("Restore"), list_), &QAction::triggered, this, &frmEditThings::Restore);
    connect(list_->selectionModel(), &QItemSelectionModel::currentChanged, this, &frmEditThings::FollowList);
    connect(list_->selectionModel(), &QItemSelectionModel::selectionChanged, this, &frmEditThings::FollowList);
    list_->addActions(context_.links.ClipActions());
    maker_ = new RecordMaker(RecordKind::Thing, "things", *list_, context_);
    list_->addActions(context_.links.RecordActions(RecordKind::Thing));
    connect(maker_, &RecordMaker::Made, this, &frmEditThings::SelectRecord);

    auto* buttons = new QHBoxLayout;
    maker_->AddButtons(*buttons);
    auto* panel = new QWidget;
    auto* layout = new QVBoxLayout(panel);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(filter_);
    layout->addWidget(list_);
    layout->addLayout(buttons);
    return panel;
}

QWidget* frmEditThings::BuildFields() {
    auto* panel = new QWidget;
    auto* layout = new QVBoxLayout(panel);
    layout->setContentsMargins(style()->pixelMetric(QStyle::PM_LayoutHorizontalSpacing), 0, 0, 0);
    layout->addWidget(BuildHead());

    form_ = new QWidget;
    auto* grid = new QGridLayout(form_);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->addWidget(BuildNumbers(), 0, 0, 2, 1);
    grid->addWidget(
        BuildReferences(Reference::State, tr("Frames"), stateFields,
                        [this](int state) { context_.links.SelectSingleState(state, Selection().current, -1); }),
        0, 1);
    grid->addWidget(BuildReferences(Reference::Sound, tr("Sounds"), soundFields,
                                    [this](int sound) { context_.links.ShowRecord(RecordKind::Sound, sound); }),
                    1, 1);
    grid->addWidget(BuildExtra(), 2, 0, 1, 2);
    grid->addWidget(BuildNotes(), 3, 0, 1, 2);
    grid->setRowStretch(3, 1);
    grid->setColumnStretch(1, 1);
    auto* columns = new QHBoxLayout;
    columns->addWidget(new FormArea(form_, [this] { PlaceExtra(); }), 11);
    columns->addWidget(BuildFlags(), 3); // in view wherever the form is scrolled
    layout->addLayout(columns);
    return panel;
}

/// Under each other the groups of the newest engines would not fit on a screen.
QWidget* frmEditThings::BuildExtra() {
    extra_ = new ExtraFields(
        extraFields, "frmEditThings", [this](int row) { return boxes_.Field(row); }, context_, this);
    extraPages_ = new QTabWidget;
    extraPages_->setObjectName(QStringLiteral("tabExtra"));
    for (QGroupBox* group : extra_->Groups()) {
        group->setFlat(true);
        const int margin = style()->pixelMetric(QStyle::PM_LayoutHorizontalSpacing) / 2;
        group->layout()->setContentsMargins(margin, margin, margin, margin);
        auto* page = new QWidget;
        auto* layout = new QVBoxLayout(page);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(group);
        extraPages_->addTab(page, QString());
    }
    return extraPages_;
}

void frmEditThings::ReloadExtra() {
    extra_->Reload();
    bool any = false;
    for (int page = 0; QGroupBox * group : extra_->Groups()) {
        if (!group->title().isEmpty()) { // it stands on the tab instead
            extraPages_->setTabText(page, group->title());
            group->setTitle({});
        }
        any = any || !group->isHidden();
        extraPages_->setTabVisible(page++, !group->isHidden());
    }
    extraPages_->setVisible(any);
    PlaceExtra();
}

void frmEditThings::PlaceExtra() {
    auto* grid = static_cast<QGridLayout*>(form_->layout());
    const auto width = [grid](int row, int column) {
        return grid->itemAtPosition(row, column)->sizeHint().width() + grid->horizontalSpacing();
    };
    const int pageMargins = 2 * grid->horizontalSpacing();
    const int needed = width(0, 0) + std::max(width(0, 1), width(1, 1)) + extra_->StackedWidth() + pageMargins;
    const bool beside = !extraPages_->isHidden() && form_->parentWidget()->width() >= needed;
    if (beside == (grid->itemAtPosition(0, 2) != nullptr))
        return;
    extra_->Stack(beside);
    grid->removeWidget(extraPages_);
    grid->removeWidget(notes_);
    if (beside)
        grid->addWidget(extraPages_, 0, 2, 2, 1);
    else
        grid->addWidget(extraPages_, 2, 0, 1, 2);
    grid->addWidget(notes_, 3, 0, 1, beside ? 3 : 2);
    grid->setColumnStretch(2, beside ? 1 : 0);
}

QWidget* frmEditThings::BuildHead() {
    thingNames_ = new QComboBox;
    thingNames_->setObjectName(QStringLiteral("cmbThingNames"));
    thingNames_->setAccessibleName(tr("Thing"));
    thingNames_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    thingNames_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon); // for any name
    thingNames_->setModel(&names_);
    connect(thingNames_, &QComboBox::currentIndexChanged, this, [this](int row) {
        if (!filling_)
            ShowThings({{names_.Rows().At(row)}, names_.Rows().At(row)});
    });
    number_ = new QLabel;
    number_->setBuddy(thingNames_);
    auto* rename = NewButton("cmdRename", tr("Re&name..."));
    connect(rename, &QPushButton::clicked, this, &frmEditThings::Rename);
    auto* restore = NewButton("cmdRestore", tr("&Restore"));
    connect(restore, &QPushButton::clicked, this, &frmEditThings::Restore);

    auto* duplicate = NewButton("cmdDuplicate", tr("&Duplicate..."));
    duplicate->setToolTip(tr("Make another one of it (Ctrl+D)"));
    connect(duplicate, &QPushButton::clicked, this, [this] { context_.links.Duplicate(); });

    auto* head = new QWidget;
    auto* layout = new QHBoxLayout(head);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(number_);
    layout->addWidget(thingNames_, 1);
    layout->addWidget(duplicate);
    layout->addWidget(rename);
    layout->addWidget(restore);
    return head;
}

QWidget* frmEditThings::BuildNumbers() {
    preview_ = new StatePreview(context_, QStringLiteral("picThing"), StatePreview::Of::Runs);
    auto* group = new QGroupBox(tr("Properties"));
    auto* form = new QGridLayout(group);
    form->addWidget(preview_, 0, 0, 1, 2);
    form->setRowStretch(0, 1);
    for (const NumberField& field : numberFields) {
        const QString text = FieldLabel(field.member);
        auto* box = new NumberBox(QString::fromLatin1(field.control), text, boxes_.Field(RowOf(field.member)),
                                  FormOf(FieldOf(field.member).unit), context_);
        box->setFixedWidth(WidthForDigits(*box, longestDigits));
        box->setAccessibleDescription(tr(field.hint));
        auto* label = new QLabel(text);
        label->setBuddy(box);
        label->setToolTip(tr(field.hint));
        const int row = form->rowCount();
        form->addWidget(label, row, 0);
        form->addWidget(box, row, 1);
        boxes_.Add(*box);
    }
    return group;
}

QWidget* frmEditThings::BuildReferences(Reference reference, const QString& heading,
                                        std::span<const ReferenceField> fields,
                                        const std::function<void(std::int32_t)>& show) {
    auto* group = new QGroupBox(heading);
    auto* form = new QGridLayout(group);
    form->setColumnMinimumWidth(0, LabelWidth(fontMetrics()));
    form->setColumnStretch(2, 1);
    for (const ReferenceField& field : fields) {
        auto* row = new ReferenceRow(reference, QString::fromLatin1(field.stem), FieldLabel(field.member),
                                     boxes_.Field(RowOf(field.member)), context_, *form, show);
        references_.push_back(row);
        boxes_.Add(row->Box());
    }
    form->setRowStretch(form->rowCount(), 1);
    return group;
}

QWidget* frmEditThings::BuildFlags() {
    flagTree_ = NewPlainList("trvFlags", tr("Flags"));
    for (const auto bits : {&ThingRecord::bits, &ThingRecord::bits21, &ThingRecord::bits24})
        ForField(*flagTree_, RowOf(bits));
    auto* narrowed = new QSortFilterProxyModel(flagTree_);
    narrowed->setSourceModel(&flags_);
    narrowed->setFilterCaseSensitivity(Qt::CaseInsensitive);
    flagTree_->setModel(narrowed);
    auto* filter = new FilterBox(tr("Filter the flags"), tr("Name"));
    filter->setObjectName(QStringLiteral("txtFlagFilter"));
    filter->LeadTo(*flagTree_);
    filter->EnterLeads();
    connect(filter, &QLineEdit::textChanged, narrowed, &QSortFilterProxyModel::setFilterFixedString);
    flagTree_->setItemDelegate(new RoomyRows(flagTree_));
    flagTree_->setContextMenuPolicy(Qt::ActionsContextMenu);
    connect(NewAction("actRestoreFlags", tr("Restore flags"), flagTree_), &QAction::triggered, &flags_,
            &FlagListModel::Restore);
    auto* group = new QGroupBox(tr("Flags"));
    auto* layout = new QVBoxLayout(group);
    layout->addWidget(filter);
    layout->addWidget(flagTree_);
    return group;
}

QWidget* frmEditThings::BuildNotes() {
    txtNotes_ = new NoteBox(RecordKind::Thing, Selection(), context_);
    txtNotes_->setMinimumHeight(txtNotes_->HeightOf(2));
    auto* group = new QGroupBox(tr("Notes"));
    auto* layout = new QVBoxLayout(group);
    layout->addWidget(txtNotes_);
    notes_ = group;
    return group;
}

void frmEditThings::fillStaticData() {
    const int former = Selection().records.empty() ? 0 : Selection().current;
    {
        const QScopedValueRollback filling(filling_, true);
        boxes_.Show({}); // until the patch's things are known to be there
        names_.Reset();
        flags_.Reload();
        ReloadExtra();
        notes_->setVisible(txtNotes_->HasNotes());
        flagTree_->setMinimumWidth(flagTree_->sizeHintForColumn(0) +
                                   2 * flagTree_->verticalScrollBar()->sizeHint().width());
    }
    const RecordRows& rows = names_.Rows();
    const int thing = rows.Count() == 0 ? former : rows.Nearest(former);
    ShowThings(rows.Count() == 0 ? RecordSelection() : RecordSelection{{thing}, thing});
    maker_->Reload();
}

void frmEditThings::ShowThings(RecordSelection things) {
    boxes_.Show(std::move(things));
    extra_->ShowSelection();
    updateForm();
    emit CurrentChanged();
}

void frmEditThings::updateForm() {
    const RecordSelection& things = Selection();
    number_->setText(things.Several() ? tr("%n things", nullptr, static_cast<int>(things.records.size()))
                                      : tr("Thing %1").arg(things.records.empty() ? 0 : things.current + 1));
    {
        const QScopedValueRollback filling(filling_, true);
        thingNames_->setCurrentIndex(things.records.empty() ? -1 : names_.Rows().RowOf(things.current));
    }
    flags_.FlagsChanged();
    txtNotes_->Update();
    maker_->ShowSelection(things.records);
    ShowPreview();
    SelectInList();
}

void frmEditThings::ShowCells(const std::vector<Cell>& cells) {
    names_.ShowCells(cells);
    const std::vector<std::int32_t>& shown = Selection().records;
    const auto isShown = [&shown](const Cell& cell) {
        return cell.kind == RecordKind::Thing && std::binary_search(shown.begin(), shown.end(), cell.index);
    };
    // What fields refer to may be called or look otherwise.
    const bool named = std::any_of(cells.begin(), cells.end(), [](const Cell& cell) {
        return cell.field == nameField || cell.field == lumpNameField || cell.field == existsField ||
               cell.kind == RecordKind::String;
    });
    const bool states =
        std::any_of(cells.begin(), cells.end(), [](const Cell& cell) { return cell.kind == RecordKind::State; });
    const bool lumps = RenamesLumps(cells);
    if (states || lumps)
        list_->viewport()->update(); // the pictures of things
    if (std::any_of(cells.begin(), cells.end(), isShown)) {
        boxes_.Update();
        extra_->Update();
        flags_.FlagsChanged();
        txtNotes_->Update();
        ShowPreview();
        return;
    }
    if (named)
        extra_->Update();
    if (states || lumps) {
        for (ReferenceRow* row : references_)
            row->UpdateDescription();
        ShowPreview();
    }
}

/// A list in which nothing is selected leaves the things that were shown.
void frmEditThings::FollowList() {
    if (filling_)
        return;
    RecordSelection selected =
        SelectedRecords(*list_, [this](int row) { return listed_.index(row, 0).data(recordRole).toInt(); });
    if (!selected.records.empty() && selected != Selection())
        ShowThings(std::move(selected));
}

/// The list follows the current thing, which is not selected in it while the filter hides it.
void frmEditThings::SelectInList() {
    const QScopedValueRollback filling(filling_, true);
    if (Selection().Several())
        return; // they were selected there
    const QModelIndex place = Selection().records.empty()
                                  ? QModelIndex()
                                  : listed_.mapFromSource(names_.index(names_.Rows().RowOf(Selection().current)));
    if (!place.isValid())
        list_->selectionModel()->clear();
    else if (list_->selectionModel()->selectedIndexes() != QModelIndexList{place})
        list_->setCurrentIndex(place);
}

/// Of the thing clicked last.
void frmEditThings::ShowPreview() {
    std::vector<StatePreview::Run> runs;
    const bool any = !Selection().records.empty();
    const RecordOrNew thing(Current().things, any ? Selection().current : 0);
    for (const ReferenceField& field : stateFields)
        runs.push_back({FieldLabel(field.member), any ? (*thing).*field.member : 0, field.member});
    preview_->ShowRuns(std::move(runs), 0,
                       any ? std::optional(Target{TargetKind::Thing, Selection().current}) : std::nullopt);
}

void frmEditThings::Rename() {
    if (Selection().records.empty())
        return;
    const int thing = Selection().current;
    const QString name = AskName(RecordKind::Thing, thing, tr("Thing %1").arg(thing + 1), tr("Enter a new name"));
    // Kept: the text goes to the entry of the thing after this one. docs/kept-behaviour.md
    if (!name.isEmpty())
        context_.links.ReplaceThingFilterEntry(thing + 1, name);
}

void frmEditThings::Restore() {
    if (Selection().records.empty())
        return;
    const char* question = Selection().Several() ? "Are you sure you want to restore these things?"
                                                 : "Are you sure you want to restore this thing?";
    if (context_.program.notifier.Ask(question, Buttons::YesNo) == Answer::No)
        return;
    // Kept: the state editor's list of things keeps a restored thing's former name. docs/kept-behaviour.md
    context_.edits.RestoreRecords(RecordKind::Thing, Selection().records, "things");
}

} // namespace plinket3

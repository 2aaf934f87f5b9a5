#include "ui/states/frmNewStates.h"

#include "ui/AcceptButtons.h"
#include "ui/LatinText.h"
#include "ui/NewButton.h"
#include "ui/fields/Labels.h"
#include "ui/states/ChainModel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QTableView>

namespace plinket3 {

namespace {

constexpr int usualCount = 4, mostStates = 999;
constexpr int rowsInView = 8;

template <class Widget> Widget* Named(const char* name, const QString& accessibleName) {
    auto* widget = new Widget;
    widget->setObjectName(QString::fromLatin1(name));
    widget->setAccessibleName(accessibleName);
    return widget;
}

} // namespace

frmNewStates::frmNewStates(const EditorContext& context, std::int32_t like, QWidget* parent)
    : QDialog(parent), context_(context), frames_(new ChainModel(context.program.engine, this)),
      count_(Named<QSpinBox>("txtCount", tr("Number of states"))), cmdSprite_(NewButton("cmdSprite", {})),
      lit_(new QCheckBox(tr("&Lit"))), end_(Named<QComboBox>("cmbEnd", tr("How it ends"))),
      next_(Named<QSpinBox>("txtNext", tr("State to go on with"))), cmdNext_(NewButton("cmdNext", tr("..."))),
      nextLabel_(new QLabel), thing_(Named<QComboBox>("cmbThing", tr("Thing that begins with it"))),
      thingField_(Named<QComboBox>("cmbThingField", tr("Field of the thing"))), note_(new QLabel),
      accept_(NewButton("cmdAccept", tr("OK"))) {
    setObjectName(QStringLiteral("frmNewStates"));
    setWindowTitle(tr("New states"));
    const Session& session = context_.program;
    const PatchSet& set = session.patch.current;
    free_ = FindFree(set, session.patch.defaults, session.engine, session.fixedUses, RecordKind::State);
    if (const StateRecord* state = set.states.Find(like)) {
        sprite_ = state->sprite;
        lit_->setChecked((state->subnumber & litBit) != 0);
        frames_->setData(frames_->index(0, ChainModel::FrameColumn), state->subnumber & ~litBit);
    }

    count_->setRange(1, mostStates);
    connect(count_, &QSpinBox::valueChanged, frames_, &ChainModel::Count);
    count_->setValue(usualCount);
    auto* hint = new QLabel(tr("What you set in the first row goes to all below that you leave alone."));
    hint->setWordWrap(true);
    note_->setObjectName(QStringLiteral("lblNote"));
    note_->setTextFormat(Qt::PlainText);
    note_->setWordWrap(true);
    note_->setMinimumHeight(fontMetrics().lineSpacing() * 2);
    QDialogButtonBox* buttons = AcceptButtons(*this, *accept_);

    auto* form = new QFormLayout(this);
    form->addRow(tr("&Number of states"), count_);
    form->addRow(tr("Sprite"), BuildSprite());
    form->addRow(BuildFrames());
    form->addRow(hint);
    form->addRow(tr("After the last"), BuildEnd());
    form->addRow(tr("First state of"), BuildBegins());
    form->addRow(note_);
    form->addRow(buttons);
    ShowSprite();
    for (QPushButton* chooser : {cmdSprite_, cmdNext_})
        chooser->setAutoDefault(false); // Enter is for OK
    count_->setFocus();
    count_->selectAll();

    connect(frames_, &QAbstractItemModel::dataChanged, this, &frmNewStates::Check);
    connect(frames_, &QAbstractItemModel::modelReset, this, &frmNewStates::Check);
    connect(end_, &QComboBox::currentIndexChanged, this, &frmNewStates::Check);
    Check();
}

QLayout* frmNewStates::BuildSprite() {
    cmdSprite_->setToolTip(tr("Choose a sprite, the first frame, and whether it is lit"));
    connect(cmdSprite_, &QPushButton::clicked, this, &frmNewStates::PickSprite);
    lit_->setObjectName(QStringLiteral("chkLit"));
    lit_->setToolTip(tr("Drawn fully lit, also in the dark"));
    auto* layout = new QHBoxLayout;
    layout->addWidget(cmdSprite_);
    layout->addWidget(lit_);
    layout->addStretch();
    return layout;
}

QTableView* frmNewStates::BuildFrames() {
    auto* table = Named<QTableView>("tblFrames", tr("Frames"));
    table->setModel(frames_);
    table->setItemDelegate(new ChainDelegate(context_.program.engine, table));
    table->setEditTriggers(QAbstractItemView::AllEditTriggers);
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->setTabKeyNavigation(false);
    table->horizontalHeader()->setStretchLastSection(true);
    table->horizontalHeader()->setHighlightSections(false);
    const int row = QComboBox().sizeHint().height(); // the highest of the boxes in it
    table->verticalHeader()->setDefaultSectionSize(row);
    table->setMinimumSize(fontMetrics().averageCharWidth() * 60,
                          table->horizontalHeader()->sizeHint().height() + row * rowsInView);
    return table;
}

QLayout* frmNewStates::BuildEnd() {
    using End = NewChain::End;
    for (const auto& [end, text] :
         {std::pair(End::Loop, tr("begins again")), std::pair(End::GoOn, tr("goes on at state")),
          std::pair(End::Stay, tr("stays in it for ever")), std::pair(End::Vanish, tr("ends: the thing is removed"))})
        end_->addItem(text, static_cast<int>(end));
    next_->setRange(context_.edits.LimitsOf(RecordKind::State, RowOf(&StateRecord::nextState)).lowest,
                    context_.edits.LimitsOf(RecordKind::State, RowOf(&StateRecord::nextState)).highest);
    connect(next_, &QSpinBox::valueChanged, this, [this] {
        nextTyped_ = true;
        Check();
    });
    cmdNext_->setAccessibleName(tr("Choose a state"));
    cmdNext_->setToolTip(tr("Choose a state"));
    cmdNext_->setMaximumWidth(fontMetrics().averageCharWidth() * 6);
    connect(cmdNext_, &QPushButton::clicked, this, &frmNewStates::PickNext);
    auto* layout = new QHBoxLayout;
    layout->addWidget(end_);
    layout->addWidget(next_, 1);
    layout->addWidget(cmdNext_);
    nextLabel_->setMinimumWidth(fontMetrics().averageCharWidth() * 8);
    layout->addWidget(nextLabel_);
    return layout;
}

QLayout* frmNewStates::BuildBegins() {
    const PatchSet& set = context_.program.patch.current;
    thing_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon); // for any name
    thing_->setMinimumContentsLength(16);
    thing_->addItem(tr("no thing"), noRecord);
    for (const std::int32_t thing : set.things.Numbers())
        thing_->addItem(ShownStart(context_.edits.RecordName(RecordKind::Thing, thing)), thing);
    for (std::size_t row = 0; row < fieldTable<ThingRecord>.size(); ++row)
        if (fieldTable<ThingRecord>[row].unit == FieldUnit::State)
            thingField_->addItem(ShownText(fieldTable<ThingRecord>[row].label), static_cast<int>(row));
    thingField_->setCurrentIndex(thingField_->findData(RowOf(&ThingRecord::farAttackState)));
    connect(thing_, &QComboBox::currentIndexChanged, this, &frmNewStates::ProposeNext);
    auto* layout = new QHBoxLayout;
    layout->addWidget(thing_, 1);
    layout->addWidget(thingField_);
    return layout;
}

void frmNewStates::ShowSprite() {
    cmdSprite_->setText(ShownText(context_.program.patch.current.SpriteName(sprite_)) + QStringLiteral("..."));
}

void frmNewStates::PickSprite() {
    const std::int32_t first = frames_->Frames().front().frame;
    const auto picked = context_.links.PickSprite({sprite_, first | (lit_->isChecked() ? litBit : 0)});
    if (!picked)
        return;
    sprite_ = picked->sprite;
    lit_->setChecked((picked->frame & litBit) != 0);
    frames_->setData(frames_->index(0, ChainModel::FrameColumn), picked->frame & ~litBit);
    ShowSprite();
}

void frmNewStates::PickNext() {
    if (const auto picked = context_.links.PickState(next_->value()))
        next_->setValue(*picked);
}

/// The state in which the thing moves, which is where most of its runs go on.
void frmNewStates::ProposeNext() {
    const std::int32_t thing = thing_->currentData().toInt();
    if (thing != noRecord && !nextTyped_) {
        const QSignalBlocker quiet(next_);
        next_->setValue(context_.program.patch.current.things[thing].firstMovingState);
    }
    Check();
}

NewChain frmNewStates::Chain() const {
    NewChain chain;
    chain.sprite = sprite_;
    chain.lit = lit_->isChecked();
    chain.frames = frames_->Frames();
    chain.end = static_cast<NewChain::End>(end_->currentData().toInt());
    chain.next = next_->value();
    if (const std::int32_t thing = thing_->currentData().toInt(); thing != noRecord)
        chain.begins = Cell{RecordKind::Thing, thing, thingField_->currentData().toInt()};
    return chain;
}

void frmNewStates::Check() {
    const NewChain chain = Chain();
    const bool goesOn = chain.end == NewChain::End::GoOn;
    next_->setEnabled(goesOn);
    cmdNext_->setEnabled(goesOn);
    nextLabel_->setText(goesOn ? StateLabelText(context_.program.patch.current, chain.next) : QString());
    thingField_->setEnabled(chain.begins.has_value());
    const Status status = MakeChain(context_.program, free_, chain, made_);
    const QLocale english(QLocale::English);
    note_->setText(!status ? ShownText(status.Reason())
                   : free_.unlimited
                       ? tr("Takes free states, and new ones when these run out.")
                       : tr("Takes %1 of %2 free states.")
                             .arg(english.toString(chain.frames.size()), english.toString(free_.Count())));
    accept_->setEnabled(static_cast<bool>(status));
}

std::optional<MadeChain> frmNewStates::Ask() {
    if (exec() != Accepted || !MakeChain(context_.program, free_, Chain(), made_))
        return std::nullopt;
    return made_;
}

} // namespace plinket3

#include "ui/pickers/frmSelectSprite.h"

#include "ui/LatinText.h"
#include "ui/fields/FrameSpinBox.h"
#include "ui/fields/SpriteView.h"
#include "ui/lists/TextListModel.h"
#include "ui/lists/ThumbnailDelegate.h"

#include <QHBoxLayout>

namespace plinket3 {

namespace {

constexpr std::int32_t noSprite = -1;

} // namespace

frmSelectSprite::frmSelectSprite(Program& program, Thumbnails& thumbnails, QWidget* parent)
    : PickerDialog("frmSelectSprite", tr("Choose a sprite"), program, parent),
      names_(new TextListModel(
          this, [this] { return sprites_.Numbers().size(); },
          [this, &program](std::size_t row) {
              return ShownText(program.patch.current.SpriteName(sprites_.At(static_cast<int>(row))));
          })),
      narrowed_(new QSortFilterProxyModel(this)), lstSprites_(new QListView), udFrame_(new FrameSpinBox),
      picPreview_(new SpriteView(QStringLiteral("picPreview"), program)), lblPreview_(new QLabel) {
    narrowed_->setSourceModel(names_);
    narrowed_->setFilterCaseSensitivity(Qt::CaseInsensitive);
    lstSprites_->setObjectName(QStringLiteral("lstSprites"));
    lstSprites_->setAccessibleName(tr("Sprites"));
    lstSprites_->setModel(narrowed_);
    lstSprites_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    lstSprites_->setUniformItemSizes(true);
    new ThumbnailDelegate(*lstSprites_, 0, thumbnails, [this](const QModelIndex& row) {
        const std::int32_t sprite = sprites_.At(narrowed_->mapToSource(row).row());
        return SpriteFrame{std::string(program_.patch.current.SpriteName(sprite)), 0};
    });
    lblPreview_->setObjectName(QStringLiteral("lblPreview"));
    lblPreview_->setAlignment(Qt::AlignCenter);

    auto* frameLabel = new QLabel(tr("&Frame:"));
    frameLabel->setBuddy(udFrame_);
    auto* frame = new QHBoxLayout;
    frame->addWidget(frameLabel);
    frame->addWidget(udFrame_, 1);
    auto* chosen = new QWidget;
    auto* layout = new QVBoxLayout(chosen);
    layout->setContentsMargins({});
    layout->addLayout(frame);
    layout->addWidget(picPreview_, 1);
    layout->addWidget(lblPreview_);
    SetList(*lstSprites_, chosen);
    resize(fontMetrics().averageCharWidth() * 64, fontMetrics().height() * 26);
    connect(udFrame_, &QSpinBox::valueChanged, this, &frmSelectSprite::ShowPreview);
    connect(picPreview_, &SpriteView::Turned, this, &frmSelectSprite::NameLump);
}

void frmSelectSprite::Fill() {
    sprites_ = RecordRows(program_.patch.current.sprites.Numbers());
    names_->Reset();
}

void frmSelectSprite::Narrow(const QString& text) { narrowed_->setFilterFixedString(text); }

/// Another sprite starts with its first frame.
void frmSelectSprite::RowSelected(const QModelIndex&) {
    udFrame_->setValue(0);
    ShowPreview();
}

std::optional<std::int32_t> frmSelectSprite::ChosenSprite() const {
    const int row = narrowed_->mapToSource(lstSprites_->currentIndex()).row();
    return row < 0 ? std::nullopt : std::optional(sprites_.At(row));
}

void frmSelectSprite::ShowPreview() {
    NameLump(picPreview_->ShowSpriteFrame(ChosenSprite().value_or(noSprite), udFrame_->value()));
}

void frmSelectSprite::NameLump(const QString& lump) {
    lblPreview_->setText(lump.isEmpty() ? QStringLiteral("-") : lump);
}

std::optional<EditorLinks::SpriteChoice> frmSelectSprite::Choose(EditorLinks::SpriteChoice start) {
    Prepare();
    udFrame_->Form(FrameFormOf(program_.settings));
    Select(narrowed_->index(sprites_.RowOf(start.sprite), 0));
    udFrame_->setValue(lastFrame); // so that the frame is shown in the form that is chosen now
    udFrame_->setValue(start.frame & ~litBit);
    if (!Run())
        return std::nullopt;
    return EditorLinks::SpriteChoice{ChosenSprite().value_or(start.sprite), udFrame_->value() | (start.frame & litBit)};
}

} // namespace plinket3

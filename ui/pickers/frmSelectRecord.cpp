#include "ui/pickers/frmSelectRecord.h"

#include "patch/Cells.h"
#include "patch/StepNames.h"
#include "ui/LatinText.h"
#include "ui/lists/TextListModel.h"
#include "ui/lists/ThumbnailDelegate.h"

namespace plinket3 {

frmSelectRecord::frmSelectRecord(Program& program, RecordKind kind, Thumbnails& thumbnails, QWidget* parent)
    : PickerDialog(kind == RecordKind::Thing   ? "frmSelectThing"
                   : kind == RecordKind::Sound ? "frmSelectSound"
                                               : "frmSelectString",
                   kind == RecordKind::Thing   ? tr("Choose a thing")
                   : kind == RecordKind::Sound ? tr("Choose a sound")
                                               : tr("Choose a string"),
                   program, parent),
      kind_(kind), names_(new TextListModel(
                       this, [this] { return static_cast<std::size_t>(records_.Count()); },
                       [this](std::size_t row) { return Text(records_.At(static_cast<int>(row))); })),
      narrowed_(new QSortFilterProxyModel(this)), lstRecords_(new QListView) {
    narrowed_->setSourceModel(names_);
    narrowed_->setFilterCaseSensitivity(Qt::CaseInsensitive);
    lstRecords_->setObjectName(QStringLiteral("lstRecords"));
    lstRecords_->setAccessibleName(windowTitle());
    lstRecords_->setModel(narrowed_);
    lstRecords_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    lstRecords_->setUniformItemSizes(true);
    if (kind == RecordKind::Thing)
        new ThumbnailDelegate(*lstRecords_, 0, thumbnails, [this](const QModelIndex& row) {
            return FrameOfThing(program_.patch.current, records_.At(narrowed_->mapToSource(row).row()));
        });
    SetList(*lstRecords_, nullptr);
    resize(fontMetrics().averageCharWidth() * 50, fontMetrics().height() * 26);
}

void frmSelectRecord::Fill() {
    records_ = RecordRows(RecordNumbers(program_.patch.current, kind_));
    names_->Reset();
}

/// Things are shown by the numbers that patches count them by.
QString frmSelectRecord::Text(std::int32_t record) const {
    const PatchSet& set = program_.patch.current;
    if (kind_ == RecordKind::String) {
        const std::vector<EngineConfiguration::String>& keys = program_.engine.strings;
        const auto place = static_cast<std::size_t>(record);
        return ShownText(place < keys.size() ? keys[place].mnemonic : std::string()) + QStringLiteral("  ") +
               ShownStart(set.strings[record].text).simplified();
    }
    const bool thing = kind_ == RecordKind::Thing;
    return QString::number(std::int64_t{record} + (thing ? 1 : 0)) + QStringLiteral("  ") +
           ShownStart(thing ? RecordName(set, kind_, record) : set.SoundName(record)).simplified();
}

void frmSelectRecord::Narrow(const QString& text) { narrowed_->setFilterFixedString(text.trimmed()); }

std::optional<std::int32_t> frmSelectRecord::Choose(std::int32_t start) {
    Refresh(); // records may have other names now
    Prepare();
    Select(narrowed_->index(records_.RowOf(start), 0));
    if (!Run())
        return std::nullopt;
    return records_.At(narrowed_->mapToSource(lstRecords_->currentIndex()).row());
}

} // namespace plinket3

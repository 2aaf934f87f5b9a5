#pragma once

#include "ui/lists/RecordRows.h"
#include "ui/pickers/PickerDialog.h"

#include <QListView>
#include <QSortFilterProxyModel>

#include <cstdint>
#include <optional>

namespace plinket3 {

class TextListModel;
class Thumbnails;

/// Lets the user pick a thing or a sound by number or name, or a string by its key or text.
class frmSelectRecord : public PickerDialog {
    Q_OBJECT
public:
    frmSelectRecord(Program& program, RecordKind kind, Thumbnails& thumbnails, QWidget* parent);

    /// Starts at the record `start` and returns one; nothing when the user cancels.
    std::optional<std::int32_t> Choose(std::int32_t start);

protected:
    void Fill() override;
    void Narrow(const QString& text) override;
    void RowSelected(const QModelIndex&) override {}

private:
    QString Text(std::int32_t record) const;

    RecordKind kind_;
    RecordRows records_;
    TextListModel* names_;
    QSortFilterProxyModel* narrowed_;
    QListView* lstRecords_;
};

} // namespace plinket3

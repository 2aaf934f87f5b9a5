#pragma once

#include "ui/EditorContext.h"
#include "ui/fields/SelectedValue.h"

#include <QAbstractListModel>

#include <vector>

namespace plinket3 {

/// The bits of the selected records, as the engine configuration names them, each one checkable; partly checked where
/// the records differ. Where several fields hold bits, each has a heading. Bits of a single record that differ from the
/// engine's own are bold, and their tooltips say so.
class FlagListModel : public QAbstractListModel {
    Q_OBJECT
public:
    /// Values whose meaning is bits, of one selection; those that the engine does not know are left out.
    FlagListModel(const EditorContext& context, std::vector<SelectedValue> fields)
        : context_(context), fields_(std::move(fields)) {}

    /// The engine may have other bits now.
    void Reload();
    /// Others are selected, or they have other bits now.
    void FlagsChanged();
    /// Gives the records the engine's own bits.
    void Restore();

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    static constexpr int heading = -1; // in place of a bit
    struct Row {
        const SelectedValue* field;
        BitSet set;
        int bit;
    };

    const std::vector<std::int32_t>& Records() const { return fields_.front().Selection().records; }
    const std::string& NameOf(const Row& row) const;
    QString HintOf(const Row& row) const;
    QVariant HeadingData(const Row& row, int role) const;
    template <class BitsOf>
    void StoreBits(const std::vector<const SelectedValue*>& fields, const std::string& stepName, BitsOf bitsOf);

    EditorContext context_;
    std::vector<SelectedValue> fields_;
    std::vector<Row> rows_;
};

} // namespace plinket3

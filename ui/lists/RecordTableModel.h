#pragma once

#include "ui/EditorContext.h"
#include "ui/lists/KeptMarks.h"
#include "ui/lists/RecordRows.h"

#include <QAbstractTableModel>

namespace plinket3 {

/// A list of records over the patch data, a row for each; bold, with the engine's own value in the tooltip, where what
/// a column shows differs from that value.
class RecordTableModel : public QAbstractTableModel {
    Q_OBJECT
public:
    /// The text in which a filter looks for a row.
    static constexpr int searchRole = Qt::UserRole;

    RecordTableModel(const EditorContext& context, RecordKind kind)
        : context_(context), kind_(kind), kept_(context.program.patch.current, kind) {}

    /// Another patch is open.
    virtual void Reset();
    virtual void ShowCells(const std::vector<Cell>& cells);

    const RecordRows& Rows() const { return rows_; }
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

protected:
    virtual int Columns() const = 0;
    virtual QString Header(int column) const = 0;
    virtual QString HeaderTip(int column) const { return Header(column); }
    /// What a column shows for a record of the set; for one that the set does not have, for a new one.
    virtual QString Text(const PatchSet& set, std::int32_t record, int column) const = 0;
    /// Whether the record has not the engine's value in this column; asked only for records that the engine has, or
    /// that are made.
    virtual bool HasOtherValue(std::int32_t record, int column) const {
        return Text(Current(), record, column) != Text(Defaults(), record, column);
    }
    virtual QString SearchText(std::int32_t record) const = 0;
    virtual bool IsNumber(int column) const = 0;
    /// The tooltip of a value that is the engine's.
    virtual QString PlainTip(std::int32_t /*record*/, int /*column*/) const { return {}; }

    const PatchSet& Current() const { return context_.program.patch.current; }
    const PatchSet& Defaults() const { return context_.program.patch.defaults; }

    EditorContext context_;

private:
    static constexpr int signColumn = 1; // of records that are kept: the name

    QVariant Value(std::int32_t record, int column, int role) const;
    QVariant Alignment(int column) const;
    bool Differs(std::int32_t record, int column) const;

    RecordKind kind_;
    RecordRows rows_;
    KeptMarks kept_;
};

} // namespace plinket3

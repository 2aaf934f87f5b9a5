#pragma once

#include "ui/EditorContext.h"
#include "ui/lists/KeptMarks.h"
#include "ui/lists/RecordRows.h"

#include <QAbstractListModel>

namespace plinket3 {

/// The names of the things, weapons or kinds of ammunition, in record order; bold where a record is not the engine's.
class NamesModel : public QAbstractListModel {
    Q_OBJECT
public:
    /// `kind` must be one whose records have names.
    NamesModel(const EditorContext& context, RecordKind kind);

    /// Another patch is open.
    void Reset();
    void ShowCells(const std::vector<Cell>& cells);

    const RecordRows& Rows() const { return rows_; }
    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    QVariant Value(std::int32_t record, int role) const;
    bool Differs(std::int32_t record) const;

    EditorContext context_;
    RecordKind kind_;
    RecordRows rows_;
    KeptMarks kept_;
};

} // namespace plinket3

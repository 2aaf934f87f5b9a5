#pragma once

#include "ui/lists/RecordTableModel.h"

namespace plinket3 {

/// Sprites or music in their order, each with its name, the engine's own one, and what the WADs have under that name.
class LumpNamesModel : public RecordTableModel {
    Q_OBJECT
public:
    /// `lumpsHeader` is the last column's.
    LumpNamesModel(const EditorContext& context, RecordKind kind, const QString& lumpsHeader)
        : RecordTableModel(context, kind), kind_(kind), lumpsHeader_(lumpsHeader) {}

protected:
    /// What the WADs have under a name.
    virtual QString Lumps(const std::string& name) const = 0;

    int Columns() const override;
    QString Header(int column) const override;
    QString Text(const PatchSet& set, std::int32_t record, int column) const override;
    bool HasOtherValue(std::int32_t record, int column) const override;
    QString SearchText(std::int32_t record) const override;

    enum ColumnPlace { numberColumn, nameColumn, defaultColumn, lumpsColumn, columnCount };

private:
    std::string Name(const PatchSet& set, std::int32_t record) const;

    RecordKind kind_;
    QString lumpsHeader_;
};

} // namespace plinket3

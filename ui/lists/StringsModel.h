#pragma once

#include "ui/lists/RecordTableModel.h"

namespace plinket3 {

/// The key of a string in extended patches; empty in an ordinary patch and for a string without one.
QString StringKey(const Session& session, std::int32_t string);

/// The strings in their order, with the start of their texts in the escaped form.
class StringsModel : public RecordTableModel {
    Q_OBJECT
public:
    static constexpr int numberColumn = 0, textColumn = 1,
                         keyColumn = 2; // the last one is a length in ordinary patches

    explicit StringsModel(const EditorContext& context) : RecordTableModel(context, RecordKind::String) {}

protected:
    int Columns() const override { return keyColumn + 1; }
    QString Header(int column) const override;
    QString Text(const PatchSet& set, std::int32_t record, int column) const override;
    bool HasOtherValue(std::int32_t record, int column) const override;
    QString SearchText(std::int32_t record) const override;
    bool IsNumber(int column) const override;
};

} // namespace plinket3

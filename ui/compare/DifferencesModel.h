#pragma once

#include "patch/Compare.h"
#include "patch/ComparedPatch.h"
#include "patch/Program.h"

#include <QAbstractItemModel>
#include <QString>

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace plinket3 {

/// What the open patch is compared with.
struct Comparison {
    enum class With { File, Engine, SavedFile };
    With with = With::File;
    PatchPlace place; // of a file
    ComparedPatch there;
    std::optional<ComparedPatch> ancestor; // from which both come; else the engine's own data count
};

/// "Things": records of a kind, and what else stands with them.
QString KindTitle(RecordKind kind);

/// "3 differences".
QString CountText(std::size_t differences);

/// The differences as a tree: kinds, their records, and the fields of these.
class DifferencesModel : public QAbstractItemModel {
public:
    enum Column { What, Changed, Here, There, Ancestor, columnCountOfAll };

    /// `session` outlives the model. It shows nothing until it gets something.
    DifferencesModel(const Session& session, QObject* parent);

    /// Which differences are shown; all for an empty member.
    struct Filter {
        std::optional<RecordKind> kind;
        std::optional<ChangedIn> side;
    };
    /// Shows these, in the order of `Compare`; `comparison` lives until others are shown. When they are the same but
    /// for their values, views keep all that is selected and expanded, and true is returned.
    bool Show(std::vector<Difference> differences, const Comparison& comparison, const Filter& filter);
    void Clear();

    const std::vector<Difference>& Shown() const { return shown_; }
    /// Those below a row: of a kind, of a record, or the one of a field.
    std::span<const Difference> Below(const QModelIndex& index) const;
    /// The row of a difference; of its record when `record`.
    QModelIndex IndexOf(std::size_t difference, bool record) const;
    static bool IsKind(const QModelIndex& index) { return index.isValid() && !index.parent().isValid(); }

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    /// Which entries of the next finer list belong to one; its place in the coarser list.
    struct Node {
        std::size_t first = 0, count = 0, parent = 0;
    };
    void Build();
    QString Title(const Difference& difference) const;
    QString RecordTitle(const Cell& cell) const;
    QString ValueText(const PatchSet& set, const Difference& difference, const CellValue& value, bool whole) const;
    QString Text(const Difference& difference, int column, bool whole) const;
    QString SideText(std::span<const Difference> differences) const;

    const Session& session_;
    const Comparison* comparison_ = nullptr;
    std::vector<Difference> shown_;
    std::vector<Node> kinds_, records_; // of records, of differences
};

} // namespace plinket3

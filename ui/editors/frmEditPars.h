#pragma once

#include "ui/editors/EditorWindow.h"
#include "ui/lists/ParsModel.h"

#include <array>
#include <iterator>
#include <optional>

class QLabel;
class QLineEdit;
class QPushButton;
class QTreeView;

namespace plinket3 {

/// Edits the list of par times, the target times of levels. Each change stores the whole list as one step.
class frmEditPars : public EditorWindow {
    Q_OBJECT
public:
    explicit frmEditPars(const EditorContext& context);

    std::optional<std::int32_t> CurrentRecord() const override;

protected:
    bool SelectRecord(std::int32_t row) override;
    void Build() override;
    void fillStaticData() override;
    void updateForm() override;
    void ShowCells(const std::vector<Cell>& cells) override;

private:
    static constexpr std::size_t boxCount = std::size(parFields);

    std::optional<std::size_t> SelectedRow() const;
    void Select(int row);
    void ShowTitle();
    std::int32_t ReadBox(std::size_t box) const;
    void StoreBox(std::size_t box);
    void Add();
    void Remove();

    ParsModel* model_ = nullptr;
    QTreeView* lvwPars_ = nullptr;
    std::array<QLineEdit*, boxCount> boxes_{};
    QLabel* lblMapTitle_ = nullptr;
    QPushButton* cmdRemove_ = nullptr;
};

/// A time as it is typed: seconds, or minutes and seconds as in 1:30 or -1:30. Rounded and limited to 32 bits; no
/// number is 0.
std::int32_t ReadParTime(const QString& text);

} // namespace plinket3

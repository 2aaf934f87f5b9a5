#pragma once

#include "ui/EditorContext.h"

#include <QString>
#include <QWidget>

#include <cstdint>
#include <optional>
#include <vector>

namespace plinket3 {

/// One of the ten editors. It is made at start-up but builds its controls only when it is first needed, and fills them
/// only while it is seen. Views only look: an editor stores through `Edits` and nowhere else.
class EditorWindow : public QWidget {
    Q_OBJECT
public:
    /// `name` is the object name and what the log says: "  Loaded " and the name.
    EditorWindow(const char* name, const QString& caption, const EditorContext& context);

    /// The patch, the engine or the settings are others now.
    void Refresh();
    /// These cells have another value now.
    void CellsChanged(const std::vector<Cell>& cells);
    /// Builds and fills what is not yet up to date, also while the window is hidden.
    void BringUpToDate();
    /// `EditorLinks::ShowCell` inside this editor; false when it has no such record.
    bool ShowCell(const Cell& cell);
    /// The same without the focus.
    bool Select(std::int32_t record);
    /// The record whose fields are shown; of several, the one clicked last. Of par times, the place in the list.
    virtual std::optional<std::int32_t> CurrentRecord() const = 0;
    /// All that are selected, ascending, where more than one may be.
    virtual std::vector<std::int32_t> Selected() const;

signals:
    /// Perhaps other records are selected, or another one is the current one.
    void CurrentChanged();

protected:
    /// Selects a record alone, whatever a filter hides; false when there is none of that number.
    virtual bool SelectRecord(std::int32_t record) = 0;
    /// Makes the controls. Called once.
    virtual void Build() = 0;
    /// Fills what depends on the engine, the settings and the names. Stores nothing.
    virtual void fillStaticData() = 0;
    /// Shows the current record. Stores nothing.
    virtual void updateForm() = 0;
    /// Shows other values of these cells; never called with an empty list or before the first filling.
    virtual void ShowCells(const std::vector<Cell>& cells) = 0;

    void showEvent(QShowEvent* event) override;

    /// Asks for another name of a record that has one, and stores it. Empty when the user gives none.
    QString AskName(RecordKind kind, std::int32_t record, const QString& title, const QString& prompt);

    const PatchSet& Current() const { return context_.program.patch.current; }
    const PatchSet& Defaults() const { return context_.program.patch.defaults; }

    EditorContext context_;

private:
    bool built_ = false;
    bool upToDate_ = false;
};

} // namespace plinket3

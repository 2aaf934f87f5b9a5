#include "ui/WindowState.h"

#include "ui/LatinText.h"

#include <QAbstractItemView>
#include <QHeaderView>
#include <QSettings>
#include <QSplitter>
#include <QTableView>
#include <QTreeView>

namespace plinket3 {

namespace {

/// Calls visit(key, part) for each splitter and header that has, or whose list has, an object name.
template <class Visit> void ForEachPart(const QWidget& window, Visit visit) {
    for (QSplitter* splitter : window.findChildren<QSplitter*>())
        if (!splitter->objectName().isEmpty())
            visit(window.objectName() + QLatin1Char('/') + splitter->objectName(), splitter);
    for (QHeaderView* header : window.findChildren<QHeaderView*>()) {
        const QWidget* list = header->parentWidget();
        if (header->orientation() == Qt::Horizontal && list != nullptr && !list->objectName().isEmpty())
            visit(window.objectName() + QLatin1Char('/') + list->objectName(), header);
    }
}

} // namespace

WindowState::WindowState(const std::filesystem::path& settingsFolder)
    : file_(std::make_unique<QSettings>(ShownPath(settingsFolder / "windows.ini"), QSettings::IniFormat)) {}

WindowState::~WindowState() = default;

QByteArray WindowState::Bytes(const QString& key) const { return file_->value(key).toByteArray(); }

void WindowState::Bytes(const QString& key, const QByteArray& value) { file_->setValue(key, value); }

void WindowState::KeepParts(const QWidget& window) {
    ForEachPart(window, [this](const QString& key, auto* part) { Bytes(key, part->saveState()); });
}

void WindowState::RestoreParts(QWidget& window) const {
    ForEachPart(window, [this](const QString& key, auto* part) {
        if (const QByteArray state = Bytes(key); !state.isEmpty())
            part->restoreState(state);
    });
}

} // namespace plinket3

#include "ui/WindowState.h"

#include "core/Files.h"

#include <QAbstractItemView>
#include <QCryptographicHash>
#include <QHeaderView>
#include <QSplitter>
#include <QTableView>
#include <QTreeView>

namespace plinket3 {

namespace {

constexpr const char* heading = "; Places of Plinket3's windows: KEY=CHECKSUM STATE\n";
constexpr std::uint64_t largestFile = 1'000'000; // bytes, some hundred times what is written

/// The rest of a key's line. Another layout of what is stored gets another word here, and the old states are lost.
QByteArray Sealed(const QByteArray& key, const QByteArray& state) {
    QCryptographicHash hash(QCryptographicHash::Sha1);
    hash.addData("Plinket3 2\n" + key + '\n' + state);
    return hash.result().toHex() + ' ' + state.toBase64();
}

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
    : file_(settingsFolder / "windows.ini"), states_(Read(file_)) {}

WindowState::States WindowState::Read(const std::filesystem::path& file) {
    States states;
    std::string bytes;
    if (!ReadWholeFile(file, bytes, largestFile))
        return states;
    for (const QByteArray& line : QByteArray::fromStdString(bytes).split('\n')) {
        const qsizetype keyEnd = line.indexOf('='), stateBegin = line.indexOf(' ') + 1;
        const QByteArray key = line.left(keyEnd), state = QByteArray::fromBase64(line.mid(stateBegin));
        if (keyEnd > 0 && line.mid(keyEnd + 1) == Sealed(key, state))
            states[QString::fromUtf8(key)] = state;
    }
    return states;
}

void WindowState::Bytes(const QString& key, const QByteArray& value) { states_[key] = changed_[key] = value; }

void WindowState::Write() {
    States stored = Read(file_);
    for (auto entry = changed_.cbegin(); entry != changed_.cend(); ++entry)
        stored[entry.key()] = entry.value();
    QByteArray text = heading;
    for (auto entry = stored.cbegin(); entry != stored.cend(); ++entry)
        text += entry.key().toUtf8() + '=' + Sealed(entry.key().toUtf8(), entry.value()) + '\n';
    if (WriteFileAtomically(file_, std::string_view(text.data(), static_cast<std::size_t>(text.size()))))
        changed_.clear();
}

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

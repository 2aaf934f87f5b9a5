#include "ui/FileDialogs.h"

#include "core/Notifier.h"
#include "core/modConfig.h"
#include "ui/FrontWindow.h"
#include "ui/LatinLineEdit.h"
#include "ui/LatinText.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QLineEdit>
#include <QRegularExpression>

#include <filesystem>

namespace plinket3 {

namespace {

constexpr const char* lastFolderKey = "lastDir";

/// "A (*.a;*.b)|*.a;*.b|B|*.c" in the toolkit's form: "A (*.a *.b);;B (*.c)".
QString ToolkitFilter(const QString& filter) {
    const QStringList parts = filter.split(QLatin1Char('|'));
    QStringList entries;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        const QString name = parts[i].section(QStringLiteral(" ("), 0, 0);
        const QString patterns = QString(parts[i + 1]).replace(QLatin1Char(';'), QLatin1Char(' '));
        entries << name + QStringLiteral(" (") + (patterns == QStringLiteral("*.*") ? QStringLiteral("*") : patterns) +
                       QLatin1Char(')');
    }
    return entries.join(QStringLiteral(";;"));
}

QString FirstSuffix(const QString& filter) {
    return filter.section(QLatin1Char('|'), 1, 1).section(QLatin1Char(';'), 0, 0).section(QLatin1Char('.'), 1);
}

/// False for "My mod v1.2", where the dot belongs to a number: an ending begins with a letter and is short.
bool HasEnding(const QString& file) {
    static const QRegularExpression ending(QStringLiteral(".\\.[A-Za-z][A-Za-z0-9]{0,3}$"));
    return ending.match(QFileInfo(file).fileName()).hasMatch();
}

} // namespace

int QtFileDialogs::Choose(const QString& title, const QString& prompt, const QStringList& rows) {
    bool chosen = false;
    const QString row =
        QInputDialog::getItem(FrontWindow(), title, prompt, rows, static_cast<int>(rows.size()) - 1, false, &chosen);
    return chosen ? static_cast<int>(rows.indexOf(row)) : -1;
}

QString QtFileDialogs::StartFolder() const {
    std::filesystem::path folder = PathOf(settings_.Text(lastFolderKey));
    std::error_code ignored;
    while (!std::filesystem::is_directory(folder, ignored)) {
        if (!folder.has_relative_path())
            return {};
        folder = folder.parent_path();
    }
    return ShownPath(folder);
}

QString QtFileDialogs::Remember(const QString& file) {
    if (!file.isEmpty())
        settings_.Text(lastFolderKey, QFileInfo(file).absolutePath().toStdString());
    return QDir::toNativeSeparators(file);
}

QString QtFileDialogs::OpenFile(const QString& title, const QString& filter) {
    return Remember(QFileDialog::getOpenFileName(FrontWindow(), title, StartFolder(), ToolkitFilter(filter)));
}

QStringList QtFileDialogs::OpenFiles(const QString& title, const QString& filter) {
    QStringList files = QFileDialog::getOpenFileNames(FrontWindow(), title, StartFolder(), ToolkitFilter(filter));
    if (!files.isEmpty())
        Remember(files.constFirst());
    for (QString& file : files)
        file = QDir::toNativeSeparators(file);
    return files;
}

QString QtFileDialogs::SaveFile(const QString& title, const QString& filter, const QString& proposed) {
    QFileDialog dialog(FrontWindow(), title, StartFolder(), ToolkitFilter(filter));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setOption(QFileDialog::DontConfirmOverwrite); // a desktop's own dialog asks before the suffix is there
    if (!proposed.isEmpty())
        dialog.selectFile(proposed);
    while (dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty()) {
        QString file = dialog.selectedFiles().constFirst();
        if (!HasEnding(file))
            file += QLatin1Char('.') + FirstSuffix(filter);
        if (!QFileInfo::exists(file) || notifier_.Ask("The file " + QDir::toNativeSeparators(file).toStdString() +
                                                          " exists already. Do you want to overwrite it?",
                                                      Buttons::NoYes) == Answer::Yes)
            return Remember(file);
    }
    return {};
}

QString QtFileDialogs::AskText(const QString& title, const QString& prompt, const QString& start,
                               Characters characters) {
    QInputDialog dialog(FrontWindow());
    dialog.setObjectName(QStringLiteral("askText"));
    dialog.setWindowTitle(title);
    dialog.setLabelText(prompt);
    dialog.setTextValue(start);
    if (characters == Characters::OfNames) {
        auto* box = dialog.findChild<QLineEdit*>();
        box->setValidator(new TextValidator(box, WhyNoName, [&dialog, prompt](const QString& why) {
            dialog.setLabelText(prompt + QLatin1Char('\n') + why);
        }));
        QObject::connect(box, &QLineEdit::textEdited, &dialog, [&dialog, prompt] { dialog.setLabelText(prompt); });
    }
    return dialog.exec() == QDialog::Accepted ? dialog.textValue() : QString();
}

} // namespace plinket3

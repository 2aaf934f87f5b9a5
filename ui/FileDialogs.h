#pragma once

#include <QString>
#include <QStringList>

namespace plinket3 {

class Notifier;
class Settings;

/// Asks for the names of files and for lines of text; tests answer in its place.
class FileDialogs {
public:
    /// What may be typed as a text: anything, or only what a record can be called in a patch.
    enum class Characters { Any, OfNames };

    virtual ~FileDialogs() = default;
    /// `filter` in the form "Name (*.ext)|*.ext|...". Empty when nothing was chosen.
    virtual QString OpenFile(const QString& title, const QString& filter) = 0;
    /// The same for one or several files.
    virtual QStringList OpenFiles(const QString& title, const QString& filter) = 0;
    /// The same for a file to write, which is asked about when it exists. `proposed` is where the dialog starts.
    virtual QString SaveFile(const QString& title, const QString& filter, const QString& proposed) = 0;
    /// A line of text; empty when the user cancels.
    virtual QString AskText(const QString& title, const QString& prompt, const QString& start,
                            Characters characters) = 0;
    /// The row that is chosen from a list; -1 when the user cancels.
    virtual int Choose(const QString& title, const QString& prompt, const QStringList& rows) = 0;
};

/// The real dialogs. They start in the folder of the setting "lastDir" and remember it.
class QtFileDialogs : public FileDialogs {
public:
    QtFileDialogs(Settings& settings, Notifier& notifier) : settings_(settings), notifier_(notifier) {}
    QString OpenFile(const QString& title, const QString& filter) override;
    QStringList OpenFiles(const QString& title, const QString& filter) override;
    QString SaveFile(const QString& title, const QString& filter, const QString& proposed) override;
    QString AskText(const QString& title, const QString& prompt, const QString& start, Characters characters) override;
    int Choose(const QString& title, const QString& prompt, const QStringList& rows) override;

private:
    /// Of a folder that is gone, the nearest above it that is there; empty when there is none.
    QString StartFolder() const;
    QString Remember(const QString& file);

    Settings& settings_;
    Notifier& notifier_;
};

} // namespace plinket3

#pragma once

#include "patch/Program.h"
#include "patch/modPatchCheck.h"
#include "ui/EditorSet.h"
#include "ui/run/RunChoice.h"

#include <QList>
#include <QObject>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class QAction;

namespace plinket3 {

class PortRun;

/// The menu "Run": starts a port with the patch as it is now, in a file of its own, and tells how that went. Ports run
/// beside this program, any number of them; those that still run when it ends go on.
class RunCommands : public QObject {
    Q_OBJECT
public:
    /// All must outlive this object; `window` is the parent of the dialog.
    RunCommands(Program& program, EditorSet& editors, QWidget& window);
    ~RunCommands() override;

    const QList<QAction*>& Actions() const { return actions_; }
    /// Another patch is open: what ports say of the one before no longer counts.
    void SessionChanged();

signals:
    void StatusText(const QString& text);
    /// What a port says about the patch, in place of what it said before.
    void Reported(const QString& port, const std::vector<modPatchCheck::Finding>& findings);

private:
    /// What stands in the test map: a selected thing, or what gives the selected weapon.
    struct Placed {
        QString name;
        std::optional<std::int32_t> thing; // absent for a weapon that the player has anyway
        bool isWeapon = false;
    };
    /// A run and what is needed to understand what the port says.
    struct Running {
        PortRun* run;
        QString port;
        std::string bytes; // of the patch
        unsigned session;  // the one that it belongs to
    };

    void RunAgain();
    void Ask();
    void Run(const RunChoice& choice);
    std::optional<Placed> ToPlace() const;
    /// Those that are named as games name theirs, and the chosen one where a WAD has it under whatever name.
    std::vector<std::string> Levels(const std::string& chosen = {}) const;
    /// The WADs beside the IWAD: the one that holds the patch and the data WADs, by their whole paths.
    std::vector<std::string> DataWads() const;
    /// Of the WAD that holds the patch a copy that holds none, in the run's folder, takes its place among `dataWads`:
    /// there are ports that read the patches in WADs after the one that they are given.
    Status TakePatchOut(const PortRun& run, std::vector<std::string>& dataWads) const;
    void Report(const Running& running, const std::vector<modPatchCheck::Finding>& more = {});
    void Ended(const Running& running, int exitCode, bool crashed);
    void Refuse(const QString& text);

    Program& program_;
    EditorSet& editors_;
    QWidget& window_;
    QList<QAction*> actions_;
    unsigned session_ = 0;
};

} // namespace plinket3

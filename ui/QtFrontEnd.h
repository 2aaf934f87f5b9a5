#pragma once

#include "core/modMain.h"
#include "patch/Edits.h"
#include "patch/Program.h"
#include "ui/Audio.h"
#include "ui/FileDialogs.h"
#include "ui/PlainToolTips.h"
#include "ui/frmMain.h"
#include "ui/frmSplash.h"

#include <QObject>

#include <memory>

namespace plinket3 {

/// What start-up and shut-down do to the windows.
class QtFrontEnd : public QObject, public FrontEnd {
    Q_OBJECT
public:
    QtFrontEnd(Program& program, FileDialogs& dialogs);
    ~QtFrontEnd() override;

    void ShowSplash() override;
    void RepaintSplash() override;
    void UnloadSplash() override { splash_.reset(); }
    bool InstallFont(const std::filesystem::path& file) override;
    void LoadWindow(std::string_view name) override;
    void UnloadWindow(std::string_view name) override;
    void ApplyInterfaceFont() override;
    void UpdateCaption() override { Main().updateCaption(); }
    Status StartAudio() override { return audio_.Start(); }
    void StopAudio() override { audio_.Stop(); }
    bool ShowOptions() override;
    void ShowMainWindow() override { Main().show(); }
    void ShowStartup() override;
    void OpenFile(const std::filesystem::path& file) override;
    /// The same for a file that another program hands over: the window comes to the front.
    void OpenInFront(const std::filesystem::path& file);
    bool SessionOpen() const override { return main_ != nullptr && main_->Commands().SessionOpen(); }
    void RefreshEditors() override { Main().Editors().Refresh(); }
    void RefreshSave() override { Main().RefreshSave(); }
    bool CloseIwad() override;
    bool CloseDataWad() override;

    /// Made when it is first asked for.
    frmMain& Main();

signals:
    /// The program is to end; `shutDown` has been run when it is to be run.
    void Ended();

private:
    Program& program_;
    FileDialogs& dialogs_;
    Edits edits_;
    Audio audio_;
    PlainToolTips plainToolTips_;
    std::unique_ptr<frmSplash> splash_;
    std::unique_ptr<frmMain> main_;
    std::unique_ptr<frmOptions> firstOptions_; // of the first run, before the main window is there
};

} // namespace plinket3

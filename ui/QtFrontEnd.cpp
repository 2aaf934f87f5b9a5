#include "ui/QtFrontEnd.h"

#include "ui/LatinText.h"

#include <QApplication>
#include <QFontDatabase>

namespace plinket3 {

namespace {

void Close(WadList& wads, std::shared_ptr<clsWad>& wad) {
    wads.ClearWads();
    wad.reset();
}

} // namespace

QtFrontEnd::QtFrontEnd(Program& program, FileDialogs& dialogs)
    : program_(program), dialogs_(dialogs), edits_(program.patch) {}

QtFrontEnd::~QtFrontEnd() = default;

frmMain& QtFrontEnd::Main() {
    LoadWindow("frmMain");
    return *main_;
}

void QtFrontEnd::ShowSplash() {
    splash_ = std::make_unique<frmSplash>();
    splash_->show();
    RepaintSplash();
}

void QtFrontEnd::RepaintSplash() {
    if (splash_)
        splash_->repaint();
}

bool QtFrontEnd::InstallFont(const std::filesystem::path& file) {
    return QFontDatabase::addApplicationFont(ShownPath(file)) >= 0;
}

void QtFrontEnd::LoadWindow(std::string_view name) {
    if (name == "frmOptions" && firstOptions_) {
        main_->Adopt(std::move(firstOptions_));
    } else if (name != "frmMain") {
        Main().Load(name);
    } else if (!main_) {
        main_ = std::make_unique<frmMain>(program_, edits_, audio_, dialogs_);
        connect(main_.get(), &frmMain::Closing, this, [this] {
            modMain::ShutDown(program_, *this);
            emit Ended();
        });
        connect(main_.get(), &frmMain::EndedAtOnce, this, &QtFrontEnd::Ended);
        connect(main_.get(), &frmMain::SettingsChanged, this, [this] { modMain::ApplySettings(program_, *this); });
    }
}

/// The windows go with the main window, when the event that closes it has been dealt with.
void QtFrontEnd::UnloadWindow(std::string_view) {}

/// The toolkit gives every window the desktop's font; numbers are shown in the fixed one that was installed.
void QtFrontEnd::ApplyInterfaceFont() {}

bool QtFrontEnd::ShowOptions() {
    program_.log.Add("  Loaded frmOptions");
    firstOptions_ = std::make_unique<frmOptions>(program_, dialogs_, nullptr);
    return firstOptions_->Edit();
}

void QtFrontEnd::ShowStartup() {
    if (!Main().Commands().OfferRecovery())
        Main().ShowStartup();
}

void QtFrontEnd::OpenFile(const std::filesystem::path& file) {
    if (!Main().Commands().OfferRecovery())
        Main().Commands().openFile(file);
    else
        program_.notifier.Show(MessageKind::Information,
                               PathText(file) + " was not opened, because the unsaved changes are open now.");
}

void QtFrontEnd::OpenInFront(const std::filesystem::path& file) {
    frmMain& window = Main();
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.raise();
    window.activateWindow();
    window.Commands().openFile(file);
}

bool QtFrontEnd::CloseIwad() {
    if (!program_.iwad)
        return false;
    Close(program_.wads, program_.iwad);
    return true;
}

bool QtFrontEnd::CloseDataWad() {
    if (program_.dataWads.empty())
        return false;
    for (std::shared_ptr<clsWad>& wad : program_.dataWads)
        Close(program_.wads, wad);
    program_.dataWads.clear();
    return true;
}

} // namespace plinket3

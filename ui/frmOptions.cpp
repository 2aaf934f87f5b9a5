#include "ui/frmOptions.h"

#include "core/Text.h"
#include "core/modMain.h"
#include "patch/RulesChoice.h"
#include "ui/LatinText.h"
#include "ui/NewButton.h"
#include "ui/OpenRequests.h"
#include "ui/frmFindIwads.h"
#include "ui/run/Ports.h"
#include "ui/run/PortsPage.h"
#include "wad/IwadFolders.h"
#include "wad/IwadSearch.h"
#include "wad/clsWad.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QTabWidget>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <iterator>
#include <string_view>

namespace plinket3 {

namespace {

constexpr const char* wadFilter = "WAD files (*.wad)|*.wad|All files (*.*)|*.*";
constexpr int iwadsTab = 1;

/// The games that most patches are made for, by the names of their files, the likeliest first.
constexpr std::string_view usualGames[]{"freedoom2", "doom2", "doom"};

std::ptrdiff_t Rank(const std::filesystem::path& iwad) {
    return std::ranges::find(usualGames, ToLower(PathText(iwad.stem()))) - std::begin(usualGames);
}

} // namespace

frmOptions::frmOptions(Environment& environment, FileDialogs& dialogs, QWidget* parent)
    : QDialog(parent), environment_(environment), dialogs_(dialogs), tabOptions_(new QTabWidget),
      ports_(new PortsPage(dialogs)) {
    setObjectName(QStringLiteral("frmOptions"));
    setWindowTitle(tr("Options"));
    tabOptions_->setObjectName(QStringLiteral("tabOptions"));
    tabOptions_->addTab(BuildGeneral(), tr("&General"));
    tabOptions_->addTab(BuildIwads(), tr("I&WADs"));
    tabOptions_->addTab(ports_, tr("Por&ts"));

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    cmdAccept_ = buttons->button(QDialogButtonBox::Ok);
    cmdAccept_->setObjectName(QStringLiteral("cmdAccept"));
    buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cmdCancel"));
    connect(buttons, &QDialogButtonBox::accepted, this, &frmOptions::StoreAndClose);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tabOptions_, 1);
    layout->addWidget(buttons);
    resize(fontMetrics().averageCharWidth() * 90, fontMetrics().height() * 20);

    updateControls();
}

QWidget* frmOptions::BuildGeneral() {
    auto* general = new QWidget;
    general->setObjectName(QStringLiteral("framGeneral"));
    chkMakeBackup_ = new QCheckBox(tr("Make &backup when saving"));
    chkMakeBackup_->setObjectName(QStringLiteral("chkMakeBackup"));
    chkFrameCharacters_ = new QCheckBox(tr("Use &characters for sprite frames"));
    chkFrameCharacters_->setObjectName(QStringLiteral("chkFrameCharacters"));
    chkOpenInRunning_ = new QCheckBox(tr("&Open further patches in the window that is open"));
    chkOpenInRunning_->setObjectName(QStringLiteral("chkOpenInRunning"));
    chkOpenInRunning_->setToolTip(tr(
        "Instead of starting the program once more: the patch that is open there is closed, after asking to save it."));
    cmbStateActivate_ = new QComboBox;
    cmbStateActivate_->setObjectName(QStringLiteral("cmbStateActivate"));
    cmbStateActivate_->addItems({tr("Open sprite browser"), tr("Open next state browser"), tr("Open action browser")});
    cmbPatchRules_ = new QComboBox;
    cmbPatchRules_->setObjectName(QStringLiteral("cmbPatchRules"));
    cmbPatchRules_->addItems({tr("Recommend the rules for each patch"), tr("Always by the kept rules"),
                              tr("Always as game engines do")}); // as in RulesSetting
    cmbPatchRules_->setToolTip(tr("By which rules patches are read and saved. A patch that is open keeps its own."));
    auto* labelRules = new QLabel(tr("&Patches:"));
    labelRules->setBuddy(cmbPatchRules_);
    auto* rules = new QHBoxLayout;
    rules->addWidget(labelRules);
    rules->addWidget(cmbPatchRules_);
    rules->addStretch();
    auto* label = new QLabel(tr("When &double-clicking a state..."));
    label->setObjectName(QStringLiteral("lblStateActivate"));
    label->setBuddy(cmbStateActivate_);
    auto* state = new QHBoxLayout;
    state->addWidget(label);
    state->addWidget(cmbStateActivate_);
    state->addStretch();
    auto* layout = new QVBoxLayout(general);
    layout->addWidget(chkMakeBackup_);
    layout->addWidget(chkFrameCharacters_);
    layout->addWidget(chkOpenInRunning_);
    layout->addLayout(state);
    layout->addLayout(rules);
    layout->addStretch();
    return general;
}

QWidget* frmOptions::BuildIwads() {
    auto* iwads = new QWidget;
    iwads->setObjectName(QStringLiteral("framIWADs"));
    lvwIwads_ = new QTreeWidget;
    lvwIwads_->setObjectName(QStringLiteral("lvwIWADs"));
    lvwIwads_->setAccessibleName(tr("Known IWADs"));
    lvwIwads_->setHeaderLabels({tr("Name"), tr("File")});
    lvwIwads_->setRootIsDecorated(false);
    lvwIwads_->setTextElideMode(Qt::ElideMiddle);
    cmdFindIwads_ = NewButton("cmdFindIWADs", tr("&Find IWADs"));
    cmdFindIwads_->setToolTip(tr("Look for IWADs in the usual folders"));
    auto* cmdAdd = NewButton("cmdAddIWAD", tr("&Add IWAD"));
    cmdRemoveIwad_ = NewButton("cmdRemoveIWAD", tr("&Remove IWAD"));
    auto* buttons = new QVBoxLayout;
    buttons->addWidget(cmdFindIwads_);
    buttons->addWidget(cmdAdd);
    buttons->addWidget(cmdRemoveIwad_);
    buttons->addStretch();
    auto* layout = new QHBoxLayout(iwads);
    layout->addWidget(lvwIwads_, 1);
    layout->addLayout(buttons);

    connect(cmdFindIwads_, &QPushButton::clicked, this, &frmOptions::FindIwads);
    connect(cmdAdd, &QPushButton::clicked, this, &frmOptions::AddIwad);
    connect(cmdRemoveIwad_, &QPushButton::clicked, this, &frmOptions::RemoveIwad);
    connect(lvwIwads_, &QTreeWidget::itemSelectionChanged, this,
            [this] { cmdRemoveIwad_->setEnabled(!lvwIwads_->selectedItems().isEmpty()); });
    return iwads;
}

bool frmOptions::FirstRun() const { return environment_.settings.Number("firstRun") == 1; }

bool frmOptions::Edit() {
    updateControls();
    ended_ = false;
    if (lvwIwads_->topLevelItemCount() == 0) {
        tabOptions_->setCurrentIndex(iwadsTab);
        cmdFindIwads_->setFocus();
    }
    exec();
    return !ended_;
}

void frmOptions::updateControls() {
    const Settings& settings = environment_.settings;
    chkMakeBackup_->setChecked(settings.Number("createBackup") == 1);
    chkFrameCharacters_->setChecked(settings.Number("frameCharacter") == 1);
    chkOpenInRunning_->setChecked(settings.Number(openInRunningKey) == 1);
    cmbStateActivate_->setCurrentIndex(std::clamp(settings.Number("stateActivate"), 0, cmbStateActivate_->count() - 1));
    cmbPatchRules_->setCurrentIndex(static_cast<int>(RulesSettingIn(settings)));
    FillIwads();
    ports_->Show(settings.Ports());
}

void frmOptions::updateConfiguration() {
    Settings& settings = environment_.settings;
    settings.Number("createBackup", chkMakeBackup_->isChecked() ? 1 : 0);
    settings.Number("frameCharacter", chkFrameCharacters_->isChecked() ? 1 : 0);
    settings.Number(openInRunningKey, chkOpenInRunning_->isChecked() ? 1 : 0);
    settings.Number("stateActivate", cmbStateActivate_->currentIndex());
    settings.Number("patchRules", cmbPatchRules_->currentIndex());
    if (ports_->Ports() != settings.Ports())
        settings.Ports(ports_->Ports());
    modMain::SaveSettings(environment_);
}

void frmOptions::FillIwads() {
    lvwIwads_->clear();
    for (const Settings::Iwad& iwad : environment_.settings.Iwads()) {
        auto* row = new QTreeWidgetItem(lvwIwads_, {ShownPath(iwad.name), ShownPath(iwad.path)});
        row->setToolTip(1, ShownPath(iwad.path));
    }
    lvwIwads_->resizeColumnToContents(0);
    cmdRemoveIwad_->setEnabled(false);
    (lvwIwads_->topLevelItemCount() == 0 ? cmdFindIwads_ : cmdAccept_)->setDefault(true); // what Enter does
}

void frmOptions::AddIwad() {
    const QString file = dialogs_.OpenFile(tr("Select a WAD file"), QString::fromLatin1(wadFilter));
    if (file.isEmpty())
        return;
    const std::filesystem::path path = StoredPath(file);
    clsWad wad;
    wad.OpenWad(path);
    if (wad.WadFileName().empty() || wad.WadType() != 0) {
        environment_.notifier.Show(MessageKind::Exclamation, "Selected WAD file is not an IWAD.");
        return;
    }
    const std::string base = PathText(path.stem());
    const QString name = dialogs_.AskText(
        QStringLiteral("Enter name"), QStringLiteral("Enter a name for %1.").arg(ShownPath(base)),
        ShownPath(modConfig::DetectIwadName(environment_.iwadDetect, path)), FileDialogs::Characters::Any);
    if (name.isEmpty())
        return;
    environment_.settings.AddIwad(name.toStdString(), PathText(path));
    FillIwads();
}

void frmOptions::RemoveIwad() {
    const QList<QTreeWidgetItem*> selected = lvwIwads_->selectedItems();
    if (selected.isEmpty() ||
        environment_.notifier.Ask("Are you sure you want to remove this IWAD?", Buttons::YesNo) != Answer::Yes)
        return;
    environment_.settings.RemoveIwad(static_cast<std::size_t>(lvwIwads_->indexOfTopLevelItem(selected.constFirst())));
    FillIwads();
}

std::vector<std::filesystem::path> frmOptions::UsualFolders() const {
    std::vector<std::filesystem::path> folders = UsualIwadFolders();
    const auto addFolderOf = [&folders](const std::string& file) {
        if (std::filesystem::path folder = PathOf(file).parent_path();
            std::ranges::find(folders, folder) == folders.end())
            folders.push_back(std::move(folder));
    };
    for (const Settings::Port& port : PortsToUse(environment_.settings))
        addFolderOf(port.program);
    if (const std::vector<Settings::Iwad> iwads = environment_.settings.Iwads(); !iwads.empty())
        addFolderOf(iwads.back().path);
    return folders;
}

void frmOptions::FindIwads() {
    const std::vector<std::filesystem::path> folders = UsualFolders();
    const std::vector<Settings::Iwad> known = environment_.settings.Iwads();
    std::vector<frmFindIwads::Found> found;
    for (const std::filesystem::path& file : plinket3::FindIwads(folders)) {
        if (std::any_of(known.begin(), known.end(), [&](const auto& iwad) { return iwad.path == PathText(file); }))
            continue;
        std::string name = modConfig::DetectIwadName(environment_.iwadDetect, file);
        found.emplace_back(name.empty() ? PathText(file.stem()) : std::move(name), file);
    }
    // The first IWAD of the list is the one that is proposed for the first patch.
    std::ranges::stable_sort(found, {}, [](const frmFindIwads::Found& iwad) { return Rank(iwad.second); });
    if (found.empty()) {
        std::string text = "No further IWADs were found. These folders were looked into:\n";
        for (const std::filesystem::path& folder : folders)
            text += "\n" + PathText(folder);
        environment_.notifier.Show(MessageKind::Information, text);
        return;
    }
    for (const auto& [name, path] : frmFindIwads(found, this).Choose())
        environment_.settings.AddIwad(name, PathText(path));
    FillIwads();
    if (lvwIwads_->topLevelItemCount() > 0)
        cmdAccept_->setFocus(); // what comes next
}

void frmOptions::StoreAndClose() {
    if (environment_.settings.Iwads().empty()) {
        if (environment_.notifier.Ask("At least one valid IWAD has to be added to the IWAD list.", Buttons::OkCancel) ==
            Answer::Ok)
            return;
        environment_.log.Add("User ended because he didnt add an IWAD.");
        ended_ = true;
        reject();
        return;
    }
    updateConfiguration();
    accept();
    if (!FirstRun())
        emit Accepted();
}

} // namespace plinket3

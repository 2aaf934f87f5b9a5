#include "ui/frmNewFile.h"

#include "core/Files.h"
#include "core/Numbers.h"
#include "core/PathList.h"
#include "patch/RulesChoice.h"
#include "ui/LatinText.h"
#include "ui/NewButton.h"
#include "wad/IwadFacts.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace plinket3 {

namespace {

constexpr int keptRow = 0, engineRow = 1; // of the rules

void Recommend(QComboBox& list, std::size_t index) {
    const int row = static_cast<int>(index);
    list.setCurrentIndex(row);
    list.setItemText(row, list.itemText(row) + QStringLiteral(" (recommended)"));
}

void SelectRemembered(QComboBox& list, std::int32_t index) {
    if (list.count() > 0)
        list.setCurrentIndex(index >= 0 && index < list.count() ? index : 0);
}

} // namespace

frmNewFile::frmNewFile(Environment& environment, FileDialogs& dialogs, QWidget* parent)
    : QDialog(parent), environment_(environment), cmbEngines_(new QComboBox), cmbIwads_(new QComboBox),
      dataWads_(new DataWadList(dialogs)), cmbRules_(new QComboBox),
      lblNoIwad_(new QLabel(tr("No IWAD is known yet."))), lblIwadFacts_(new QLabel), lblEngineReason_(new QLabel),
      lblRulesReason_(new QLabel), cmdOptions_(NewButton("cmdOptions", tr("A&dd IWADs..."))) {
    setObjectName(QStringLiteral("frmNewFile"));
    cmbEngines_->setObjectName(QStringLiteral("cmbEngines"));
    cmbIwads_->setObjectName(QStringLiteral("cmbIWADs"));
    cmbRules_->setObjectName(QStringLiteral("cmbRules"));
    lblRulesReason_->setObjectName(QStringLiteral("lblRulesReason"));
    lblEngineReason_->setObjectName(QStringLiteral("lblEngineReason"));
    lblIwadFacts_->setObjectName(QStringLiteral("lblIwadFacts"));
    lblIwadFacts_->setTextFormat(Qt::PlainText);
    for (QLabel* reason : {lblEngineReason_, lblRulesReason_}) {
        reason->setTextFormat(Qt::PlainText);
        reason->setWordWrap(true);
    }
    cmbRules_->setToolTip(
        tr("Engine rules: values are what games make of the file, and a save changes nothing in it "
           "but what you changed.\nKept rules: as this program has always read and written patches."));
    for (QComboBox* list : {cmbEngines_, cmbIwads_, cmbRules_})
        list->setSizeAdjustPolicy(QComboBox::AdjustToContents);

    auto* iwad = new QHBoxLayout;
    iwad->addWidget(cmbIwads_, 1);
    iwad->addWidget(lblNoIwad_, 1);
    iwad->addWidget(cmdOptions_);

    auto* form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->addRow(tr("&Engine:"), cmbEngines_);
    form->addRow(QString(), lblEngineReason_);
    form->addRow(tr("&IWAD:"), iwad);
    form->addRow(QString(), lblIwadFacts_);
    form->addRow(tr("Data &WADs:"), dataWads_);
    form->addRow(tr("&Rules:"), cmbRules_);
    form->addRow(QString(), lblRulesReason_);
    if (auto* label = qobject_cast<QLabel*>(form->labelForField(iwad)))
        label->setBuddy(cmbIwads_);
    cmbEngines_->setAccessibleName(tr("Engine"));
    cmbIwads_->setAccessibleName(tr("IWAD"));
    cmbRules_->setAccessibleName(tr("Rules"));

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    cmdAccept_ = buttons->button(QDialogButtonBox::Ok);
    cmdAccept_->setObjectName(QStringLiteral("cmdAccept"));
    buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cmdCancel"));

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addStretch();
    layout->addWidget(buttons);

    connect(cmdOptions_, &QPushButton::clicked, this, [this] {
        emit OptionsWanted();
        FillIwads();
    });
    connect(cmbEngines_, &QComboBox::activated, this, [this] {
        ShowEngineReason();
        ProposeRules();
    });
    connect(cmbIwads_, &QComboBox::currentIndexChanged, this, &frmNewFile::ShowIwadFacts);
    connect(cmbRules_, &QComboBox::activated, this, [this] { rulesChosen_ = true; });
    connect(buttons, &QDialogButtonBox::accepted, this, &frmNewFile::LoadAndClose);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

void frmNewFile::FillLists() {
    cmbEngines_->clear();
    for (const modConfig::EngineEntry& engine : environment_.engines)
        cmbEngines_->addItem(ShownText(engine.name));
    SelectRemembered(*cmbEngines_, environment_.settings.Number("lastConfig"));
    FillIwads();
}

void frmNewFile::FillIwads() {
    cmbIwads_->clear();
    for (const Settings::Iwad& iwad : environment_.settings.Iwads()) {
        cmbIwads_->addItem(ShownPath(iwad.name));
        cmbIwads_->setItemData(cmbIwads_->count() - 1, ShownPath(iwad.path), Qt::ToolTipRole);
    }
    SelectRemembered(*cmbIwads_, environment_.settings.Number("lastIWAD"));
    if (namedIwad_)
        if (const auto iwad = ChooseIwad(environment_.settings.Iwads(), *namedIwad_))
            Recommend(*cmbIwads_, *iwad);
    const bool any = cmbIwads_->count() > 0;
    cmbIwads_->setVisible(any);
    lblNoIwad_->setVisible(!any);
    cmdOptions_->setVisible(!any);
    cmdAccept_->setEnabled(any);
    ShowIwadFacts();
}

void frmNewFile::ShowIwadFacts() {
    const std::vector<Settings::Iwad> iwads = environment_.settings.Iwads();
    const auto row = static_cast<std::size_t>(cmbIwads_->currentIndex());
    lblIwadFacts_->setText(row < iwads.size() ? ShownText(IwadFacts(environment_.iwadDetect, iwads[row].path))
                                              : QString());
    lblIwadFacts_->setVisible(row < iwads.size());
    cmbIwads_->setAccessibleDescription(lblIwadFacts_->text());
}

void frmNewFile::ProposeEngine(EngineAdvice advice) {
    advice_ = std::move(advice);
    cmbEngines_->setCurrentIndex(static_cast<int>(advice_.index.value_or(0)));
    ShowEngineReason();
}

/// As long as that engine is selected.
void frmNewFile::ShowEngineReason() {
    const bool proposed =
        !advice_.reason.empty() && std::cmp_equal(advice_.index.value_or(0), cmbEngines_->currentIndex());
    lblEngineReason_->setText(proposed ? tr("Proposed: %1.").arg(ShownText(advice_.reason)) : QString());
    lblEngineReason_->setVisible(proposed);
}

/// By what the options say and the chosen engine makes of the patch; what the user has chosen stays.
void frmNewFile::ProposeRules() {
    const RulesProposal proposal =
        plinket3::ProposeRules(environment_, static_cast<std::size_t>(std::max(cmbEngines_->currentIndex(), 0)),
                               patch_ == nullptr ? nullptr : &patch_->bytes);
    const bool recommended = patch_ != nullptr && !proposal.fixed;
    const int row = proposal.rules == Rules::Engine ? engineRow : keptRow;
    const int chosen = rulesChosen_ && !proposal.fixed ? cmbRules_->currentIndex() : row;
    cmbRules_->clear();
    cmbRules_->addItems({tr("Kept rules"), tr("Engine rules, every line is kept")});
    if (recommended)
        Recommend(*cmbRules_, static_cast<std::size_t>(row));
    cmbRules_->setCurrentIndex(chosen);
    cmbRules_->setEnabled(!proposal.fixed);
    QString reason = ShownText(proposal.reason);
    if (reason.isEmpty() && recommended)
        reason = tr("both read this file alike, and nothing in it would be lost");
    if (!reason.isEmpty())
        reason[0] = reason[0].toUpper();
    const bool losses = recommended && proposal.rules == Rules::Engine && reason[0].isDigit();
    lblRulesReason_->setText(reason.isEmpty()                    ? reason
                             : losses                            ? tr("By the kept rules %1.").arg(reason)
                             : reason.endsWith(QLatin1Char('.')) ? reason
                                                                 : reason + QLatin1Char('.'));
}

void frmNewFile::SetNewFile() {
    namedIwad_.reset();
    patch_ = nullptr;
    rulesChosen_ = false;
    FillLists();
    version_ = -1;
    dataWads_->Files({});
    advice_ = {};
    ShowEngineReason();
    ProposeRules();
    setWindowTitle(tr("New file"));
}

void frmNewFile::SelectConfig(const PatchToOpen& patch) {
    modPatchFiles::Header header = patch.header;
    const Settings::FileSession known = environment_.settings.SessionOf(patch.place.Name());
    const std::pair<const char*, const std::string&> remembered[]{
        {"engineconfig", known.engine}, {"iwad", known.iwad}, {"datawad", known.dataWad}};
    for (const auto& [name, value] : remembered)
        if (!value.empty())
            header.try_emplace(name, value); // what stands in the patch goes first
    patch_ = &patch;
    rulesChosen_ = false;
    const auto named = header.find("iwad");
    namedIwad_ = named == header.end() ? std::nullopt : std::optional(named->second);
    FillLists();
    version_ = LeadingInt32(modPatchFiles::HeaderValue(header, "engineversion"));
    if (const auto engine = ChooseEngine(environment_.engines, modPatchFiles::HeaderValue(header, "engineconfig"))) {
        const bool patchSays = patch.header.contains("engineconfig");
        ProposeEngine({engine, patchSays ? "the patch names it" : "it was opened with it the last time"});
        Recommend(*cmbEngines_, *engine);
    } else {
        const auto last = static_cast<std::size_t>(std::max(cmbEngines_->currentIndex(), 0));
        ProposeEngine(RecommendEngine(environment_, header, patch.bytes, patch.place.file, last,
                                      RulesSettingIn(environment_.settings)));
    }
    dataWads_->Files(SplitPaths(modPatchFiles::HeaderValue(header, "datawad")));
    ProposeRules();
    setWindowTitle(
        tr("File settings of %1").arg(ShownPath(PatchPlace(patch.place.file.filename(), patch.place.lump).Name())));
}

std::optional<Session> frmNewFile::Choose() {
    session_.reset();
    cmbEngines_->setFocus();
    exec();
    return std::exchange(session_, std::nullopt);
}

void frmNewFile::LoadAndClose() {
    SessionChoice choice;
    choice.engine = static_cast<std::size_t>(cmbEngines_->currentIndex());
    choice.iwad = static_cast<std::size_t>(cmbIwads_->currentIndex());
    choice.dataWads = dataWads_->Files();
    choice.rules = cmbRules_->currentIndex() == engineRow ? Rules::Engine : Rules::Kept;
    choice.version = choice.rules == Rules::Engine ? -1 : version_;
    const auto& engines = environment_.engines;
    if (choice.version == -1 || (choice.engine < engines.size() && engines[choice.engine].version == choice.version))
        hide(); // what loading says is not about this dialog any more
    Session session;
    switch (LoadSession(environment_, choice, session)) {
    case SessionResult::Incompatible:
        return;
    case SessionResult::Loaded:
        if (cmbRules_->isEnabled() && patch_ == nullptr)
            environment_.settings.Number("lastRules", choice.rules == Rules::Engine ? 1 : 0);
        session_ = std::move(session);
        accept();
        return;
    case SessionResult::Failed:
        if (const auto iwads = environment_.settings.Iwads();
            choice.iwad < iwads.size() && !FileExists(iwads[choice.iwad].path))
            emit StatusText(tr("The IWAD %1 does not exist").arg(ShownPath(iwads[choice.iwad].path)));
        reject();
        return;
    }
}

} // namespace plinket3

#include "ui/compare/frmCompareWith.h"

#include "ui/AcceptButtons.h"
#include "ui/ChooseLump.h"
#include "ui/LatinText.h"

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

namespace plinket3 {

namespace {

constexpr const char* filter = "All known file types|*.deh;*.bex;*.wad|All files (*.*)|*.*";

QRadioButton* NewRadioButton(const char* name, const QString& text) {
    auto* button = new QRadioButton(text);
    button->setObjectName(QString::fromLatin1(name));
    return button;
}

bool Read(const Program& program, const PatchPlace& place, ComparedPatch& patch) {
    const Status status = ReadForComparing(program, program, place, patch);
    if (!status)
        program.notifier.Show(MessageKind::Exclamation, "Could not read " + place.Name() + ": " + status.Reason());
    return static_cast<bool>(status);
}

} // namespace

bool ReadComparison(const Program& program, const PatchPlace& ancestor, Comparison& comparison) {
    comparison.ancestor.reset();
    if (comparison.with == Comparison::With::Engine)
        comparison.there = {program.patch.defaults, {}, {}};
    else if (!Read(program, comparison.place, comparison.there))
        return false;
    return ancestor.file.empty() || Read(program, ancestor, comparison.ancestor.emplace());
}

frmCompareWith::frmCompareWith(const Program& program, FileDialogs& dialogs, QWidget* parent)
    : QDialog(parent), program_(program), dialogs_(dialogs),
      optFile_(NewRadioButton("optFile", tr("A &patch or WAD:"))),
      optSaved_(NewRadioButton("optSaved", tr("The open patch as it was &saved"))),
      optEngine_(NewRadioButton("optEngine", tr("The &engine's own data"))), txtFile_(new QLineEdit),
      txtAncestor_(new QLineEdit), cmdAccept_(NewButton("cmdAccept", tr("Compare"))) {
    setObjectName(QStringLiteral("frmCompareWith"));
    setWindowTitle(tr("Compare with"));
    txtFile_->setObjectName(QStringLiteral("txtFile"));
    txtFile_->setAccessibleName(tr("Patch or WAD to compare with"));
    txtFile_->setMinimumWidth(fontMetrics().averageCharWidth() * 60);
    txtAncestor_->setObjectName(QStringLiteral("txtAncestor"));
    txtAncestor_->setAccessibleName(tr("Patch from which both come"));
    txtAncestor_->setPlaceholderText(tr("none"));
    txtAncestor_->setClearButtonEnabled(true);
    txtAncestor_->setToolTip(tr("With it you see who changed what since, and conflicts are marked"));
    optFile_->setChecked(true);
    optSaved_->setEnabled(program.patch.named);

    auto* lblAncestor = new QLabel(tr("B&oth come from (may be left empty):"));
    lblAncestor->setBuddy(txtAncestor_);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(optFile_);
    layout->addWidget(FileRow(*txtFile_, "cmdBrowse", tr("Compare with")));
    layout->addWidget(lblAncestor);
    layout->addWidget(FileRow(*txtAncestor_, "cmdBrowseAncestor", tr("Both come from")));
    layout->addWidget(optSaved_);
    layout->addWidget(optEngine_);
    layout->addStretch();
    layout->addWidget(AcceptButtons(*this, *cmdAccept_));
    connect(txtFile_, &QLineEdit::textChanged, this, &frmCompareWith::UpdateButtons);
    connect(optFile_, &QRadioButton::toggled, this, &frmCompareWith::UpdateButtons);
    UpdateButtons();
    txtFile_->setFocus();
}

QWidget* frmCompareWith::FileRow(QLineEdit& box, const char* button, const QString& title) {
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(&box, 1);
    auto* cmdBrowse = NewButton(button, tr("Browse..."));
    cmdBrowse->setAccessibleName(title);
    cmdBrowse->setAutoDefault(false);
    layout->addWidget(cmdBrowse);
    connect(optFile_, &QRadioButton::toggled, row, &QWidget::setEnabled);
    connect(cmdBrowse, &QPushButton::clicked, this, [this, &box, title] {
        const QString file = dialogs_.OpenFile(title, QString::fromLatin1(filter));
        if (!file.isEmpty())
            box.setText(file);
    });
    return row;
}

void frmCompareWith::UpdateButtons() {
    cmdAccept_->setEnabled(!optFile_->isChecked() || !txtFile_->text().trimmed().isEmpty());
}

/// None when the user gives up which of the patches of a WAD it is.
std::optional<PatchPlace> frmCompareWith::PlaceIn(const QLineEdit& box) {
    const std::filesystem::path file = StoredPath(box.text().trimmed());
    if (!IsWad(file))
        return PatchPlace(file);
    const std::vector<PatchLump> lumps = FindPatchLumps(file);
    if (lumps.empty()) // reading tells that there is none
        return PatchPlace(file, std::string(patchLump));
    return ChooseLump(dialogs_, windowTitle(), file, lumps);
}

void frmCompareWith::accept() {
    using With = Comparison::With;
    auto comparison = std::make_unique<Comparison>();
    PatchPlace ancestor;
    comparison->with = optSaved_->isChecked() ? With::SavedFile : optEngine_->isChecked() ? With::Engine : With::File;
    if (comparison->with == With::SavedFile)
        comparison->place = {program_.patch.fileName, program_.patch.lump};
    if (comparison->with == With::File) {
        const std::optional<PatchPlace> place = PlaceIn(*txtFile_);
        const std::optional<PatchPlace> old = place ? PlaceIn(*txtAncestor_) : std::nullopt;
        if (!old)
            return;
        comparison->place = *place;
        ancestor = *old;
    }
    if (!ReadComparison(program_, ancestor, *comparison))
        return;
    chosen_ = std::move(comparison);
    QDialog::accept();
}

std::unique_ptr<Comparison> frmCompareWith::Choose() {
    exec();
    return std::move(chosen_);
}

} // namespace plinket3

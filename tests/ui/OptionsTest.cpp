#include "tests/support/TestSupport.h"
#include "tests/ui/FakeDialogs.h"
#include "tests/ui/ModalDriver.h"
#include "tests/wad/WadBytes.h"
#include "ui/frmFindIwads.h"
#include "ui/frmOptions.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <QTreeWidget>

namespace plinket3 {
namespace {

using test::ModalDriver;
using test::ReadFile;
using test::WriteFile;

class OptionsTest : public ::testing::Test {
protected:
    OptionsTest() {
        environment.settings.File(folder / "plinket3.cfg");
        environment.settings.CreateDefaults("/documents");
        environment.settings.Number("firstRun", 0);
        EXPECT_TRUE(environment.log.StartLog(folder / "log.txt", false));
        EXPECT_TRUE(environment.iwadDetect.InputConfiguration("doom2 = \"Doom II\";"));
        options = std::make_unique<frmOptions>(environment, dialogs, nullptr);
    }

    std::string MakeWad(const char* name, const std::string& bytes) {
        WriteFile(folder / name, bytes);
        return (folder / name).string();
    }
    void Click(const char* name) {
        auto* button = options->findChild<QPushButton*>(QString::fromLatin1(name));
        ASSERT_NE(button, nullptr) << name;
        QTest::mouseClick(button, Qt::LeftButton);
    }
    QTreeWidget& List() { return *options->findChild<QTreeWidget*>("lvwIWADs"); }
    void Add(const std::string& file, const char* name) {
        dialogs.Expect("Select a WAD file", file);
        dialogs.Expect("Enter name", name);
        Click("cmdAddIWAD");
    }

    test::TemporaryFolder folder;
    test::ExpectingNotifier notifier;
    Environment environment{notifier};
    test::FakeDialogs dialogs;
    std::unique_ptr<frmOptions> options;
};

TEST_F(OptionsTest, AddsIwadsAndRefusesWhatIsNone) {
    for (const std::string& file : {MakeWad("p.wad", test::WadBytes({}, "PWAD")), std::string("/nowhere/doom.wad")}) {
        dialogs.Expect("Select a WAD file", file);
        notifier.Expect(MessageKind::Exclamation, "Selected WAD file is not an IWAD.");
        Click("cmdAddIWAD");
        notifier.AllAsked();
    }
    dialogs.Expect("Select a WAD file", "");
    Click("cmdAddIWAD");
    const std::string file = MakeWad("Doom2.wad", test::WadBytes({}, "IWAD"));
    Add(file, "");
    EXPECT_TRUE(environment.settings.Iwads().empty());
    Add(file, "Doom;II");
    EXPECT_EQ(dialogs.lastDetail, "Enter a name for Doom2.");
    ASSERT_EQ(environment.settings.Iwads().size(), 1U);
    EXPECT_EQ(environment.settings.Iwads()[0].name, "DoomII") << "a semicolon ends it in the file";
    EXPECT_EQ(List().topLevelItem(0)->text(1).toStdString(), file);
}

TEST_F(OptionsTest, RemovingAsks) {
    environment.settings.AddIwad("a", "/a");
    options->updateControls();
    EXPECT_FALSE(options->findChild<QPushButton*>("cmdRemoveIWAD")->isEnabled());
    List().setCurrentItem(List().topLevelItem(0));
    for (const Answer answer : {Answer::No, Answer::Yes}) {
        notifier.Expect("Are you sure you want to remove this IWAD?", answer);
        Click("cmdRemoveIWAD");
        EXPECT_EQ(List().topLevelItemCount(), answer == Answer::No ? 1 : 0);
    }
    EXPECT_TRUE(environment.settings.Iwads().empty());
}

TEST_F(OptionsTest, OnlyAcceptingStoresTheGeneralOptions) {
    environment.settings.AddIwad("a", "/a");
    for (const char* button : {"cmdCancel", "cmdAccept"}) {
        options->updateControls();
        options->findChild<QCheckBox*>("chkMakeBackup")->setChecked(false);
        options->findChild<QCheckBox*>("chkFrameCharacters")->setChecked(true);
        options->findChild<QComboBox*>("cmbStateActivate")->setCurrentIndex(2);
        EXPECT_EQ(environment.settings.Number("createBackup"), 1);
        Click(button);
    }
    const std::string text = ReadFile(folder / "plinket3.cfg");
    for (const char* line : {"createBackup = 0;\r\n", "frameCharacter = 1;\r\n", "stateActivate = 2;\r\n"})
        EXPECT_NE(text.find(line), std::string::npos) << line;
}

TEST_F(OptionsTest, AcceptingWithoutAnIwadStaysOrEndsTheProgram) {
    const std::string question = "At least one valid IWAD has to be added to the IWAD list.";
    notifier.Expect(question, Answer::Ok);
    notifier.Expect(question, Answer::Cancel);
    const ModalDriver driver("frmOptions", [this](QDialog& dialog) {
        EXPECT_EQ(options->findChild<QTabWidget*>("tabOptions")->currentIndex(), 1) << "the IWADs are in front";
        Click("cmdAccept");
        EXPECT_TRUE(dialog.isVisible());
        Click("cmdAccept");
    });
    EXPECT_FALSE(options->Edit());
    EXPECT_TRUE(ReadFile(folder / "log.txt").ends_with("User ended because he didnt add an IWAD.\r\n"));
}

TEST_F(OptionsTest, FindsIwadsBesideTheKnownOnesAndNamesThem) {
    environment.settings.AddIwad("known", MakeWad("known.wad", test::WadBytes({}, "IWAD")));
    for (const char* name : {"DOOM.WAD", "DOOM2.WAD", "attack.wad", "freedoom2.wad"}) // found in this order
        MakeWad(name, test::WadBytes({}, "IWAD"));
    MakeWad("mod.wad", test::WadBytes({}, "PWAD"));
    options->updateControls();
    const ModalDriver driver("frmFindIWADs", [this](QDialog& dialog) {
        auto& list = *dialog.findChild<QTreeWidget*>("lvwFound");
        for (int row = 0; row < list.topLevelItemCount(); ++row) // others may be installed on this machine
            if (!list.topLevelItem(row)->text(1).startsWith(QString::fromStdString(folder.Path().string())))
                list.topLevelItem(row)->setCheckState(0, Qt::Unchecked);
        QTest::mouseClick(dialog.findChild<QPushButton*>("cmdAccept"), Qt::LeftButton);
    });
    Click("cmdFindIWADs");
    std::string listed;
    for (const Settings::Iwad& found : environment.settings.Iwads())
        listed += found.name + "=" + std::filesystem::path(found.path).filename().string() + " ";
    EXPECT_EQ(listed, "known=known.wad freedoom2=freedoom2.wad Doom II=DOOM2.WAD DOOM=DOOM.WAD attack=attack.wad ")
        << "the likeliest first, which is proposed for the first patch";
}

TEST_F(OptionsTest, PortsAreFoundChangedAndStoredWithOk) {
    environment.settings.AddIwad("a", "/a");
    const std::filesystem::path bin = folder / "bin";
    std::filesystem::create_directory(bin);
    const std::string ownArguments = "-iwad %i -file %d -deh %p -warp %m -skill %s";
    for (const auto& [name, text] :
         {std::pair{"woof", "knows -dehout"}, std::pair{"dsda-doom", "lost it"}, {"mine", ""}}) {
        WriteFile(bin / name, text);
        std::filesystem::permissions(bin / name, std::filesystem::perms::owner_all);
    }
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", bin.string().c_str());
    options->updateControls();
    options->show();
    options->findChild<QTabWidget*>("tabOptions")->setCurrentIndex(2);
    qputenv("PATH", path);
    auto& list = *options->findChild<QTreeWidget*>("lvwPorts");
    const auto texts = [&list](const char* program) { // others may be installed on this machine
        for (int row = 0; row < list.topLevelItemCount(); ++row)
            if (list.topLevelItem(row)->text(2).endsWith(QString::fromLatin1(program))) {
                list.setCurrentItem(list.topLevelItem(row));
                return (list.topLevelItem(row)->text(0) + "|" + list.topLevelItem(row)->text(1)).toStdString();
            }
        return std::string("there is none");
    };
    auto& arguments = *options->findChild<QLineEdit*>("txtPortArguments");
    EXPECT_EQ(texts("/bin/dsda-doom"), "DSDA-Doom|");
    EXPECT_EQ(arguments.text().toStdString(), ownArguments);
    EXPECT_EQ(texts("/bin/woof"), "Woof!|");
    EXPECT_EQ(arguments.text().toStdString(), ownArguments + " -dehout %o") << "its program knows the option";

    arguments.selectAll();
    QTest::keyClicks(&arguments, "-x 'y");
    EXPECT_EQ(texts("/bin/woof"), "Woof!|nothing closes the quotation mark '");
    Click("cmdUsual");
    EXPECT_EQ(arguments.text().toStdString(), ownArguments + " -dehout %o");
    dialogs.Expect("Select the program of a port", "/nowhere/Doom 2.exe");
    Click("cmdAddPort");
    EXPECT_EQ(texts("/nowhere/Doom 2.exe"), "Doom 2|not found");
    dialogs.Expect("Select the program of a port", (bin / "mine").string());
    Click("cmdBrowse");
    EXPECT_EQ(texts("/bin/mine"), "Doom 2|");
    auto& name = *options->findChild<QLineEdit*>("txtPortName");
    name.selectAll();
    QTest::keyClicks(&name, "Mine");
    texts("/bin/dsda-doom");
    Click("cmdRemovePort");
    EXPECT_EQ(texts("/bin/dsda-doom"), "there is none");
    EXPECT_TRUE(environment.settings.Ports().empty()) << "before it is accepted";
    Click("cmdAccept");
    const std::vector<Settings::Port> stored = environment.settings.Ports();
    ASSERT_GE(stored.size(), 2U);
    EXPECT_EQ(stored.front(), (Settings::Port{"Woof!", (bin / "woof").string(), ownArguments + " -dehout %o"}));
    EXPECT_EQ(stored.back(), (Settings::Port{"Mine", (bin / "mine").string(), ownArguments}));
}

} // namespace
} // namespace plinket3

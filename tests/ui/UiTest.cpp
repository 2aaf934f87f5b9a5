#include "tests/ui/UiTest.h"

#include "core/Files.h"
#include "patch/modTables.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QStyleFactory>
#include <QTimer>

namespace plinket3::test {

void TestLinks::SelectSingleState(int state, int thing, int weapon) {
    Record("select state " + std::to_string(state) + " " + std::to_string(thing) + " " + std::to_string(weapon));
}

void TestLinks::ReplaceThingFilterEntry(int entry, const QString& text) {
    Record("filter entry " + std::to_string(entry) + " " + text.toStdString());
}

std::optional<EditorLinks::SpriteChoice> TestLinks::PickSprite(SpriteChoice start) {
    Record("pick sprite " + std::to_string(start.sprite) + " " + std::to_string(start.frame));
    return pickedSprite;
}

std::optional<std::int32_t> TestLinks::PickState(std::int32_t start) {
    Record("pick state " + std::to_string(start));
    return pickedState;
}

std::optional<std::int32_t> TestLinks::PickAction(std::int32_t start) {
    Record("pick action " + std::to_string(start));
    return pickedAction;
}

std::optional<std::int32_t> TestLinks::PickRecord(RecordKind kind, std::int32_t start) {
    Record((kind == RecordKind::Thing ? "pick thing " : "pick sound ") + std::to_string(start));
    return pickedRecord;
}

QString TestLinks::AskText(const QString& title, const QString& prompt, const QString& start) {
    Record("ask " + title.toStdString() + "|" + prompt.toStdString() + "|" + start.toStdString());
    return typedText;
}

void EditorTest::LoadEngine(const std::string& engine) {
    program.programFolder = PLINKET3_PROGRAM_FOLDER;
    ASSERT_TRUE(modConfig::LoadEngineConfiguration(program.programFolder / "config" / (engine + ".cfg"), program.engine,
                                                   notifier));
    ASSERT_TRUE(modTables::LoadEngineTable(program, program.engine, program.patch));
    program.wads.ClearWads();
    if (FileExists(freedoom)) {
        program.iwad = std::make_shared<clsWad>();
        program.iwad->OpenWad(freedoom);
        ASSERT_TRUE(program.wads.RegisterWad(program.iwad));
        const auto palette = program.wads.FindLump("PLAYPAL");
        ASSERT_TRUE(palette);
        program.palette = palette->wad->ReadLumpString(palette->num);
    }
    edits.Clear();
}

QLineEdit& EditorTest::Box(const char* name) { return Find<QLineEdit>(*window, name); }

QString EditorTest::Text(const char* label) { return Find<QLabel>(*window, label).text(); }

void EditorTest::Click(const char* button) {
    auto* found = window->findChild<QAbstractButton*>(QString::fromLatin1(button));
    ASSERT_NE(found, nullptr) << button;
    QTest::mouseClick(found, Qt::LeftButton, {}, {8, found->height() / 2});
}

std::function<void(QDialog&)> AcceptSession(const char* engine) {
    return [engine](QDialog& dialog) {
        auto& engines = Find<QComboBox>(dialog, "cmbEngines");
        const int row = engines.findText(QString::fromLatin1(engine), Qt::MatchStartsWith);
        EXPECT_GE(row, 0) << engine;
        if (*engine != '\0')
            engines.setCurrentIndex(row);
        QTest::mouseClick(&Find<QPushButton>(dialog, "cmdAccept"), Qt::LeftButton);
    };
}

void UseFolder(Program& program, const std::filesystem::path& folder) {
    program.programFolder = PLINKET3_PROGRAM_FOLDER;
    program.settingsFolder = folder / "settings";
    program.documentsFolder = folder / "documents";
    std::filesystem::create_directories(program.settingsFolder);
    program.settings.File(program.settingsFolder / "plinket3.cfg");
    program.settings.CreateDefaults(program.documentsFolder);
    program.engines = modConfig::EnumerateEngines(program.programFolder / "config", [](std::string_view) {});
}

namespace {

QPoint PointOfRow(QAbstractItemView& view, int row) {
    const QModelIndex index = view.model()->index(row, 0);
    view.scrollTo(index);
    return view.visualRect(index).center();
}

} // namespace

void ClickRow(QAbstractItemView& view, int row, Qt::MouseButton button, Qt::KeyboardModifiers modifiers) {
    QTest::mouseClick(view.viewport(), button, modifiers, PointOfRow(view, row));
}

void DoubleClickRow(QAbstractItemView& view, int row) {
    const QPoint point = PointOfRow(view, row);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, point);
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, point);
}

void TriggerMenu(QWidget& widget, QPoint place, const char* entry) {
    QTimer::singleShot(0, &widget, [entry] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_NE(menu, nullptr);
        auto* action = menu->findChild<QAction*>(QString::fromLatin1(entry));
        for (QAction* shown : menu->actions()) // it may belong to another widget
            if (shown->objectName() == QLatin1String(entry))
                action = shown;
        if (action == nullptr)
            menu->close(); // it would wait for an answer
        ASSERT_NE(action, nullptr) << entry;
        menu->setActiveAction(action);
        QTest::keyClick(menu, Qt::Key_Return);
    });
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, widget.mapToGlobal(place));
    QApplication::sendEvent(&widget, &event);
}

void Type(QLineEdit& box, const char* text) {
    QTest::mouseClick(&box, Qt::LeftButton);
    QApplication::processEvents();
    box.selectAll();
    QTest::keyClicks(&box, QString::fromLatin1(text));
}

} // namespace plinket3::test

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) // with another one the tests can be watched
        qputenv("QT_QPA_PLATFORM", "offscreen");
#ifdef PLINKET3_FONT_FOLDER
    qputenv("QT_QPA_FONTDIR", PLINKET3_FONT_FOLDER);
#endif
    QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

#include "tests/support/TestSupport.h"
#include "tests/ui/WindowTest.h"
#include "ui/graph/GraphLegend.h"
#include "ui/graph/GraphOutput.h"
#include "ui/graph/GraphView.h"

#include <QAction>
#include <QApplication>
#include <QImage>
#include <QLabel>
#include <QPainter>
#include <QPrinter>
#include <QWheelEvent>

#include <fstream>
#include <memory>
#include <vector>

namespace plinket3::test {
namespace {

constexpr int imp = 11, bfg = 6;
constexpr Cell hitPoints{RecordKind::Thing, imp, RowOf(&ThingRecord::hitPoints)};

class StateGraphTest : public WindowTest {
protected:
    void Press(QKeyCombination keys) {
        QTest::keyClick(QApplication::focusWidget(), keys.key(), keys.keyboardModifiers());
    }
    GraphView& View() { return static_cast<GraphView&>(Find<QGraphicsView>("grvStates")); }
    const GraphScene& Scene() { return *static_cast<GraphScene*>(View().scene()); }
    /// What the dock says: its title and its summary.
    std::string Says() {
        QTest::qWait(1); // it fills itself when all else is done
        return Find<QDockWidget>("dockStateGraph").windowTitle().toStdString() + " | " +
               Find<QLabel>("lblStateGraph").text().toStdString();
    }
    /// The number of the state whose box is the current one, as those hear it who cannot see it.
    int Current() {
        QTest::qWait(1);
        return View().accessibleDescription().section(QLatin1Char(' '), 1, 1).toInt();
    }
    const GraphBox& Box(int state) { return *Scene().Box(Scene().Graph().Find({TargetKind::State, state}).value()); }
    static bool HasRed(const QImage& image) {
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (qRed(image.pixel(x, y)) > qBlue(image.pixel(x, y)) + 40)
                    return true;
        return false;
    }
    QPoint Place(int state) { return View().mapFromScene(Box(state).pos() + Box(state).Box().center()); }
};

TEST_F(StateGraphTest, FollowsEditorsAndEditsAndLeadsToTheStates) {
    LoadEngine("mbf21");
    ShowWindow();
    EditorSet& editors = Editors();
    EXPECT_EQ(window->findChild<GraphView*>(), nullptr) << "it is made when it is first shown";
    editors.ShowCell(hitPoints);
    Press(Qt::CTRL | Qt::SHIFT | Qt::Key_G);
    EXPECT_EQ(Says(), "State graph: Imp | 33 states.");
    EXPECT_EQ(QApplication::focusWidget(), &View());
    EXPECT_EQ(View().accessibleDescription().toStdString(),
              "Frame 442 (TROOA): 10 tics, Look Next: 443. Named by: Initial frame.");

    Press(Qt::Key_Right);
    EXPECT_EQ(Current(), 443);
    Press(Qt::Key_Down);
    EXPECT_EQ(Current(), 445) << "the row below";
    Press(Qt::Key_Left);
    Press(Qt::Key_Left);
    EXPECT_EQ(Current(), 451) << "back along the arrow that closes the circle";
    EXPECT_EQ(editors.Here(), (Cell{RecordKind::Thing, imp, existsField})) << "the editors stay as they are";
    EXPECT_EQ(editors.SelectedStateRow(), 451) << "but the state is selected in its own";
    Press(Qt::Key_Return);
    EXPECT_EQ(editors.Here(), (Cell{RecordKind::State, 451, existsField}));

    editors.ShowRecord(RecordKind::State, 452);
    EXPECT_EQ(Current(), 452);
    edits.Store({RecordKind::State, 452, RowOf(&StateRecord::nextState)}, 0);
    EXPECT_EQ(Says(), "State graph: Imp | 33 states. Nothing comes to 2 of them.");
    edits.Undo();
    EXPECT_EQ(Says(), "State graph: Imp | 33 states.");
    editors.ShowRecord(RecordKind::State, 82);
    EXPECT_EQ(Says(), "State graph: BFG9000 | 10 states.");
    editors.ShowRecord(RecordKind::State, 1500);
    EXPECT_EQ(Says(), "State graph | Nothing comes to frame 1500.");
    EXPECT_FALSE(Find<QAction>("GraphExport").isEnabled());
    editors.ShowRecord(RecordKind::Weapon, bfg);
    EXPECT_EQ(Says(), "State graph: BFG9000 | 10 states.");

    View().setFocus();
    Press(Qt::CTRL | Qt::SHIFT | Qt::Key_G);
    EXPECT_FALSE(Find<QDockWidget>("dockStateGraph").isVisible()) << "the same keys put it away";
    editors.ShowRecord(RecordKind::Thing, imp);
    EXPECT_EQ(Says(), "State graph: BFG9000 | 10 states.") << "nothing is done for what nobody sees";
}

TEST_F(StateGraphTest, ZoomsAndLetsBoxesBeDragged) {
    LoadEngine("mbf21");
    ShowWindow();
    Editors().ShowRecord(RecordKind::Thing, imp);
    Find<QAction>("ViewStateGraph").trigger();
    Says();
    QTest::qWait(20); // the dock gets its size in several rounds
    const auto scale = [this] { return View().transform().m11(); };
    Press(Qt::Key_0);
    EXPECT_EQ(scale(), 1);
    Press(Qt::Key_Plus);
    EXPECT_GT(scale(), 1.1);
    Press(Qt::Key_Minus);
    EXPECT_NEAR(scale(), 1, 1e-9);
    QWheelEvent wheel(QPointF(5, 5), View().mapToGlobal(QPointF(5, 5)), {}, {0, -240}, {}, Qt::ControlModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(View().viewport(), &wheel);
    EXPECT_LT(scale(), 0.9);
    Press(Qt::Key_F);
    EXPECT_TRUE(View().viewport()->rect().contains(View().mapFromScene(Scene().Drawn()).boundingRect()));

    const QPointF before = Box(443).pos(), other = Box(444).pos();
    const auto arrows = [this] {
        QList<QRectF> places;
        for (const QGraphicsItem* item : Scene().items(Qt::AscendingOrder))
            if (dynamic_cast<const GraphArrow*>(item) != nullptr)
                places.append(item->sceneBoundingRect());
        return places;
    };
    const QList<QRectF> arrowsBefore = arrows();
    const QPoint from = Place(443), to = from + QPoint(40, 25);
    QTest::mousePress(View().viewport(), Qt::LeftButton, {}, from);
    EXPECT_EQ(Current(), 443);
    for (const QPoint& place : {from + QPoint(20, 10), to}) {
        QMouseEvent move(QEvent::MouseMove, place, View().viewport()->mapToGlobal(place), Qt::NoButton, Qt::LeftButton,
                         {});
        QApplication::sendEvent(View().viewport(), &move);
    }
    QTest::mouseRelease(View().viewport(), Qt::LeftButton, {}, to);
    const QPointF dragged = Box(443).pos();
    EXPECT_NEAR(dragged.x() - before.x(), 40 / scale(), 2);
    EXPECT_NEAR(dragged.y() - before.y(), 25 / scale(), 2);
    EXPECT_EQ(Box(444).pos(), other);
    EXPECT_NE(arrows(), arrowsBefore) << "they come along";
    edits.Store({RecordKind::State, 443, RowOf(&StateRecord::duration)}, 77);
    Says();
    EXPECT_EQ(Box(443).Text().beside, QStringLiteral("77 tics"));
    EXPECT_EQ(Box(443).pos(), dragged) << "edits leave it there";
    Find<QAction>("GraphArrange").trigger();
    EXPECT_EQ(Box(443).pos(), before);
    EXPECT_EQ(arrows(), arrowsBefore);
    QTest::mouseDClick(View().viewport(), Qt::LeftButton, {}, Place(450));
    EXPECT_EQ(Editors().Here(), (Cell{RecordKind::State, 450, existsField}));
}

TEST_F(StateGraphTest, IsExportedAndPrintedAndBounded) {
    LoadEngine("dsdhacked", true);
    ShowWindow();
    Editors().ShowRecord(RecordKind::Thing, imp);
    Find<QAction>("ViewStateGraph").trigger();
    edits.Store({RecordKind::Thing, imp, nameField}, "Imp\x01 & <Co>");
    EXPECT_TRUE(Says().starts_with("State graph: Imp\x01 & <Co> | "));
    for (const char* name : {"imp.svg", "imp.png"}) {
        dialogs.Expect("Export state graph", (folder / name).string());
        Find<QAction>("GraphExport").trigger();
    }
    edits.Undo();
    EXPECT_TRUE(ReadFile(folder / "imp.svg").starts_with("<?xml"));
    const QSizeF drawn = Scene().Drawn().size() * 2;
    const QImage png(QString::fromStdString((folder / "imp.png").string()));
    EXPECT_GT(png.width(), drawn.width());
    EXPECT_LT(png.width(), drawn.width() + 100);
    EXPECT_EQ(png.pixelColor(1, 1), Qt::white);
    dialogs.Expect("Export state graph", (folder / "none" / "imp.svg").string());
    notifier.Expect(MessageKind::Exclamation,
                    (folder / "none" / "imp.svg").string() + ": " + WhyNotRead(folder / "none" / "imp.svg"));
    Find<QAction>("GraphExport").trigger();

    const auto onDevice = [this](int dotsPerInch) {
        QImage image(900, 900, QImage::Format_RGB32);
        image.setDotsPerMeterX(dotsPerInch * 10'000 / 254);
        image.setDotsPerMeterY(dotsPerInch * 10'000 / 254);
        image.fill(Qt::white);
        QPainter painter(&image);
        const_cast<GraphScene&>(Scene()).render(&painter, image.rect(), image.rect());
        PaintLegend(&painter, Scene().Graph(), Scene().Style(), image.width());
        return image;
    };
    EXPECT_EQ(onDevice(96), onDevice(1200)) << "letters keep to their boxes on printers";

    constexpr int first = 10'000, count = 50'000;
    for (int state = first; state < first + count; ++state)
        program.patch.current.states.Add(state).nextState = state + 1;
    edits.Store({RecordKind::Thing, imp, RowOf(&ThingRecord::respawnState)}, first);
    EXPECT_EQ(Says(), "State graph: Imp | Shows the first 2,000 of 50,033 states.");
    EXPECT_EQ(Scene().Graph().nodes.size(), 2000);

    QPrinter printer;
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(QString::fromStdString((folder / "imp.pdf").string()));
    EXPECT_TRUE(PrintGraph(const_cast<GraphScene&>(Scene()), QStringLiteral("Imp"), printer));
    const std::string pdf = ReadFile(folder / "imp.pdf");
    EXPECT_TRUE(pdf.starts_with("%PDF"));
    const auto pages = QByteArray::fromStdString(pdf).count("/Type /Page\n");
    EXPECT_GT(pages, 3) << "so large that it needs several";
}

TEST(PageEdges, CutNoSpanIfTheyCan) {
    using Spans = QList<std::pair<double, double>>;
    const struct {
        double length;
        Spans spans;
        QList<double> edges; // of pages of 100
    } rows[]{
        {0, {}, {0, 100}},
        {100, {{90, 100}}, {0, 100}},
        {101, {}, {0, 100, 200}},
        {250, {{0, 40}, {50, 90}, {95, 135}, {190, 230}}, {0, 95, 190, 290}},
        {150, {{95, 120}, {80, 96}}, {0, 80, 180}},    // what stands side by side, but not in line
        {150, {{100, 120}, {60, 100}}, {0, 100, 200}}, // they only touch
        {300, {{10, 290}}, {0, 100, 200, 300}},        // too long for a page
        {180, {{45, 130}, {140, 150}}, {0, 100, 200}}, // more than half a page would be empty
    };
    for (const auto& row : rows)
        EXPECT_EQ(PageEdges(row.length, 100, row.spans), row.edges) << row.length;
}

TEST_F(StateGraphTest, BoxesDoNotKeepHugePictures) {
    const auto megabytes = [] {
        std::size_t all = 0, resident = 0;
        std::ifstream("/proc/self/statm") >> all >> resident;
        return static_cast<double>(resident) * 4096 / 1e6;
    };
    const GraphStyle style{QPalette(), QFont()};
    constexpr QSize sizes[]{{4096, 4096}, {4096, 1}, {1, 4096}};
    constexpr int count = 8;
    std::vector<std::unique_ptr<GraphBox>> boxes;
    double before = 0;
    for (const QSize& size : sizes)
        for (int i = 0; i < count; ++i) {
            const auto red = [size] {
                QImage image(size, QImage::Format_ARGB32);
                image.fill(Qt::red);
                return image;
            };
            boxes.push_back(std::make_unique<GraphBox>(0, BoxText(), style, red, [] {}));
            QImage seen(boxes.back()->Box().size().toSize(), QImage::Format_RGB32);
            seen.fill(Qt::white);
            QPainter painter(&seen);
            boxes.back()->paint(&painter, nullptr, nullptr);
            painter.end();
            EXPECT_TRUE(HasRed(seen)) << size.width() << " x " << size.height();
            if (boxes.size() == 1)
                before = megabytes();
        }
    EXPECT_LT(megabytes() - before, 64) << "each would take as much";
}

} // namespace
} // namespace plinket3::test

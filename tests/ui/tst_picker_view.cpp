#include "../support/picker_test_kit.h"
#include "picker_file.h"
#include "picker_prompt.h"
#include "picker_view.h"
#include "picker_window.h"

#include <QApplication>
#include <QFile>
#include <QPainter>
#include <QRegion>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>
#include <QWheelEvent>

// Qt 6 knows this type already.
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
Q_DECLARE_METATYPE(QMessageBox::StandardButton)
#endif

using namespace picker_test_kit;

namespace {

const QColor canvas(51, 51, 51);
const QColor red(200, 30, 30);
const QStringList ab{QStringLiteral("a"), QStringLiteral("b")};

// What a screen of that device pixel ratio shows of the view.
QImage render(picker_view& view, qreal dpr = 1) {
    QImage image(view.size() * dpr, QImage::Format_ARGB32);
    image.setDevicePixelRatio(dpr);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    view.paint(painter, view.rect());
    return image;
}

bool holds(const QImage& image, const QRect& area, QRgb colour) {
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            if (image.pixel(x, y) == colour)
                return true;
        }
    }
    return false;
}

} // namespace

class tst_picker_view : public QObject {
    Q_OBJECT

private slots:
    void conform_to_set_data() {
        QTest::addColumn<QStringList>("buttonNames");
        QTest::addColumn<QStringList>("selected");
        QTest::addColumn<int>("lit");
        QTest::addColumn<QVector<char>>("which");
        QTest::addColumn<bool>("changed");

        QTest::newRow("some") << ab << QStringList{QStringLiteral("a"), QStringLiteral("z")} << 2
                              << QVector<char>{1, 0} << true;
        QTest::newRow("none") << ab << QStringList{QStringLiteral("A")} << 0 << QVector<char>{0, 0}
                              << false;
        QTest::newRow("no names counts as all")
            << QStringList() << QStringList() << 1 << QVector<char>() << true;
    }

    void conform_to_set() {
        QFETCH(QStringList, buttonNames);
        QFETCH(QStringList, selected);
        QFETCH(int, lit);
        QFETCH(QVector<char>, which);
        QFETCH(bool, changed);
        picker_tab tab;
        tab.insertButton(button(buttonNames, QPoint(40, 30), 10), -1);

        QCOMPARE(tab.conform_to_set(button_set::fromStringList(selected)), changed);

        const buttonRecord& button = tab.buttons().at(0);
        QCOMPARE(int(button.selected), lit);
        QCOMPARE(button.which, which);
        QCOMPARE(tab.any_selected(), lit != 0);
        QVERIFY(tab.mirror()->names().isEmpty());
    }

    // A 400 x 400 view of two buttons spanning 100 x 50 picker units, centred on (49, 24).
    void navigation_data() {
        QTest::addColumn<double>("startZoom");
        QTest::addColumn<int>("wheel"); // 0: Frame View instead
        QTest::addColumn<int>("selectedButton");
        QTest::addColumn<double>("zoom");
        QTest::addColumn<QPoint>("shift");

        // About the pointer at (100, 60); the notch's first count is swallowed: +-120 is one step,
        // +-60 none.
        QTest::newRow("notch in") << 1.0 << 120 << -1 << 1.0625 << QPoint(-6, -3);
        QTest::newRow("notch out") << 1.0 << -120 << -1 << 0.9375 << QPoint(7, 4);
        QTest::newRow("half notch in") << 1.0 << 60 << -1 << 1.0 << QPoint(0, 0);
        QTest::newRow("half notch out") << 1.0 << -60 << -1 << 1.0 << QPoint(0, 0);
        QTest::newRow("at the upper limit") << 16.0 << 120 << -1 << 16.0 << QPoint(0, 0);
        // min(400 / 100, 400 / 50) * 0.75 = 3; the centre goes to (200, 200).
        QTest::newRow("frame all buttons") << 1.0 << 0 << -1 << 3.0 << QPoint(53, 128);
        // A lone button takes a quarter of the view: 400 / 10 * 0.25 = 10 about its centre
        // (94, 44).
        QTest::newRow("frame a lone selected button")
            << 1.0 << 0 << 1 << 10.0 << QPoint(-740, -240);
    }

    void navigation() {
        QFETCH(double, startZoom);
        QFETCH(int, wheel);
        QFETCH(int, selectedButton);
        QFETCH(double, zoom);
        QFETCH(QPoint, shift);
        picker_view view;
        view.resize(400, 400);
        view.tab()->insertButton(button({QStringLiteral("a")}, QPoint(5, 5), 10), -1);
        view.tab()->insertButton(button({QStringLiteral("b")}, QPoint(95, 45), 10), -1);
        if (selectedButton >= 0)
            view.tab()->select(selectedButton, false);
        view.setZoom(static_cast<float>(startZoom), QPoint(0, 0));

        if (wheel != 0) {
            const QPointF pointer(100, 60);
            QWheelEvent event(pointer, QPointF(view.mapToGlobal(pointer.toPoint())), QPoint(),
                              QPoint(0, wheel), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                              false);
            QApplication::sendEvent(&view, &event);
        } else {
            view.frame_view();
            // The zoom lands on the eighth animation tick.
            for (int tick = 0; tick < 8; ++tick) {
                QVERIFY(view.animating());
                view.animate_zoom();
            }
            QVERIFY(!view.animating());
        }
        QCOMPARE(view.zoom(), zoom);
        QCOMPARE(view.shift(), shift);
    }

    // A button at (50, 50) is painted once, changed, and painted again: its look is kept between
    // paints, so the change must show. One name makes a square, two a circle in the same box.
    void button_looks_data() {
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<qint32>("type");
        QTest::addColumn<QString>("change");
        QTest::addColumn<QList<QPoint>>("probes");
        QTest::addColumn<QList<QColor>>("colours");

        const QStringList a{QStringLiteral("a")};
        const qint32 circle = buttonAttributes::Selection;
        const qint32 command = buttonAttributes::Command;
        // The size-10 box fills (45, 45) to (53, 53); the circle leaves its corners.
        const QList<QPoint> box{{49, 49}, {44, 49}, {49, 54}, {45, 45}, {53, 53}};
        const QColor white(224, 224, 224);
        const QColor grey(128, 128, 128);
        QTest::newRow("one name") << a << circle << "" << box
                                  << QList<QColor>{red, canvas, canvas, red, red};
        QTest::newRow("two names")
            << ab << circle << "" << box << QList<QColor>{red, canvas, canvas, canvas, canvas};
        QTest::newRow("lit") << a << circle << "light" << box
                             << QList<QColor>{white, canvas, canvas, white, white};
        QTest::newRow("partly lit") << ab << circle << "light partly" << box
                                    << QList<QColor>{grey, canvas, canvas, canvas, canvas};
        QTest::newRow("circle recoloured") << ab << circle << "recolour" << QList<QPoint>{{50, 50}}
                                           << QList<QColor>{QColor(30, 30, 200)};
        // Lightened, and outlined in white: the half-pixel outline runs inside the left edge, and
        // nothing of it spills onto the canvas.
        QTest::newRow("command lit")
            << ab << command << "light" << QList<QPoint>{{50, 50}, {45, 50}, {44, 50}}
            << QList<QColor>{QColor(red.lighter(150).rgb()), QColor(255, 148, 148), canvas};
        // Inside the grown shape, outside the first one.
        QTest::newRow("circle grown")
            << ab << circle << "grown" << QList<QPoint>{{37, 50}} << QList<QColor>{red};
        QTest::newRow("command zoomed")
            << ab << command << "zoom" << QList<QPoint>{{105, 100}} << QList<QColor>{red};
    }

    void button_looks() {
        QFETCH(QStringList, names);
        QFETCH(qint32, type);
        QFETCH(QString, change);
        QFETCH(QList<QPoint>, probes);
        QFETCH(QList<QColor>, colours);
        picker_view view;
        view.resize(240, 200);
        view.tab()->insertButton(button(names, QPoint(50, 50), 10, 0xFFC81E1E, type), -1);
        render(view);

        picker_tab* tab = view.tab();
        if (change.startsWith(QLatin1String("light")))
            tab->conform_to_set(button_set::fromStringList(
                change.endsWith(QLatin1String("partly")) ? QStringList{"a"_q} : names));
        if (change == QLatin1String("grown"))
            tab->editButtons({0}, [](buttonAttributes& att, int) { att.size = 30; });
        if (change == QLatin1String("recolour"))
            tab->editButtons(
                {0}, [](buttonAttributes& att, int) { att.color = QColor(30, 30, 200).rgb(); });
        if (change == QLatin1String("zoom"))
            view.setZoom(2.0f, QPoint(0, 0));
        const QImage image = render(view);
        for (int i = 0; i < probes.size(); ++i)
            QCOMPARE(image.pixelColor(probes.at(i)), colours.at(i));
    }

    // Two buttons with the same label share what is drawn of it; a changed label colour or text
    // must not show the old one.
    void repaint_shows_a_changed_label() {
        picker_view view;
        view.resize(200, 100);
        buttonAttributes att = button(ab, QPoint(50, 50), 30);
        att.label = QStringLiteral("WWW");
        att.tcolor = 0xFF00FF00;
        view.tab()->insertButton(att, -1);
        att.pos = QPoint(150, 50);
        view.tab()->insertButton(att, -1);
        const QRect first = view.mapToScreen(view.shape(0).bounds);
        const QRect second = view.mapToScreen(view.shape(1).bounds);
        QImage image = render(view);
        QVERIFY(holds(image, first, 0xFF00FF00) && holds(image, second, 0xFF00FF00));

        view.tab()->editButtons({1}, [](buttonAttributes& a, int) { a.tcolor = 0xFF0000FF; });
        image = render(view);
        QVERIFY(holds(image, first, 0xFF00FF00));
        QVERIFY(holds(image, second, 0xFF0000FF) && !holds(image, second, 0xFF00FF00));

        view.tab()->editButtons({1}, [](buttonAttributes& a, int) { a.label.clear(); });
        QVERIFY(!holds(render(view), second, 0xFF0000FF));
    }

    // The demo drawn with its labels and with each label in its button's own colour: wherever the
    // two differ, a label drew, and that must be inside a labelled button's box.
    void demo_labels_inside(double zoom, double dpr) {
        QFile file(QStringLiteral(DEMO_PICKER));
        QVERIFY(file.open(QIODevice::ReadOnly));
        picker_tab_record demo;
        QVERIFY(readPickerFile(file, demo).error.isEmpty());
        picker_view view;
        view.resize(520, 640);
        view.tab()->replaceButtons(demo.buttons);
        view.setZoom(float(zoom), QPoint(0, 0));
        const QImage labelled = render(view, dpr);
        index_list all;
        for (int i = 0; i < view.tab()->count(); ++i)
            all << i;
        view.tab()->editButtons(all, [](buttonAttributes& att, int) { att.tcolor = att.color; });
        const QImage hidden = render(view, dpr);
        QRegion boxes;
        int labels = 0;
        for (int i = 0; i < view.tab()->count(); ++i) {
            if (view.tab()->buttons().at(i).att.label.isEmpty())
                continue;
            const QRect box = view.mapToScreen(view.shape(i).bounds);
            boxes += QRect(box.topLeft() * dpr, box.size() * dpr);
            ++labels;
        }
        QVERIFY(labels > 20);
        int inked = 0;
        for (int y = 0; y < labelled.height(); ++y) {
            for (int x = 0; x < labelled.width(); ++x) {
                if (labelled.pixel(x, y) == hidden.pixel(x, y))
                    continue;
                ++inked;
                QVERIFY2(boxes.contains(QPoint(x, y)), qPrintable("ink at %1, %2"_q.arg(x).arg(y)));
            }
        }
        QVERIFY(inked > 0);
    }

    // Labels and the background read back in device pixels. A label is drawn at the resolution
    // shown, its glyph edges smoothed there, and never a stretched picture of its zoom-1 self; a
    // light label on a lit button of its own colour turns dark; the background is smoothed.
    void crisp_data() {
        QTest::addColumn<QString>("shown");
        QTest::addColumn<double>("zoom");
        QTest::addColumn<double>("dpr");
        QTest::newRow("label at zoom 2.5") << "label" << 2.5 << 1.0;
        QTest::newRow("label at dpr 2") << "label" << 1.0 << 2.0;
        QTest::newRow("label at zoom 0.77, dpr 1.5") << "label" << 0.77 << 1.5;
        QTest::newRow("label where a glide over a crowd lands") << "glide" << 1.3 << 1.0;
        QTest::newRow("white label on a lit white command") << "lit label" << 1.0 << 1.0;
        QTest::newRow("background at zoom 2") << "background" << 2.0 << 1.0;
        QTest::newRow("the demo's labels inside their boxes at zoom 0.77") << "demo" << 0.77 << 1.0;
        QTest::newRow("the demo's labels inside their boxes at zoom 0.6, dpr 1.25")
            << "demo" << 0.6 << 1.25;
    }

    void crisp() {
        QFETCH(QString, shown);
        QFETCH(double, zoom);
        QFETCH(double, dpr);
        if (shown == QLatin1String("demo")) {
            demo_labels_inside(zoom, dpr);
            return;
        }
        picker_view view;
        view.resize(200, 100);
        const bool lit = shown == QLatin1String("lit label");
        buttonAttributes att =
            button({"a"_q}, QPoint(40, 30), 10, 0xFFC81E1E,
                   lit ? buttonAttributes::Command : buttonAttributes::Selection);
        att.label = "Wg"_q;
        att.color = 0xFFFFFFFF;
        att.tcolor = lit ? 0xFFFFFFFF : 0xFF000000;
        if (shown == QLatin1String("background")) {
            QImage halves(8, 8, QImage::Format_RGB32);
            halves.fill(Qt::black);
            QPainter(&halves).fillRect(4, 0, 4, 8, Qt::white);
            const QPixmap background = QPixmap::fromImage(halves);
            view.tab()->setBackground(QString::number(background.cacheKey()), background);
        } else {
            view.tab()->insertButton(att, -1);
        }
        if (lit)
            view.tab()->select(0, false);
        if (shown == QLatin1String("glide")) {
            // Too many buttons in sight to draw each frame's faces anew: the glide shows the
            // last exact ones scaled, and the frame it lands on must be drawn exactly again.
            for (int i = 0; i < 300; ++i) {
                buttonAttributes crowd = button(ab, QPoint(80 + i % 30 * 4, 4 + i / 30 * 5), 4);
                crowd.label = QString::number(i % 7);
                view.tab()->insertButton(crowd, -1);
            }
            render(view);
            view.zoomWindow(float(zoom), QPoint(0, 0));
            while (view.animating()) {
                view.animate_zoom();
                render(view);
            }
        } else {
            view.setZoom(float(zoom), QPoint(0, 0));
        }
        const QImage image = render(view, dpr);
        if (shown == QLatin1String("background")) {
            // Black then white halves: the two device pixels each side of where they meet are a
            // quarter and three quarters of the way, up to the rounding of the smoothing's weights.
            const int expected[] = {0, 64, 191, 255};
            for (int i = 0; i < 4; ++i) {
                const int red = qRed(image.pixel(6 + i, 4));
                QVERIFY2(std::abs(red - expected[i]) <= 3, qPrintable(QString::number(red)));
            }
            return;
        }
        const QRect box = view.mapToScreen(view.shape(0).bounds);
        const QRect pixels(box.topLeft() * dpr, box.size() * dpr);
        QSet<int> greys;
        int darkest = 255;
        for (int y = pixels.top() + 2; y < pixels.bottom() - 1; ++y) {
            for (int x = pixels.left() + 2; x < pixels.right() - 1; ++x) {
                const int grey = qGreen(image.pixel(x, y));
                darkest = std::min(darkest, grey);
                if (grey > 0 && grey < 255)
                    greys.insert(grey);
            }
        }
        QVERIFY(darkest < 64);
        // A stretched picture of the zoom-1 label holds its ink and the fill, and hardly a shade
        // between; text drawn at this resolution smooths its edges in many.
        if (!lit)
            QVERIFY2(greys.size() >= 12, qPrintable(QString::number(greys.size())));
    }
};

QTEST_MAIN(tst_picker_view)
#include "tst_picker_view.moc"

#include "picker_overlay.h"
#include "picker_prompt.h"
#include "picker_view.h"
#include "picker_window.h"
#include "ui_test_support.h"

#include <QImage>
#include <QPainter>
#include <QTemporaryDir>
#include <QTest>

// Qt 6 knows this type already.
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
Q_DECLARE_METATYPE(QMessageBox::StandardButton)
#endif

namespace {

const QColor canvas(51, 51, 51);
const QColor red(200, 30, 30);

buttonAttributes button_at(const QPoint& pos, int names, int type = buttonAttributes::Selection) {
    buttonAttributes att;
    att.pos = pos;
    att.size = 10;
    att.type = type;
    att.color = red.rgb();
    att.tcolor = 0xFF000000;
    for (int i = 0; i < names; ++i)
        att.sel << QStringLiteral("node%1").arg(i);
    return att;
}

// The view drawn into a fresh transparent image, as far as area asks.
QImage render(picker_view& view, const QRect& area = QRect()) {
    QImage image(view.size(), QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    view.paint(painter, area.isNull() ? view.rect() : area);
    return image;
}

QColor at(const QImage& image, int x, int y) {
    return image.pixelColor(x, y);
}

template <typename Test>
bool any_pixel(const QImage& image, const QRect& area, Test test) {
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            if (test(image.pixel(x, y)))
                return true;
        }
    }
    return false;
}

bool any_transparent(const QImage& image, const QRect& area) {
    return any_pixel(image, area, [](QRgb pixel) { return qAlpha(pixel) == 0; });
}

bool holds(const QImage& image, const QRect& area, QRgb colour) {
    return any_pixel(image, area, [colour](QRgb pixel) { return pixel == colour; });
}

} // namespace

class tst_picker_view_paint : public QObject {
    Q_OBJECT

private slots:
    void empty_tab_is_the_canvas();
    void selection_button_shapes_data();
    void selection_button_shapes();
    void command_button_states_data();
    void command_button_states();
    void command_pen_outlines_later_shapes();
    void repaint_shows_a_changed_look_data();
    void repaint_shows_a_changed_look();
    void light_label_is_cut_out_of_a_lit_button_data();
    void light_label_is_cut_out_of_a_lit_button();
    void repaint_shows_a_changed_label_data();
    void repaint_shows_a_changed_label();
    void only_buttons_meeting_the_area_are_drawn();
    void background_scales_with_the_view();
    void marquee();
    void banner_layout_and_clicks();
    void change_background_data();
    void change_background();
    void picker_menu_reaches_the_front_tab();
};

void tst_picker_view_paint::empty_tab_is_the_canvas() {
    picker_view view;
    view.resize(120, 100);
    const QImage image = render(view);
    for (const QPoint& p : {QPoint(0, 0), QPoint(60, 40), QPoint(119, 0), QPoint(0, 60)})
        QCOMPARE(at(image, p.x(), p.y()), canvas);
}

void tst_picker_view_paint::selection_button_shapes_data() {
    QTest::addColumn<int>("names");
    QTest::addColumn<int>("lit");
    QTest::addColumn<double>("zoom");
    QTest::addColumn<QColor>("fill");
    QTest::addColumn<bool>("cornersFilled");

    // One name: a square filling (45, 45) to (53, 53); two: a circle in the same box.
    QTest::newRow("one name") << 1 << 0 << 1.0 << red << true;
    QTest::newRow("two names") << 2 << 0 << 1.0 << red << false;
    QTest::newRow("lit") << 1 << 1 << 1.0 << QColor(224, 224, 224) << true;
    QTest::newRow("partly lit") << 2 << 2 << 1.0 << QColor(128, 128, 128) << false;
    QTest::newRow("zoom 2") << 1 << 0 << 2.0 << red << true;
}

void tst_picker_view_paint::selection_button_shapes() {
    QFETCH(int, names);
    QFETCH(int, lit);
    QFETCH(double, zoom);
    QFETCH(QColor, fill);
    QFETCH(bool, cornersFilled);

    picker_view view;
    view.resize(240, 200);
    view.setZoom(static_cast<float>(zoom), QPoint(0, 0));
    view.push_button(button_at(QPoint(50, 50), names), -1);
    (*view.buttons())[0].selected = static_cast<qint16>(lit);
    const QImage image = render(view);

    const QRect box = view.mapToScreen(view.buttons()->at(0).bounds);
    const QPoint c = box.center();
    QCOMPARE(at(image, c.x(), c.y()), fill);
    QCOMPARE(at(image, box.left() - 1, c.y()), canvas);
    QCOMPARE(at(image, c.x(), box.bottom() + 1), canvas);
    QCOMPARE(at(image, box.left(), box.top()) == fill, cornersFilled);
    QCOMPARE(at(image, box.right(), box.bottom()) == fill, cornersFilled);
    if (zoom == 1.0)
        QCOMPARE(box, QRect(45, 45, 9, 9));
}

void tst_picker_view_paint::command_button_states_data() {
    QTest::addColumn<int>("lit");
    QTest::addColumn<QColor>("fill");
    QTest::addColumn<bool>("outlineLighter");

    const QColor colour(100, 0, 0);
    QTest::newRow("unlit: own colour, black outline") << 0 << colour << false;
    QTest::newRow("lit: lightened, white outline") << 1 << colour.lighter(150) << true;
    QTest::newRow("partly lit: grey") << 2 << QColor(128, 128, 128) << false;
}

void tst_picker_view_paint::command_button_states() {
    QFETCH(int, lit);
    QFETCH(QColor, fill);
    QFETCH(bool, outlineLighter);

    picker_view view;
    view.resize(120, 100);
    buttonAttributes att = button_at(QPoint(50, 50), 1, buttonAttributes::Command);
    att.color = QColor(100, 0, 0).rgb();
    att.size = 30;
    view.push_button(att, -1);
    (*view.buttons())[0].selected = static_cast<qint16>(lit);
    const QImage image = render(view);

    QCOMPARE(at(image, 50, 50), fill);
    // The half-pixel outline blends into the left edge, half-way down.
    const QColor edge = at(image, 35, 50);
    QCOMPARE(edge.green() > fill.green(), outlineLighter);
    if (lit == 0) {
        // The gradient lightens the top edge and darkens the bottom one.
        QVERIFY(at(image, 50, 36).red() > fill.red());
        QVERIFY(at(image, 50, 63).red() < fill.red());
    }
}

void tst_picker_view_paint::command_pen_outlines_later_shapes() {
    // A circle drawn after a lit command button takes its white outline; drawn alone it has none.
    const auto circle_edge = [](bool afterCommand) {
        picker_view view;
        view.resize(200, 100);
        buttonAttributes command = button_at(QPoint(150, 50), 1, buttonAttributes::Command);
        if (afterCommand)
            view.push_button(command, -1);
        buttonAttributes circle = button_at(QPoint(50, 50), 2);
        circle.color = QColor(0, 0, 200).rgb();
        circle.size = 30;
        view.push_button(circle, -1);
        if (afterCommand)
            (*view.buttons())[0].selected = buttonRecord::All;
        const QImage image = render(view);
        return at(image, 35, 50);
    };
    QVERIFY(circle_edge(true).green() > circle_edge(false).green() + 30);
}

void tst_picker_view_paint::repaint_shows_a_changed_look_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("change");
    QTest::addColumn<QPoint>("probe");
    QTest::addColumn<QColor>("expected");

    const QColor blue(30, 30, 200);
    for (const int type : {int(buttonAttributes::Selection), int(buttonAttributes::Command)}) {
        const char* kind = type == buttonAttributes::Selection ? "circle: " : "command: ";
        const QColor lit = type == buttonAttributes::Selection ? QColor(224, 224, 224)
                                                               : QColor(red.lighter(150).rgb());
        QTest::addRow("%srecoloured", kind) << type << "recolour" << QPoint(50, 50) << blue;
        QTest::addRow("%slit", kind) << type << "light" << QPoint(50, 50) << lit;
        // Inside the grown shape, outside the first one.
        QTest::addRow("%sgrown", kind) << type << "grow" << QPoint(33, 50) << red;
        QTest::addRow("%szoomed", kind) << type << "zoom" << QPoint(115, 100) << red;
    }
}

void tst_picker_view_paint::repaint_shows_a_changed_look() {
    QFETCH(int, type);
    QFETCH(QString, change);
    QFETCH(QPoint, probe);
    QFETCH(QColor, expected);

    picker_view view;
    view.resize(200, 150);
    buttonAttributes att = button_at(QPoint(50, 50), 2, type);
    att.size = 20;
    view.push_button(att, -1);
    render(view);

    buttonRecord& button = (*view.buttons())[0];
    if (change == QLatin1String("recolour"))
        button.att.color = QColor(30, 30, 200).rgb();
    else if (change == QLatin1String("light"))
        button.selected = buttonRecord::All;
    else if (change == QLatin1String("grow"))
        view.set_button_size(&button, 40);
    else
        view.setZoom(2.0f, QPoint(0, 0));
    QCOMPARE(at(render(view), probe.x(), probe.y()), expected);
}

void tst_picker_view_paint::light_label_is_cut_out_of_a_lit_button_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("lit");
    QTest::addColumn<QRgb>("labelColour");
    QTest::addColumn<bool>("cutOut");

    QTest::newRow("lit, light label") << 0 << 1 << QRgb(0xFFFFFFFF) << true;
    QTest::newRow("lit, one light channel") << 0 << 1 << QRgb(0xFF800000) << true;
    QTest::newRow("lit, dark label") << 0 << 1 << QRgb(0xFF7F7F7F) << false;
    QTest::newRow("unlit, light label") << 0 << 0 << QRgb(0xFFFFFFFF) << false;
    QTest::newRow("partly lit, light label") << 0 << 2 << QRgb(0xFFFFFFFF) << false;
    QTest::newRow("lit command, light label") << 1 << 1 << QRgb(0xFFFFFFFF) << false;
}

void tst_picker_view_paint::light_label_is_cut_out_of_a_lit_button() {
    QFETCH(int, type);
    QFETCH(int, lit);
    QFETCH(QRgb, labelColour);
    QFETCH(bool, cutOut);

    picker_view view;
    view.resize(200, 100);
    buttonAttributes att = button_at(QPoint(100, 50), 1, type);
    att.label = QStringLiteral("WWW");
    att.tcolor = labelColour;
    att.size = 30;
    view.push_button(att, -1);
    (*view.buttons())[0].selected = static_cast<qint16>(lit);
    const QImage image = render(view);

    QCOMPARE(any_transparent(image, view.mapToScreen(view.buttons()->at(0).bounds)), cutOut);
}

void tst_picker_view_paint::repaint_shows_a_changed_label_data() {
    QTest::addColumn<int>("type");
    QTest::newRow("rounded selection button") << int(buttonAttributes::Selection);
    QTest::newRow("command button") << int(buttonAttributes::Command);
}

// Two buttons with the same label share what is drawn of it; a changed label colour or text
// must not show the old one.
void tst_picker_view_paint::repaint_shows_a_changed_label() {
    QFETCH(int, type);
    picker_view view;
    view.resize(200, 100);
    buttonAttributes att = button_at(QPoint(50, 50), 2, type);
    att.size = 30;
    att.label = QStringLiteral("WWW");
    att.tcolor = 0xFF00FF00;
    view.push_button(att, -1);
    att.pos = QPoint(150, 50);
    view.push_button(att, -1);
    const QRect first = view.mapToScreen(view.buttons()->at(0).bounds);
    const QRect second = view.mapToScreen(view.buttons()->at(1).bounds);
    QImage image = render(view);
    QVERIFY(holds(image, first, 0xFF00FF00) && holds(image, second, 0xFF00FF00));

    buttonRecord& button = (*view.buttons())[1];
    button.att.tcolor = 0xFF0000FF;
    view.update_label(&button);
    image = render(view);
    QVERIFY(holds(image, first, 0xFF00FF00));
    QVERIFY(holds(image, second, 0xFF0000FF) && !holds(image, second, 0xFF00FF00));

    button.att.label.clear();
    view.update_label(&button);
    QVERIFY(!holds(render(view), second, 0xFF0000FF));
}

void tst_picker_view_paint::only_buttons_meeting_the_area_are_drawn() {
    picker_view view;
    view.resize(120, 100);
    view.push_button(button_at(QPoint(50, 50), 1), -1);
    // Drawing is not clipped to the area: a button that meets it is drawn whole, one that
    // misses it not at all.
    QCOMPARE(at(render(view, QRect(0, 0, 48, 48)), 52, 52), red);
    QCOMPARE(qAlpha(render(view, QRect(0, 0, 40, 40)).pixel(52, 52)), 0);
}

void tst_picker_view_paint::background_scales_with_the_view() {
    QPixmap back(20, 20);
    back.fill(Qt::green);
    picker_view view;
    view.resize(120, 100);
    view.setBackground(QStringLiteral("1"), back);

    QImage image = render(view);
    QCOMPARE(at(image, 18, 18), QColor(Qt::green));
    QCOMPARE(at(image, 30, 30), canvas);

    view.setZoom(2.0f, QPoint(0, 0));
    view.setShift(QPoint(10, 0));
    image = render(view);
    QCOMPARE(at(image, 5, 5), canvas);
    QCOMPARE(at(image, 45, 35), QColor(Qt::green));
    QCOMPARE(at(image, 50, 45), canvas);
}

void tst_picker_view_paint::marquee() {
    picker_view view;
    view.resize(120, 100);
    marquee_overlay* marquee = view.overlay()->marquee();
    QVERIFY(marquee->isEmpty());
    marquee->setAnchor(QPoint(10, 40));
    marquee->setPoint(QPoint(10, 40));
    QVERIFY(!marquee->isEmpty());
    QCOMPARE(at(render(view), 10, 40), canvas);

    marquee->setPoint(QPoint(30, 20));
    QCOMPARE(marquee->bounds(), QRect(10, 20, 20, 20));
    const QImage image = render(view);
    const QColor faint = at(image, 20, 30);
    QVERIFY(at(image, 10, 30).red() > faint.red() + 40);
    QVERIFY(faint.red() > canvas.red() + 20 && faint.red() < 160);
    QCOMPARE(at(image, 35, 30), canvas);

    marquee->reset();
    QVERIFY(marquee->isEmpty());
}

void tst_picker_view_paint::banner_layout_and_clicks() {
    // Shown, so that resizing reaches the banner at once.
    picker_view view;
    view.resize(500, 300);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    const banner_overlay* banner = view.overlay()->banner();
    const QRect strip = banner->bounds();
    QCOMPARE(strip.bottom(), 299);
    QCOMPARE(strip.width(), 500);
    QCOMPARE(banner->entries().size(), 4);
    for (const banner_overlay::bannerRecord& entry : banner->entries()) {
        QVERIFY(QUrl(entry.url).isLocalFile());
        QCOMPARE(entry.bounds.top(), 300 - 22);
    }
    // The band is grey between the logo and the first label, above the text.
    const QImage image = render(view);
    QCOMPARE(at(image, banner->entries().first().bounds.left() - 3, 299 - 20),
             QColor(146, 146, 146));

    const QRect first = banner->entries().first().bounds;
    QVERIFY(!banner->click(QPoint(first.center().x(), 300 - 30)));
    QVERIFY(!banner->click(QPoint(3, 290)));
    QVERIFY(view.mouseCommand() == nullptr);
    QVERIFY(banner->click(QPoint(first.center().x(), 290)));
    QVERIFY(view.mouseCommand() != nullptr);

    // The gap between labels never drops below 10 pixels, and a zero height keeps the layout.
    view.resize(60, 300);
    const QList<banner_overlay::bannerRecord>& narrow = banner->entries();
    QCOMPARE(narrow.at(1).bounds.left() - narrow.at(0).bounds.right(), 11);
    view.overlay()->banner()->resize(60, 0);
    QCOMPARE(banner->bounds(), QRect(0, 300 - strip.height(), 60, strip.height()));
}

void tst_picker_view_paint::change_background_data() {
    QTest::addColumn<bool>("hadBackground");
    QTest::addColumn<bool>("chooseFile");
    QTest::addColumn<QMessageBox::StandardButton>("answer");
    QTest::addColumn<bool>("asked");
    QTest::addColumn<bool>("hasBackground");

    QTest::newRow("new image") << false << true << QMessageBox::NoButton << false << true;
    QTest::newRow("replaced image") << true << true << QMessageBox::NoButton << false << true;
    QTest::newRow("cancel without image") << false << false << QMessageBox::Yes << false << false;
    QTest::newRow("cancel, remove") << true << false << QMessageBox::Yes << true << false;
    QTest::newRow("cancel, keep") << true << false << QMessageBox::Cancel << true << true;
}

void tst_picker_view_paint::change_background() {
    QFETCH(bool, hadBackground);
    QFETCH(bool, chooseFile);
    QFETCH(QMessageBox::StandardButton, answer);
    QFETCH(bool, asked);
    QFETCH(bool, hasBackground);

    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("back.png"));
    QImage picture(8, 6, QImage::Format_ARGB32);
    picture.fill(Qt::blue);
    QVERIFY(picture.save(file));

    picker_view view;
    if (hadBackground) {
        QPixmap old(4, 4);
        old.fill(Qt::red);
        view.setBackground(QString::number(old.cacheKey()), old);
    }
    QString filter;
    picker_set_file_hook([&](const picker_file_question& question) {
        filter = question.filter;
        return chooseFile ? QStringList{file} : QStringList();
    });
    bool questioned = false;
    picker_set_message_hook([&](const picker_message& message) {
        questioned = message.text == QLatin1String("Remove current background image?");
        return answer;
    });

    view.change_background();
    picker_set_file_hook({});
    picker_set_message_hook({});

    QCOMPARE(filter, QStringLiteral("Images (*.png *.xpm *.jpg)"));
    QCOMPARE(questioned, asked);
    QCOMPARE(!view.background().isNull(), hasBackground);
    QCOMPARE(view.backgroundKey().isEmpty(), !hasBackground);
    if (chooseFile) {
        QCOMPARE(view.background().size(), QSize(8, 6));
        QCOMPARE(view.backgroundKey(), QString::number(view.background().cacheKey()));
    }
}

void tst_picker_view_paint::picker_menu_reaches_the_front_tab() {
    picker_window window(nullptr);
    window.new_tab();
    picker_view* back = qobject_cast<picker_view*>(tabs_of(window)->widget(0));
    picker_view* front = window.frontPicker();
    window.setSelection({QStringLiteral("node1")});

    entry_of(window, 2, QStringLiteral("Add One Button"))->trigger();
    QCOMPARE(front->buttons()->size(), 1);
    QVERIFY(back->buttons()->isEmpty());

    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("back.png"));
    QImage picture(8, 6, QImage::Format_ARGB32);
    picture.fill(Qt::blue);
    QVERIFY(picture.save(file));
    picker_set_file_hook([&](const picker_file_question&) { return QStringList{file}; });
    entry_of(window, 2, QStringLiteral("Change Background..."))->trigger();
    picker_set_file_hook({});
    QCOMPARE(front->background().size(), QSize(8, 6));
    QVERIFY(back->background().isNull());
}

QTEST_MAIN(tst_picker_view_paint)
#include "tst_picker_view_paint.moc"

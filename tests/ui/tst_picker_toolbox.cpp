#include "picker_colorMenu.h"
#include "picker_toolbox.h"
#include "picker_view.h"
#include "picker_window.h"
#include "ui_test_support.h"

#include <QCursor>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>

namespace {

enum palette_kind { colour_palette, bw_palette };
enum setter_kind { set_colour, set_label_colour, set_size, set_label };

const int edit_menu = 1;
const QRgb firebrick = 0xFFB22222;
const QRgb black = 0xFF000000;

picker_colorMenu* open_palette(int kind, const QPoint& where, const QColor& current) {
    return kind == colour_palette ? picker_colorMenu::execute_color(where, current)
                                  : picker_colorMenu::execute_bw(where, current);
}

QRgb icon_colour(const QPushButton* button) {
    return button->icon().pixmap(12, 12).toImage().pixel(6, 6);
}

// A button that differs from the toolbox defaults in every attribute the toolbox shows.
struct styled {
    QRgb color;
    int size;
    QString label;
    QRgb tcolor;
    qint16 lit;
};

void fill(picker_view* view, const QList<styled>& buttons) {
    for (int i = 0; i < buttons.size(); ++i) {
        buttonAttributes att;
        att.pos = QPoint(30 * i, 0);
        att.color = buttons.at(i).color;
        att.size = buttons.at(i).size;
        att.label = buttons.at(i).label;
        att.tcolor = buttons.at(i).tcolor;
        view->push_button(att, -1);
        (*view->buttons())[i].selected = buttons.at(i).lit;
    }
}

// Three buttons, the first and last alike and lit when selected.
QList<styled> two_of_three(bool selected) {
    const qint16 lit = selected ? buttonRecord::All : buttonRecord::None;
    return {{0xFF102030, 14, QStringLiteral("A"), 0xFFFFFFFF, lit},
            {0xFF405060, 12, QStringLiteral("B"), 0xFFFFFFFF, buttonRecord::None},
            {0xFF102030, 14, QStringLiteral("A"), 0xFFFFFFFF, lit}};
}

QAction* size_entry(const picker_toolbox* toolbox, const QString& text) {
    const QList<QAction*> sizes = toolbox->sizeButton()->menu()->actions();
    for (QAction* action : sizes) {
        if (action->text() == text)
            return action;
    }
    return nullptr;
}

} // namespace

Q_DECLARE_METATYPE(styled)

class tst_picker_toolbox : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();

    void palette_layout_data();
    void palette_layout();
    void palette_swatches_data();
    void palette_swatches();
    void nearest_colour_data();
    void nearest_colour();
    void position_to_index_data();
    void position_to_index();
    void palette_paints_highlight_around_tracked_swatch();
    void palette_pointer_data();
    void palette_pointer();

    void update_controls_data();
    void update_controls();
    void setters_data();
    void setters();
    void size_choices_data();
    void size_choices();
    void palette_choice_recolours_selection();
    void hide_and_show_data();
    void hide_and_show();
};

void tst_picker_toolbox::initTestCase() {
    QStandardPaths::setTestModeEnabled(true);
    // Qt 5 does not know the typedef by name, so the signal spy could not keep the colour.
    qRegisterMetaType<QRgb>("QRgb");
    qputenv("TALVORA_PICKER_CONFIG", QByteArray("/nonexistent/pickers.cfg"));
}

void tst_picker_toolbox::palette_layout_data() {
    QTest::addColumn<int>("kind");
    QTest::addColumn<QColor>("current");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("tracked");
    QTest::addColumn<QPoint>("topLeft");

    // Opened at (400, 300); the swatch centre lies 8 right of the column edge but 10 below the
    // row edge.
    QTest::newRow("red: third row, first column")
        << int(colour_palette) << QColor(255, 0, 0) << QSize(230, 116) << 24 << QPoint(392, 252);
    QTest::newRow("stored firebrick without alpha")
        << int(colour_palette) << QColor(0xB22222) << QSize(230, 116) << 36 << QPoint(392, 233);
    QTest::newRow("white: last swatch")
        << int(colour_palette) << QColor(255, 255, 255) << QSize(230, 116) << 71
        << QPoint(400 - 11 * 19 - 8, 300 - 10 - 5 * 19);
    QTest::newRow("grey 127 is nearer black")
        << int(bw_palette) << QColor(127, 127, 127) << QSize(21, 40) << 0 << QPoint(392, 290);
    QTest::newRow("grey 128 is nearer white")
        << int(bw_palette) << QColor(128, 128, 128) << QSize(21, 40) << 1 << QPoint(392, 271);
}

void tst_picker_toolbox::palette_layout() {
    QFETCH(int, kind);
    QFETCH(QColor, current);
    QFETCH(QSize, size);
    QFETCH(int, tracked);
    QFETCH(QPoint, topLeft);

    QPointer<picker_colorMenu> menu = open_palette(kind, QPoint(400, 300), current);
    QVERIFY(menu->isVisible());
    QVERIFY(menu->windowFlags().testFlag(Qt::Popup));
    QCOMPARE(menu->size(), size);
    QCOMPARE(menu->tracked(), tracked);
    QCOMPARE(menu->pos(), topLeft);
    menu->close();
    QTRY_VERIFY(menu.isNull());
}

void tst_picker_toolbox::palette_swatches_data() {
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("index");
    QTest::addColumn<QRgb>("colour");

    QTest::newRow("full red") << int(colour_palette) << 24 << QRgb(0xFFFF0000);
    QTest::newRow("full green, a third round") << int(colour_palette) << 28 << QRgb(0xFF00FF00);
    QTest::newRow("grey ramp ends exactly white") << int(colour_palette) << 71 << QRgb(0xFFFFFFFF);
    QTest::newRow("label white") << int(bw_palette) << 1 << QRgb(0xFFFFFFFF);
}

void tst_picker_toolbox::palette_swatches() {
    QFETCH(int, kind);
    QFETCH(int, index);
    QFETCH(QRgb, colour);

    QPointer<picker_colorMenu> menu = open_palette(kind, QPoint(0, 0), Qt::black);
    QCOMPARE(menu->colors().size(), kind == colour_palette ? 72 : 2);
    QCOMPARE(QString::number(menu->colors().at(index), 16), QString::number(colour, 16));
    menu->close();
    QTRY_VERIFY(menu.isNull());
}

void tst_picker_toolbox::nearest_colour_data() {
    QTest::addColumn<color_list>("colors");
    QTest::addColumn<QColor>("current");
    QTest::addColumn<int>("index");

    QTest::newRow("equidistant: the first wins")
        << color_list{0xFF000010, 0xFF000030} << QColor(0, 0, 0x20) << 0;
    QTest::newRow("strictly nearer later swatch")
        << color_list{0xFF000010, 0xFF000030} << QColor(0, 0, 0x21) << 1;
    QTest::newRow("alpha plays no part")
        << color_list{0x00FF0000, 0xFF00FF00} << QColor(255, 0, 0) << 0;
    QTest::newRow("squared distance, not the sum of differences")
        << color_list{0xFF030300, 0xFF000005} << QColor(0, 0, 0) << 0;
}

void tst_picker_toolbox::nearest_colour() {
    QFETCH(color_list, colors);
    QFETCH(QColor, current);
    QFETCH(int, index);

    const picker_colorMenu menu(colors, 1, 17, nullptr);
    QCOMPARE(menu.findColorIndex(current), index);
}

void tst_picker_toolbox::position_to_index_data() {
    QTest::addColumn<QPoint>("pos");
    QTest::addColumn<int>("index");

    QTest::newRow("top-left pad") << QPoint(0, 0) << 0;
    QTest::newRow("last pixel of the first swatch cell") << QPoint(18, 18) << 0;
    QTest::newRow("second row") << QPoint(0, 19) << 12;
    QTest::newRow("right edge counts as inside") << QPoint(230, 0) << 12;
    QTest::newRow("past the right edge") << QPoint(231, 0) << -1;
    QTest::newRow("left of the popup") << QPoint(-1, 5) << -1;
    QTest::newRow("y 114 is past the list") << QPoint(5, 114) << 72;
    QTest::newRow("bottom edge counts as inside") << QPoint(5, 116) << 72;
    QTest::newRow("below the popup") << QPoint(5, 117) << -1;
}

void tst_picker_toolbox::position_to_index() {
    QFETCH(QPoint, pos);
    QFETCH(int, index);

    QPointer<picker_colorMenu> menu = picker_colorMenu::execute_color(QPoint(300, 300), Qt::red);
    QCOMPARE(menu->positionToIndex(pos), index);
    menu->close();
    QTRY_VERIFY(menu.isNull());
}

void tst_picker_toolbox::palette_paints_highlight_around_tracked_swatch() {
    QPointer<picker_colorMenu> menu = picker_colorMenu::execute_color(QPoint(300, 300), Qt::red);
    const QImage image = menu->grab().toImage();
    const QRgb ring = qRgb(0, 182, 255);
    // Swatch 24 (red) is highlighted: its cell starts at (0, 38); swatch 25 beside it is not.
    QCOMPARE(image.pixel(1, 1), qRgb(40, 40, 40));
    QCOMPARE(image.pixel(1, 48), ring);
    QCOMPARE(image.pixel(3, 48), ring);
    QCOMPARE(image.pixel(10, 48), qRgb(255, 0, 0));
    QCOMPARE(image.pixel(20, 48), ring);
    QCOMPARE(image.pixel(21, 48), menu->colors().at(25));
    QCOMPARE(image.pixel(38, 48), qRgb(40, 40, 40));
    QCOMPARE(image.pixel(1, 29), qRgb(40, 40, 40));
    menu->close();
    QTRY_VERIFY(menu.isNull());
}

void tst_picker_toolbox::palette_pointer_data() {
    QTest::addColumn<int>("kind");
    QTest::addColumn<QPoint>("pos");
    QTest::addColumn<bool>("press");
    QTest::addColumn<int>("chosen"); // index of the emitted colour, -1 for none
    QTest::addColumn<bool>("closes");

    QTest::newRow("press and release on green")
        << int(colour_palette) << QPoint(4 * 19 + 10, 2 * 19 + 10) << true << 28 << true;
    QTest::newRow("x 229 picks the next row's first")
        << int(colour_palette) << QPoint(229, 2 * 19 + 10) << true << 36 << true;
    QTest::newRow("y 114 closes without a choice")
        << int(colour_palette) << QPoint(50, 114) << true << -1 << true;
    QTest::newRow("release of the opening click does nothing")
        << int(colour_palette) << QPoint(4 * 19 + 10, 2 * 19 + 10) << false << -1 << false;
    QTest::newRow("white label colour") << int(bw_palette) << QPoint(10, 30) << true << 1 << true;
}

void tst_picker_toolbox::palette_pointer() {
    QFETCH(int, kind);
    QFETCH(QPoint, pos);
    QFETCH(bool, press);
    QFETCH(int, chosen);
    QFETCH(bool, closes);

    QPointer<picker_colorMenu> menu = open_palette(kind, QPoint(300, 300), Qt::black);
    QVERIFY(QTest::qWaitForWindowExposed(menu));
    QSignalSpy choices(menu.data(), &picker_colorMenu::colorChanged);
    QTest::mouseMove(menu, pos);
    QTRY_COMPARE(menu->tracked(), menu->positionToIndex(pos));
    if (press)
        QTest::mousePress(menu, Qt::LeftButton, Qt::NoModifier, pos);
    QTest::mouseRelease(menu, Qt::LeftButton, Qt::NoModifier, pos);

    QCOMPARE(choices.count(), chosen >= 0 ? 1 : 0);
    if (chosen >= 0)
        QCOMPARE(choices.at(0).at(0).value<QRgb>(), menu->colors().at(chosen));
    if (closes) {
        QTRY_VERIFY(menu.isNull());
    } else {
        QVERIFY(menu->isVisible());
        menu->close();
        QTRY_VERIFY(menu.isNull());
    }
}

void tst_picker_toolbox::update_controls_data() {
    QTest::addColumn<QList<styled>>("buttons");
    QTest::addColumn<QRgb>("colour");
    QTest::addColumn<QString>("sizeText");
    QTest::addColumn<QString>("label");
    QTest::addColumn<QRgb>("textColour");
    QTest::addColumn<int>("size");

    QTest::newRow("one style selected")
        << two_of_three(true) << QRgb(0xFF102030) << QStringLiteral("14") << QStringLiteral("A")
        << QRgb(0xFFFFFFFF) << 14;
    QTest::newRow("labels A and B clear the field")
        << QList<styled>{{0xFF102030, 14, QStringLiteral("A"), 0xFFFFFFFF, buttonRecord::All},
                         {0xFF102030, 14, QStringLiteral("B"), 0xFFFFFFFF, buttonRecord::All}}
        << QRgb(0xFF102030) << QStringLiteral("14") << QString() << QRgb(0xFFFFFFFF) << 14;
    QTest::newRow("partly lit counts as selected")
        << QList<styled>{{0xFF405060, 7, QStringLiteral("C"), 0xFF000000, buttonRecord::None},
                         {0xFF102030, 18, QStringLiteral("D"), 0xFFFFFFFF, buttonRecord::Some}}
        << QRgb(0xFF102030) << QStringLiteral("18") << QStringLiteral("D") << QRgb(0xFFFFFFFF)
        << 18;
    QTest::newRow("nothing selected keeps controls and state")
        << two_of_three(false) << firebrick << QStringLiteral("10") << QStringLiteral("typed")
        << black << 10;
}

void tst_picker_toolbox::update_controls() {
    QFETCH(QList<styled>, buttons);
    QFETCH(QRgb, colour);
    QFETCH(QString, sizeText);
    QFETCH(QString, label);
    QFETCH(QRgb, textColour);
    QFETCH(int, size);

    picker_window window(nullptr);
    picker_toolbox* toolbox = window.toolbox();
    picker_view* view = window.frontPicker();
    fill(view, buttons);
    toolbox->labelField()->setText(QStringLiteral("typed"));

    window.updateControls();

    QCOMPARE(icon_colour(toolbox->colorButton()), colour);
    QCOMPARE(toolbox->sizeButton()->text(), sizeText);
    QCOMPARE(toolbox->labelField()->text(), label);
    QCOMPARE(icon_colour(toolbox->labelColorButton()), textColour);
    const bool any = view->any_selected();
    QCOMPARE(window.currentColor() | 0xFF000000, any ? colour : firebrick);
    QCOMPARE(window.currentTextColor() | 0xFF000000, any ? textColour : black);
    QCOMPARE(window.currentSize(), size);
    QCOMPARE(window.currentLabel(), any ? label : QString());
    QCOMPARE(view->undoer()->count(), 0);
}

void tst_picker_toolbox::setters_data() {
    QTest::addColumn<int>("setter");
    QTest::addColumn<bool>("selected");
    QTest::addColumn<QString>("undoText");

    struct row {
        const char* name;
        int setter;
        const char* undoText;
    };
    const row rows[] = {
        {"colour", set_colour, "Change Color"},
        {"label colour", set_label_colour, "Change Color"},
        {"size", set_size, "Change Size"},
        {"label", set_label, "Label Change"},
    };
    for (const row& r : rows) {
        QTest::addRow("%s, selection", r.name)
            << r.setter << true << QString::fromLatin1(r.undoText);
        QTest::addRow("%s, nothing selected", r.name) << r.setter << false << QString();
    }
}

void tst_picker_toolbox::setters() {
    QFETCH(int, setter);
    QFETCH(bool, selected);
    QFETCH(QString, undoText);

    picker_window window(nullptr);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    picker_toolbox* toolbox = window.toolbox();
    picker_view* view = window.frontPicker();
    fill(view, two_of_three(selected));
    const button_list before = *view->buttons();
    QSignalSpy steps(view->undoer(), &QUndoStack::indexChanged);

    const QRgb chosen = 0xFF00FF00;
    switch (setter) {
    case set_colour:
        toolbox->set_button_color(chosen);
        QCOMPARE(icon_colour(toolbox->colorButton()), chosen);
        break;
    case set_label_colour:
        toolbox->set_label_color(chosen);
        QCOMPARE(icon_colour(toolbox->labelColorButton()), chosen);
        break;
    case set_size:
        size_entry(toolbox, QStringLiteral("17"))->trigger();
        QCOMPARE(toolbox->sizeButton()->text(), QStringLiteral("17"));
        break;
    case set_label:
        toolbox->labelField()->setFocus();
        QTest::keyClicks(toolbox->labelField(), QStringLiteral("Hip"));
        QTest::keyClick(toolbox->labelField(), Qt::Key_Return);
        break;
    }

    QCOMPARE(steps.count(), selected ? 1 : 0);
    QCOMPARE(view->undoer()->count(), selected ? 1 : 0);
    QCOMPARE(view->undoer()->undoText(), undoText);
    const button_list& after = *view->buttons();
    for (int i = 0; i < after.size(); ++i) {
        buttonAttributes expected = before.at(i).att;
        if (before.at(i).selected != buttonRecord::None) {
            expected.color = setter == set_colour ? chosen : expected.color;
            expected.tcolor = setter == set_label_colour ? chosen : expected.tcolor;
            expected.size = setter == set_size ? 17 : expected.size;
            expected.label = setter == set_label ? QStringLiteral("Hip") : expected.label;
        }
        QCOMPARE(after.at(i).att, expected);
    }
    // Only the selection moves the state new buttons take, except for a chosen size.
    QCOMPARE(window.currentColor() | 0xFF000000, selected && setter == set_colour ? chosen
                                                 : selected                       ? 0xFF102030
                                                                                  : firebrick);
    QCOMPARE(window.currentLabel(), selected ? after.at(0).att.label : QString());

    if (selected) {
        view->undoer()->undo();
        for (int i = 0; i < after.size(); ++i)
            QCOMPARE(view->buttons()->at(i).att, before.at(i).att);
    }
}

void tst_picker_toolbox::size_choices_data() {
    QTest::addColumn<QStringList>("choices");
    QTest::addColumn<int>("size");

    QTest::newRow("14 is one step") << QStringList{QStringLiteral("14")} << 14;
    QTest::newRow("15 after 14 merges")
        << QStringList{QStringLiteral("14"), QStringLiteral("15")} << 15;
    QTest::newRow("unparsable text means 10") << QStringList{QStringLiteral("large")} << 10;
}

void tst_picker_toolbox::size_choices() {
    QFETCH(QStringList, choices);
    QFETCH(int, size);

    picker_window window(nullptr);
    picker_toolbox* toolbox = window.toolbox();
    picker_view* view = window.frontPicker();
    QList<styled> buttons;
    for (int i = 0; i < 3; ++i)
        buttons.append({0xFF102030, 6 + i, QString(), 0xFF000000, buttonRecord::All});
    fill(view, buttons);
    QAction foreign;

    for (const QString& choice : choices) {
        QAction* entry = size_entry(toolbox, choice);
        if (entry == nullptr) {
            foreign.setText(choice);
            entry = &foreign;
        }
        toolbox->set_button_size(entry);
    }

    QCOMPARE(view->undoer()->count(), 1);
    QCOMPARE(window.currentSize(), size);
    for (int i = 0; i < 3; ++i)
        QCOMPARE(view->buttons()->at(i).att.size, size);
    view->undoer()->undo();
    for (int i = 0; i < 3; ++i)
        QCOMPARE(view->buttons()->at(i).att.size, 6 + i);
}

void tst_picker_toolbox::palette_choice_recolours_selection() {
    picker_window window(nullptr);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    picker_toolbox* toolbox = window.toolbox();
    picker_view* view = window.frontPicker();
    fill(view, two_of_three(true));
    window.updateControls();

    QTest::mousePress(toolbox->colorButton(), Qt::LeftButton);
    const QPoint pointer = QCursor::pos();
    auto* palette = qobject_cast<picker_colorMenu*>(QApplication::activePopupWidget());
    QVERIFY(palette != nullptr);
    // Opened on the selection's colour, under the pointer.
    QCOMPARE(palette->colors().at(palette->tracked()),
             palette->colors().at(palette->findColorIndex(QColor(0xFF102030))));
    QCOMPARE(palette->mapToGlobal(palette->indexToPosition(palette->tracked())), pointer);
    QVERIFY(QTest::qWaitForWindowExposed(palette));
    QTest::mouseRelease(palette, Qt::LeftButton, Qt::NoModifier, QPoint(10, 48));
    QCOMPARE(view->undoer()->count(), 0);

    QTest::mouseMove(palette, QPoint(10, 48));
    QTRY_COMPARE(palette->tracked(), 24);
    QTest::mousePress(palette, Qt::LeftButton, Qt::NoModifier, QPoint(10, 48));
    QTest::mouseRelease(palette, Qt::LeftButton, Qt::NoModifier, QPoint(10, 48));

    QCOMPARE(view->undoer()->count(), 1);
    QCOMPARE(view->buttons()->at(0).att.color, QRgb(0xFFFF0000));
    QCOMPARE(view->buttons()->at(1).att.color, QRgb(0xFF405060));
    QCOMPARE(view->buttons()->at(2).att.color, QRgb(0xFFFF0000));
    QCOMPARE(icon_colour(toolbox->colorButton()), QRgb(0xFFFF0000));
    QVERIFY(QApplication::activePopupWidget() == nullptr);
}

void tst_picker_toolbox::hide_and_show_data() {
    QTest::addColumn<bool>("selected");
    QTest::addColumn<int>("steps");

    QTest::newRow("with a selection: size 10 as one step") << true << 1;
    QTest::newRow("nothing selected: no step") << false << 0;
}

void tst_picker_toolbox::hide_and_show() {
    QFETCH(bool, selected);
    QFETCH(int, steps);

    picker_window window(nullptr);
    picker_toolbox* toolbox = window.toolbox();
    picker_view* view = window.frontPicker();
    fill(view, two_of_three(selected));
    window.updateControls();
    const int sizeBefore = window.currentSize();
    QAction* toggle = entry_of(window, edit_menu, QStringLiteral("Hide Toolbox"));
    QVERIFY(toggle != nullptr);
    QSignalSpy stepSpy(view->undoer(), &QUndoStack::indexChanged);

    toggle->trigger();
    QCOMPARE(toggle->text(), QStringLiteral("Show Toolbox"));
    QVERIFY(!toolbox->isShown());
    QVERIFY(toolbox->colorButton() == nullptr);
    QVERIFY(window.findChildren<QLineEdit*>().isEmpty());
    QVERIFY(window.findChildren<QPushButton*>().isEmpty());
    window.updateControls();
    QCOMPARE(window.currentSize(), sizeBefore);
    QCOMPARE(stepSpy.count(), 0);

    toggle->trigger();
    QCOMPARE(toggle->text(), QStringLiteral("Hide Toolbox"));
    QVERIFY(toolbox->isShown());
    QCOMPARE(window.findChildren<QLineEdit*>().size(), 1);
    QCOMPARE(icon_colour(toolbox->colorButton()), firebrick);
    QCOMPARE(icon_colour(toolbox->labelColorButton()), black);
    QCOMPARE(toolbox->sizeButton()->text(), QStringLiteral("10"));
    QCOMPARE(window.currentSize(), 10);
    QCOMPARE(stepSpy.count(), steps);
    QCOMPARE(view->buttons()->at(0).att.size, selected ? 10 : 14);
    QCOMPARE(view->buttons()->at(1).att.size, 12);
    if (selected) {
        QCOMPARE(view->undoer()->undoText(), QStringLiteral("Change Size"));
        view->undoer()->undo();
        QCOMPARE(view->buttons()->at(0).att.size, 14);
    }
}

QTEST_MAIN(tst_picker_toolbox)
#include "tst_picker_toolbox.moc"

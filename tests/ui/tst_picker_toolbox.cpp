#include "../support/picker_test_kit.h"
#include "picker_colorMenu.h"
#include "picker_toolbox.h"
#include "picker_view.h"
#include "picker_window.h"

#include <QCursor>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

using namespace picker_test_kit;

namespace {

const QRgb firebrick = 0xFFB22222;

void close_palette(QPointer<picker_colorMenu>& menu) {
    menu->close();
    QTRY_VERIFY(menu.isNull());
}

QRgb icon_colour(const QPushButton* button) {
    return button->icon().pixmap(12, 12).toImage().pixel(6, 6);
}

struct styled {
    QRgb color;
    int size;
    QString label;
    qint16 lit;
};

void fill(picker_view* view, const QList<styled>& buttons) {
    for (int i = 0; i < buttons.size(); ++i) {
        buttonAttributes att;
        att.pos = QPoint(30 * i, 0);
        att.color = buttons.at(i).color;
        att.size = buttons.at(i).size;
        att.label = buttons.at(i).label;
        att.tcolor = 0xFFFFFFFF;
        view->tab()->insertButton(att, -1);
        if (buttons.at(i).lit != buttonRecord::None)
            view->tab()->select(i, false);
    }
}

// Three buttons, the first and last alike and lit when selected.
QList<styled> two_of_three(bool selected) {
    const qint16 lit = selected ? buttonRecord::All : buttonRecord::None;
    return {{0xFF102030, 14, QStringLiteral("A"), lit},
            {0xFF405060, 12, QStringLiteral("B"), buttonRecord::None},
            {0xFF102030, 14, QStringLiteral("A"), lit}};
}

} // namespace

Q_DECLARE_METATYPE(styled)

class tst_picker_toolbox : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        isolate_settings();
        // Qt 5 does not know the typedef by name, so the signal spy could not keep the colour.
        qRegisterMetaType<QRgb>("QRgb");
    }

    void palette_layout_data() {
        QTest::addColumn<bool>("colour");
        QTest::addColumn<QColor>("current");
        QTest::addColumn<int>("tracked");
        QTest::addColumn<QRgb>("swatch");
        QTest::addColumn<QPoint>("topLeft");

        // Opened at (400, 300); the swatch centre lies 8 right of the column edge but 10 below
        // the row edge.
        QTest::newRow("red: third row, first column")
            << true << QColor(255, 0, 0) << 24 << QRgb(0xFFFF0000) << QPoint(392, 252);
        QTest::newRow("white: the grey ramp's last swatch")
            << true << QColor(255, 255, 255) << 71 << QRgb(0xFFFFFFFF)
            << QPoint(400 - 11 * 19 - 8, 300 - 10 - 5 * 19);
        QTest::newRow("grey 127 is nearer black")
            << false << QColor(127, 127, 127) << 0 << QRgb(0xFF000000) << QPoint(392, 290);
    }

    void palette_layout() {
        QFETCH(bool, colour);
        QFETCH(QColor, current);
        QFETCH(int, tracked);
        QFETCH(QRgb, swatch);
        QFETCH(QPoint, topLeft);

        QPointer<picker_colorMenu> menu =
            colour ? picker_colorMenu::execute_color(QPoint(400, 300), current)
                   : picker_colorMenu::execute_bw(QPoint(400, 300), current);
        QCOMPARE(menu->size(), colour ? QSize(230, 116) : QSize(21, 40));
        QCOMPARE(menu->colors().size(), colour ? 72 : 2);
        QCOMPARE(menu->tracked(), tracked);
        QCOMPARE(QString::number(menu->colors().at(tracked), 16), QString::number(swatch, 16));
        QCOMPARE(menu->pos(), topLeft);
        close_palette(menu);
    }

    void palette_paints_highlight_around_tracked_swatch() {
        QPointer<picker_colorMenu> menu =
            picker_colorMenu::execute_color(QPoint(300, 300), Qt::red);
        const QImage image = menu->grab().toImage();
        const QRgb ring = qRgb(0, 182, 255);
        // Swatch 24 (red) is highlighted: its cell starts at (0, 38); swatch 25 beside it is not.
        QCOMPARE(image.pixel(1, 1), qRgb(40, 40, 40));
        QCOMPARE(image.pixel(1, 48), ring);
        QCOMPARE(image.pixel(10, 48), qRgb(255, 0, 0));
        QCOMPARE(image.pixel(20, 48), ring);
        QCOMPARE(image.pixel(21, 48), menu->colors().at(25));
        close_palette(menu);
    }

    void palette_pointer_data() {
        QTest::addColumn<QPoint>("pos");
        QTest::addColumn<bool>("press");
        QTest::addColumn<int>("index");
        QTest::addColumn<bool>("chosen");
        QTest::newRow("x 229 picks the next row's first") << QPoint(229, 48) << true << 36 << true;
        QTest::newRow("y 114 is past the list, closes without a choice")
            << QPoint(5, 114) << true << 72 << false;
        QTest::newRow("release of the opening click does nothing")
            << QPoint(86, 48) << false << 28 << false;
    }

    void palette_pointer() {
        QFETCH(QPoint, pos);
        QFETCH(bool, press);
        QFETCH(int, index);
        QFETCH(bool, chosen);

        QPointer<picker_colorMenu> menu =
            picker_colorMenu::execute_color(QPoint(300, 300), Qt::black);
        QVERIFY(QTest::qWaitForWindowExposed(menu));
        QSignalSpy choices(menu.data(), &picker_colorMenu::colorChanged);
        QTest::mouseMove(menu, pos);
        QTRY_COMPARE(menu->tracked(), index);
        if (press)
            QTest::mousePress(menu, Qt::LeftButton, Qt::NoModifier, pos);
        QTest::mouseRelease(menu, Qt::LeftButton, Qt::NoModifier, pos);

        QCOMPARE(choices.count(), chosen ? 1 : 0);
        if (chosen)
            QCOMPARE(choices.at(0).at(0).value<QRgb>(), menu->colors().at(index));
        if (press) {
            QTRY_VERIFY(menu.isNull());
        } else {
            QVERIFY(menu->isVisible());
            close_palette(menu);
        }
    }

    void update_controls_data() {
        QTest::addColumn<QList<styled>>("buttons");
        QTest::addColumn<QRgb>("colour");
        QTest::addColumn<QString>("label");
        QTest::addColumn<int>("size");

        QTest::newRow("one style selected")
            << two_of_three(true) << QRgb(0xFF102030) << QStringLiteral("A") << 14;
        QTest::newRow("labels A and B clear the field")
            << QList<styled>{{0xFF102030, 14, QStringLiteral("A"), buttonRecord::All},
                             {0xFF102030, 14, QStringLiteral("B"), buttonRecord::Some}}
            << QRgb(0xFF102030) << QString() << 14;
        QTest::newRow("nothing selected keeps colour and size, offers no label")
            << two_of_three(false) << firebrick << QString() << 10;
        // Mixed sizes show none, and no entry of the list is marked.
        QTest::newRow("sizes 14 and 18 show blank")
            << QList<styled>{{0xFF102030, 14, QStringLiteral("A"), buttonRecord::All},
                             {0xFF102030, 18, QStringLiteral("A"), buttonRecord::All}}
            << QRgb(0xFF102030) << QStringLiteral("A") << 0;
    }

    void update_controls() {
        QFETCH(QList<styled>, buttons);
        QFETCH(QRgb, colour);
        QFETCH(QString, label);
        QFETCH(int, size);

        picker_window window(nullptr);
        picker_toolbox* toolbox = window.toolbox();
        picker_view* view = window.frontPicker();
        fill(view, buttons);
        toolbox->labelField()->setText(QStringLiteral("typed"));

        window.updateControls();

        QCOMPARE(icon_colour(toolbox->colorButton()), colour);
        const QString shownSize = size > 0 ? QString::number(size) : QString();
        QCOMPARE(toolbox->sizeButton()->text(), shownSize);
        const QAction* marked = toolbox->sizeButton()->menu()->activeAction();
        QCOMPARE(marked != nullptr ? marked->text() : QString(),
                 view->tab()->any_selected() ? shownSize : QStringLiteral("10"));
        QCOMPARE(toolbox->labelField()->text(), label);
        QCOMPARE(view->tab()->undoer()->count(), 0);
    }

    void palette_choice_recolours_selection() {
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
        QCOMPARE(palette->tracked(), palette->findColorIndex(QColor(0xFF102030)));
        QCOMPARE(palette->mapToGlobal(palette->indexToPosition(palette->tracked())), pointer);
        QVERIFY(QTest::qWaitForWindowExposed(palette));
        QTest::mouseMove(palette, QPoint(10, 48));
        QTRY_COMPARE(palette->tracked(), 24);
        QTest::mousePress(palette, Qt::LeftButton, Qt::NoModifier, QPoint(10, 48));
        QTest::mouseRelease(palette, Qt::LeftButton, Qt::NoModifier, QPoint(10, 48));

        QCOMPARE(view->tab()->undoer()->count(), 1);
        QCOMPARE(view->tab()->buttons().at(0).att.color, QRgb(0xFFFF0000));
        QCOMPARE(view->tab()->buttons().at(1).att.color, QRgb(0xFF405060));
        QCOMPARE(view->tab()->buttons().at(2).att.color, QRgb(0xFFFF0000));
        QCOMPARE(icon_colour(toolbox->colorButton()), QRgb(0xFFFF0000));
        QVERIFY(QApplication::activePopupWidget() == nullptr);
    }

    void hide_and_show_reapplies_size_10() {
        picker_window window(nullptr);
        picker_toolbox* toolbox = window.toolbox();
        picker_view* view = window.frontPicker();
        fill(view, two_of_three(true));
        window.updateControls();
        QAction* toggle = entry_of(window, 1, QStringLiteral("Hide Toolbox"));
        QSignalSpy steps(view->tab()->undoer(), &QUndoStack::indexChanged);

        toggle->trigger();
        QCOMPARE(toggle->text(), QStringLiteral("Show Toolbox"));
        QVERIFY(window.findChildren<QLineEdit*>().isEmpty());
        window.updateControls();
        QCOMPARE(window.currentSize(), 14);
        QCOMPARE(steps.count(), 0);

        toggle->trigger();
        QCOMPARE(toggle->text(), QStringLiteral("Hide Toolbox"));
        QCOMPARE(icon_colour(toolbox->colorButton()), firebrick);
        QCOMPARE(toolbox->sizeButton()->text(), QStringLiteral("10"));
        QCOMPARE(steps.count(), 1);
        QCOMPARE(view->tab()->buttons().at(0).att.size, 10);
        QCOMPARE(view->tab()->buttons().at(1).att.size, 12);
        QCOMPARE(view->tab()->undoer()->undoText(), QStringLiteral("Change Size"));
        view->tab()->undoer()->undo();
        QCOMPARE(view->tab()->buttons().at(0).att.size, 14);
    }
};

QTEST_MAIN(tst_picker_toolbox)
#include "tst_picker_toolbox.moc"

#include "picker_selection.h"
#include "picker_test_vectors.h"
#include "picker_types.h"

#include <QDataStream>
#include <QtTest>

using picker_test_vectors::commandButton;
using picker_test_vectors::hex;
using picker_test_vectors::makeButton;
using picker_test_vectors::text;

namespace {

template <typename Write>
QByteArray written(Write write) {
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    write(stream);
    return bytes;
}

QStringList names(const char* blankSeparated) {
    return text(blankSeparated).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

sel_list flags(const char* digits) {
    sel_list result;
    for (const char* c = digits; *c; ++c) {
        result.append(static_cast<char>(*c - '0'));
    }
    return result;
}

} // namespace

class tst_picker_types : public QObject {
    Q_OBJECT

private slots:
    void init() { picker_selection::clear(); }

    void invalidRecordIsDropped_data() {
        QTest::addColumn<QByteArray>("record");

        QTest::newRow("index not its position")
            << hex("00000003 00000001 00000002 00000003 00000000 00000000 ff000000 ff000000"
                   "ffffffff 00000001 00000002 0061");
        QTest::newRow("type 2") << hex(
            "00000000 00000001 00000002 00000003 00000002 00000000 ff000000 ff000000"
            "ffffffff 00000001 00000002 0061");
        QTest::newRow("api -1") << hex(
            "00000000 00000001 00000002 00000003 00000001 ffffffff ff000000 ff000000"
            "ffffffff 00000001 00000002 0061");
        QTest::newRow("zero names")
            << hex("00000000 00000001 00000002 00000003 00000000 00000000 ff000000 ff000000"
                   "00000002 0061 00000000");
        QTest::newRow("negative name count")
            << hex("00000000 00000001 00000002 00000003 00000000 00000000 ff000000 ff000000"
                   "00000002 0061 ffffffff");
    }

    void invalidRecordIsDropped() {
        QFETCH(QByteArray, record);
        const QByteArray bytes = hex("00000002") + record + picker_test_vectors::commandRecord();
        QDataStream stream(bytes);
        QCOMPARE(readButtonList(stream, 4), button_att_list{commandButton()});
        QVERIFY(stream.atEnd());
    }

    void textLayout_data() {
        QTest::addColumn<QString>("label");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("encoded");

        QTest::newRow("null label")
            << QString() << text("n") << hex("ffffffff 00000001 00000002 006e");
        QTest::newRow("empty label")
            << text("") << text("n") << hex("00000000 00000001 00000002 006e");
        // U+03A8, then U+1F600 as the surrogate pair D83D DE00; a name with U+00E9.
        QTest::newRow("non-ASCII as UTF-16")
            << text("\xCE\xA8\xF0\x9F\x98\x80") << text("bras_\xC3\xA9")
            << hex("00000006 03a8 d83d de00 00000001 0000000c 0062007200610073005f 00e9");
    }

    void textLayout() {
        QFETCH(QString, label);
        QFETCH(QString, name);
        QFETCH(QByteArray, encoded);
        const buttonAttributes att = makeButton(QPoint(0, 0), 1, 0, 0, 0, 0, label, {name});
        const QByteArray expected =
            hex("00000001"
                "00000000 00000000 00000000 00000001 00000000 00000000 00000000 00000000") +
            encoded;
        QCOMPARE(written([&](QDataStream& s) { writeButtonList(s, {att}); }).toHex(),
                 expected.toHex());
        QDataStream stream(expected);
        const button_att_list back = readButtonList(stream, 4);
        QCOMPARE(back, button_att_list{att});
        QCOMPARE(back[0].label.isNull(), label.isNull());
    }

    void roundTrip() {
        QStringList many;
        for (int i = 0; i < 50; ++i) {
            many.append(QStringLiteral("rig:ctrl_%1").arg(i));
        }
        const button_att_list buttons{
            makeButton(QPoint(-2147483647 - 1, 2147483647), -5, 1, 0, 0, 0xFFFFFFFF,
                       text("\xE2\x9C\x93"), many),
            makeButton(QPoint(0, 0), 0, 0, 1, 0x01020304, 0x05060708, text(""), {text("")}),
            makeButton(QPoint(1, 1), 1, 1, 1, 1, 1, QString(), {QString()})};
        const QByteArray list = written([&](QDataStream& s) { writeButtonList(s, buttons); });
        QDataStream listStream(list);
        QCOMPARE(readButtonList(listStream, 4), buttons);
        QVERIFY(listStream.atEnd());

        const QByteArray clip = written([&](QDataStream& s) { writeButtonAttributes(s, buttons); });
        QDataStream clipStream(clip);
        QCOMPARE(::readButtonAttributes(clipStream), buttons);
    }

    void corruptDataStopsReading_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("buttonsRead");
        QTest::addColumn<int>("status");

        QTest::newRow("huge count, one record")
            << hex("7fffffff") + picker_test_vectors::selectionRecord() << 1
            << int(QDataStream::ReadPastEnd);
        QTest::newRow("huge name count")
            << hex("00000001 00000000 00000000 00000000 00000001 00000000 00000000 00000000"
                   "00000000 ffffffff 7fffffff 00000002 0061")
            << 0 << int(QDataStream::ReadPastEnd);
        QTest::newRow("long string length")
            << hex("00000001 00000000 00000000 00000000 00000001 00000000 00000000 00000000"
                   "00000000 3ffffffe 0061")
            << 0 << int(QDataStream::ReadPastEnd);
        QTest::newRow("string length past any real string")
            << hex("00000001 00000000 00000000 00000000 00000001 00000000 00000000 00000000"
                   "00000000 7ffffffe 0061")
            << 0 << int(QDataStream::ReadCorruptData);
        QTest::newRow("odd string length")
            << hex("00000002") + picker_test_vectors::selectionRecord().left(32) +
                   hex("00000003 0061 00") + picker_test_vectors::commandRecord()
            << 0 << int(QDataStream::ReadCorruptData);
    }

    void corruptDataStopsReading() {
        QFETCH(QByteArray, bytes);
        QFETCH(int, buttonsRead);
        QFETCH(int, status);
        QDataStream stream(bytes);
        QCOMPARE(readButtonList(stream, 4).size(), buttonsRead);
        QCOMPARE(int(stream.status()), status);
    }

    void buttonSetOperations_data() {
        QTest::addColumn<QStringList>("initial");
        QTest::addColumn<QString>("operation");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QStringList>("expected");
        QTest::addColumn<bool>("containsAfter");

        QTest::newRow("duplicates collapse, first place kept")
            << names("c a b a c") << QString() << text("a") << names("c a b") << true;
        QTest::newRow("case-sensitive")
            << names("Arm arm Arm") << QString() << text("ARM") << names("Arm arm") << false;
        QTest::newRow("append present")
            << names("a b") << text("append") << text("a") << names("a b") << true;
        QTest::newRow("append other case")
            << names("arm") << text("append") << text("Arm") << names("arm Arm") << true;
        QTest::newRow("remove first of two")
            << names("a b") << text("removeOne") << text("a") << names("b") << false;
        QTest::newRow("remove other case")
            << names("arm") << text("removeOne") << text("Arm") << names("arm") << false;
    }

    void buttonSetOperations() {
        QFETCH(QStringList, initial);
        QFETCH(QString, operation);
        QFETCH(QString, name);
        QFETCH(QStringList, expected);
        QFETCH(bool, containsAfter);
        button_set set = button_set::fromStringList(initial);
        if (operation == QLatin1String("append")) {
            set.append(name);
        } else if (operation == QLatin1String("removeOne")) {
            set.removeOne(name);
        }
        QCOMPARE(QStringList(set.begin(), set.end()), expected);
        QCOMPARE(set.contains(name), containsAfter);
    }

    void buttonSetAddAndRemoveButton() {
        buttonRecord first;
        first.att.sel = names("a b");
        buttonRecord second;
        second.att.sel = names("b c b");
        button_set set;
        set.add_button(first);
        set.add_button(second);
        QCOMPARE(QStringList(set.begin(), set.end()), names("a b c"));
        set.remove_button(first);
        QCOMPARE(QStringList(set.begin(), set.end()), names("c"));
    }

    void selectAndUnselect_data() {
        QTest::addColumn<QStringList>("sel");
        QTest::addColumn<sel_list>("which");
        QTest::addColumn<bool>("selecting");
        QTest::addColumn<bool>("all");
        QTest::addColumn<QStringList>("mirror");
        QTest::addColumn<sel_list>("whichAfter");
        QTest::addColumn<bool>("told");
        QTest::addColumn<QStringList>("mirrorAfter");

        QTest::newRow("select reports each newly lit name")
            << names("a b c") << flags("010") << true << false << names("b") << flags("111") << true
            << names("b a c");
        QTest::newRow("select with all lit already")
            << names("a b") << flags("11") << true << false << names("x") << flags("11") << false
            << names("x");
        QTest::newRow("select from the host only sets flags")
            << names("a b c") << flags("010") << true << true << names("x") << flags("111") << false
            << names("x");
        QTest::newRow("select with missing flags")
            << names("a b") << sel_list() << true << false << QStringList() << flags("11") << true
            << names("a b");
        QTest::newRow("unselect reports each lit name")
            << names("a b c") << flags("101") << false << false << names("a c z") << flags("000")
            << true << names("z");
        QTest::newRow("unselect from the host only clears flags")
            << names("a b") << flags("11") << false << true << names("a b") << flags("00") << false
            << names("a b");
        QTest::newRow("unselect is case-sensitive")
            << names("Arm") << flags("1") << false << false << names("arm") << flags("0") << true
            << names("arm");
    }

    void selectAndUnselect() {
        QFETCH(QStringList, sel);
        QFETCH(sel_list, which);
        QFETCH(bool, selecting);
        QFETCH(bool, all);
        QFETCH(QStringList, mirror);
        QFETCH(sel_list, whichAfter);
        QFETCH(bool, told);
        QFETCH(QStringList, mirrorAfter);

        picker_selection::setNames(mirror);
        buttonRecord button;
        button.att.sel = sel;
        button.which = which;
        button.selected = buttonRecord::Some;
        const bool result = selecting ? button.select(all) : button.unselect(all);
        QCOMPARE(result, told);
        QCOMPARE(button.which, whichAfter);
        QCOMPARE(picker_selection::names(), mirrorAfter);
        QCOMPARE(button.selected,
                 selecting ? qint16(buttonRecord::All) : qint16(buttonRecord::None));
    }

    void selectionMirrorRules() {
        QVERIFY(!picker_selection::unselectButton(text("a")));
        QVERIFY(picker_selection::selectButton(text("a")));
        QVERIFY(!picker_selection::selectButton(text("a")));
        QVERIFY(picker_selection::selectButton(text("A")));
        QVERIFY(!picker_selection::unselectButton(text("b")));
        QVERIFY(picker_selection::unselectButton(text("a")));
        QCOMPARE(picker_selection::names(), names("A"));
    }

    void moveToKeepsSize_data() {
        QTest::addColumn<QRect>("bounds");
        QTest::addColumn<QPoint>("target");
        QTest::addColumn<QRect>("expected");

        QTest::newRow("even edge")
            << QRect(0, 0, 10, 10) << QPoint(50, -30) << QRect(46, -34, 10, 10);
        QTest::newRow("wide") << QRect(5, 5, 40, 11) << QPoint(-100, 200)
                              << QRect(-119, 195, 40, 11);
    }

    void moveToKeepsSize() {
        QFETCH(QRect, bounds);
        QFETCH(QPoint, target);
        QFETCH(QRect, expected);
        buttonRecord button;
        button.bounds = bounds;
        button.moveTo(target);
        QCOMPARE(button.att.pos, target);
        QCOMPARE(button.bounds, expected);
    }
};

QTEST_GUILESS_MAIN(tst_picker_types)
#include "tst_picker_types.moc"

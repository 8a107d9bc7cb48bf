#include "../support/picker_test_vectors.h"
#include "picker_file.h"
#include "picker_piece_stream.h"

#include <QBuffer>
#include <QDataStream>
#include <QtTest>

#include <functional>

using namespace picker_test_vectors;

namespace {

picker_read_result readFile(const QByteArray& bytes, picker_tab_record& tab,
                            qint64* consumed = nullptr) {
    QByteArray copy = bytes;
    QBuffer buffer(&copy);
    buffer.open(QIODevice::ReadOnly);
    const picker_read_result result = readPickerFile(buffer, tab);
    if (consumed)
        *consumed = buffer.pos();
    return result;
}

picker_read_result readTabs(const QByteArray& bytes, picker_tab_set& set) {
    QDataStream stream(bytes);
    return readTabStream(stream, set);
}

picker_tab_record tab(const char* title, int buttons, const QByteArray& png = {}) {
    picker_tab_record record{
        QString::fromLatin1(title), png.isEmpty() ? QString() : "42"_q, png, {}};
    for (int i = 0; i < buttons; ++i)
        record.buttons.append(buttonAttributes{QPoint(i % 40 * 20, i / 40 * 20),
                                               10 + i % 5,
                                               0,
                                               0,
                                               0xffb22222,
                                               0,
                                               QString::number(i),
                                               {"hero:ctrl_%1"_q.arg(i)}});
    return record;
}

} // namespace

Q_DECLARE_METATYPE(buttonAttributes)
Q_DECLARE_METATYPE(picker_tab_record)
using tab_set_edit = std::function<void(picker_tab_set&)>;
Q_DECLARE_METATYPE(tab_set_edit)

class tst_picker_file : public QObject {
    Q_OBJECT

private slots:
    void pkrLayout_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<picker_tab_record>("tab");
        QTest::addColumn<int>("version");

        const picker_tab_record arm{"Arm"_q, QString(), {}, {selectionButton(), commandButton()}};
        QTest::newRow("format 4") << pkrVersion4() << arm << 4;
        QTest::newRow("format 4 with image")
            << pkrVersion4WithImage(tinyPng())
            << picker_tab_record{"Face"_q, "bg"_q, tinyPng(), {selectionButton()}} << 4;
        // Labels and names are UTF-16: a surrogate pair is two units.
        QTest::newRow("non-ASCII as UTF-16")
            << hex("00000004 00000006 00410072006d ffffffff 00000001"
                   "00000000 00000000 00000000 00000001 00000000 00000000 00000000 00000000"
                   "00000006 03a8 d83d de00 00000001 0000000c 0062007200610073005f 00e9")
            << picker_tab_record{"Arm"_q,
                                 QString(),
                                 {},
                                 {buttonAttributes{QPoint(0, 0),
                                                   1,
                                                   0,
                                                   0,
                                                   0,
                                                   0,
                                                   "\xCE\xA8\xF0\x9F\x98\x80"_q,
                                                   {"bras_\xC3\xA9"_q}}}}
            << 4;
        QTest::newRow("format 3, no label colour")
            << hex("00000003 00000006 00410072006d ffffffff") + buttonListVersion3()
            << picker_tab_record{"Arm"_q, QString(), {}, buttonsVersion3()} << 3;
        QTest::newRow("format 1, no key field")
            << pkrVersion1() << picker_tab_record{"Old"_q, QString(), {}, buttonsVersion1()} << 1;
    }

    // Older layouts are read, the current one is also written back byte for byte.
    void pkrLayout() {
        QFETCH(QByteArray, bytes);
        QFETCH(picker_tab_record, tab);
        QFETCH(int, version);
        picker_tab_record read;
        qint64 consumed = 0;
        const picker_read_result result = readFile(bytes, read, &consumed);
        QVERIFY2(result.ok(), qPrintable(result.error));
        QCOMPARE(result.version, version);
        QCOMPARE(read, tab);
        QCOMPARE(consumed, qint64(bytes.size()));
        if (version == 4)
            QCOMPARE(pickerFileBytes(read).toHex(), bytes.toHex());
    }

    // Invalid records are skipped and reading goes on; damaged counts and lengths stop it.
    void buttonListRecords_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<button_att_list>("buttons");
        QTest::addColumn<int>("status");

        const QByteArray head = hex("00000001 00000000 00000000 00000000 00000001 00000000"
                                    "00000000 00000000 00000000");
        const button_att_list second{commandButton()};
        QTest::newRow("index not its position")
            << hex("00000002 00000003 00000001 00000002 00000003 00000000 00000000 ff000000"
                   "ff000000 ffffffff 00000001 00000002 0061") +
                   commandRecord()
            << second << int(QDataStream::Ok);
        QTest::newRow("zero names")
            << hex("00000002 00000000 00000001 00000002 00000003 00000000 00000000 ff000000"
                   "ff000000 00000002 0061 00000000") +
                   commandRecord()
            << second << int(QDataStream::Ok);
        QTest::newRow("huge name count") << head + hex("ffffffff 7fffffff 00000002 0061")
                                         << button_att_list() << int(QDataStream::ReadPastEnd);
        QTest::newRow("string length past any real string")
            << head + hex("7ffffffe 0061") << button_att_list()
            << int(QDataStream::ReadCorruptData);
        QTest::newRow("odd string length")
            << hex("00000002") + selectionRecord().left(32) + hex("00000003 0061 00") +
                   commandRecord()
            << button_att_list() << int(QDataStream::ReadCorruptData);
    }

    void buttonListRecords() {
        QFETCH(QByteArray, bytes);
        QFETCH(button_att_list, buttons);
        QFETCH(int, status);
        QDataStream stream(bytes);
        QCOMPARE(readButtonList(stream, 4), buttons);
        QCOMPARE(int(stream.status()), status);
        if (status == QDataStream::Ok)
            QVERIFY(stream.atEnd());
    }

    void tabStreamLayout() {
        picker_tab_set set;
        const picker_read_result result = readTabs(tabStream(), set);
        QVERIFY2(result.ok(), qPrintable(result.error));
        QCOMPARE(set.current, 1);
        // Written back byte for byte, the first tab's empty key stays empty rather than null.
        QCOMPARE(set.tabs, (QList<picker_tab_record>{
                               {"Arm"_q, ""_q, {}, {selectionButton(), commandButton()}},
                               {"Leg"_q, "bg"_q, {}, {}}}));
        QByteArray written;
        QDataStream out(&written, QIODevice::WriteOnly);
        writeTabStream(out, set);
        QCOMPARE(written.toHex(), tabStream().toHex());
    }

    void faultIsDescribed_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("error");
        QTest::addColumn<bool>("isPicker"); // false: not a picker file at all, rather than damaged

        const QByteArray head = hex("00000004 00000000 00000004 00620067 00000001");
        QTest::newRow("empty") << QByteArray() << "the file is empty" << false;
        QTest::newRow("format version 0")
            << hex("00000000 00000000") << "format version 0 was never written" << false;
        QTest::newRow("button count beyond the data")
            << hex("00000004 ffffffff ffffffff 7fffffff"
                   "00000000 00000001 00000002 00000003 00000000 00000000")
            << "the file ends in the middle of button 0" << true;
        QTest::newRow("image marker 7")
            << hex("00000004 00000000 00000004 00620067 00000007")
            << "unknown image marker 7 in the background image" << false;
        QTest::newRow("not a PNG")
            << head + hex("89504e470d0a1a0b 0000000d 49484452")
            << "an image that is not a PNG file in the background image" << false;
        QTest::newRow("PNG without IEND")
            << head + tinyPng().chopped(12) + hex("00000000")
            << "the file ends in the middle of the background image" << false;
    }

    void faultIsDescribed() {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, error);
        QFETCH(bool, isPicker);
        picker_tab_record tab;
        const picker_read_result result = readFile(bytes, tab);
        QCOMPARE(result.error, error);
        QCOMPARE(result.isPicker, isPicker);
    }

    void truncationAtEveryByte_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("tabStream");

        QTest::newRow(".pkr with image") << pkrVersion4WithImage(tinyPng()) << false;
        QTest::newRow("tab stream") << tabStream() << true;
    }

    // Every cut is refused without a crash, keeping only buttons the whole input holds.
    void truncationAtEveryByte() {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, tabStream);
        const auto read = [tabStream](const QByteArray& input, picker_tab_set& set) {
            if (tabStream)
                return readTabs(input, set);
            set.tabs = {picker_tab_record()};
            return readFile(input, set.tabs[0]);
        };
        picker_tab_set whole;
        QVERIFY(read(bytes, whole).ok());
        for (int length = 0; length < bytes.size(); ++length) {
            picker_tab_set set;
            QVERIFY2(!read(bytes.left(length), set).ok(), qPrintable(QString::number(length)));
            // What was read before the cut holds only buttons the whole input holds.
            QVERIFY(set.tabs.size() <= whole.tabs.size());
            for (int i = 0; i < set.tabs.size(); ++i)
                QCOMPARE(set.tabs[i].buttons,
                         whole.tabs[i].buttons.mid(0, set.tabs[i].buttons.size()));
        }
    }

    void compressedSceneReadsBack_data() {
        QTest::addColumn<tab_set_edit>("edit");

        QTest::newRow("unchanged") << tab_set_edit([](picker_tab_set&) {});
        QTest::newRow("one record moved")
            << tab_set_edit([](picker_tab_set& s) { s.tabs[0].buttons[500].pos.rx() += 1; });
        QTest::newRow("a button removed: every later record shifts")
            << tab_set_edit([](picker_tab_set& s) { s.tabs[0].buttons.removeAt(3); });
        QTest::newRow("background replaced")
            << tab_set_edit([](picker_tab_set& s) { s.tabs[0].backgroundPng = noisePng(16); });
        QTest::newRow("tab closed") << tab_set_edit([](picker_tab_set& s) {
            s.tabs.removeLast();
            s.current = 0;
        });
        QTest::newRow("tab opened")
            << tab_set_edit([](picker_tab_set& s) { s.tabs.append(tab("Hands", 300)); });
        QTest::newRow("everything gone") << tab_set_edit([](picker_tab_set& s) {
            s.tabs.clear();
            s.current = -1;
        });
    }

    // The second write reuses what the first laid out and deflated; both must inflate to
    // exactly the plain stream.
    void compressedSceneReadsBack() {
        QFETCH(tab_set_edit, edit);
        picker_tab_set first;
        first.tabs = {tab("Body", 1000, noisePng(140)), tab("Face", 3)};
        first.current = 1;
        picker_tab_set second = first;
        edit(second);
        picker_piece_compressor compressor;
        picker_record_cache cache;
        for (const picker_tab_set& set : {first, second}) {
            QByteArray plain;
            QDataStream out(&plain, QIODevice::WriteOnly);
            writeTabStream(out, set);
            picker_tab_stream_pieces pieces(qint32(set.tabs.size()), set.current, &cache);
            for (const picker_tab_record& t : set.tabs) {
                pieces.addTab(t.title, t.backgroundKey, t.backgroundPng, qint32(t.buttons.size()));
                for (const buttonAttributes& att : t.buttons)
                    pieces.addButton(att);
            }
            QCOMPARE(qUncompress(compressor.compress(pieces.take())), plain);
        }
    }
};

QTEST_GUILESS_MAIN(tst_picker_file)
#include "tst_picker_file.moc"

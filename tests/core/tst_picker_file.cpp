#include "picker_file.h"
#include "picker_test_vectors.h"

#include <QBuffer>
#include <QDataStream>
#include <QtTest>

using picker_test_vectors::commandButton;
using picker_test_vectors::hex;
using picker_test_vectors::makeButton;
using picker_test_vectors::selectionButton;
using picker_test_vectors::text;

Q_DECLARE_METATYPE(buttonAttributes)

namespace {

picker_read_result readFile(const QByteArray& bytes, picker_tab_record& tab,
                            qint64* consumed = nullptr) {
    QByteArray copy = bytes;
    QBuffer buffer(&copy);
    buffer.open(QIODevice::ReadOnly);
    const picker_read_result result = readPickerFile(buffer, tab);
    if (consumed) {
        *consumed = buffer.pos();
    }
    return result;
}

picker_read_result readTabs(const QByteArray& bytes, picker_tab_set& set) {
    QDataStream stream(bytes);
    return readTabStream(stream, set);
}

QByteArray writtenTabs(const picker_tab_set& set, int streamVersion) {
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(streamVersion);
    writeTabStream(stream, set);
    return bytes;
}

// Reading a cut-short input may hand back only buttons that the whole input also holds.
bool isPrefix(const button_att_list& part, const button_att_list& whole) {
    return part.size() <= whole.size() && part == whole.mid(0, part.size());
}

} // namespace

class tst_picker_file : public QObject {
    Q_OBJECT

private slots:
    void pkrWithoutImage() {
        picker_tab_record tab;
        qint64 consumed = 0;
        const QByteArray bytes = picker_test_vectors::pkrVersion4();
        const picker_read_result result = readFile(bytes, tab, &consumed);
        QVERIFY2(result.ok(), qPrintable(result.error));
        QCOMPARE(result.version, 4);
        QCOMPARE(tab.title, text("Arm"));
        QVERIFY(tab.backgroundKey.isNull());
        QVERIFY(tab.backgroundPng.isEmpty());
        QCOMPARE(tab.buttons, (button_att_list{selectionButton(), commandButton()}));
        QCOMPARE(consumed, qint64(bytes.size()));
        QCOMPARE(pickerFileBytes(tab).toHex(), bytes.toHex());
    }

    void pkrWithImage() {
        const QByteArray png = picker_test_vectors::tinyPng();
        const QByteArray bytes = picker_test_vectors::pkrVersion4WithImage(png);
        picker_tab_record tab;
        qint64 consumed = 0;
        const picker_read_result result = readFile(bytes, tab, &consumed);
        QVERIFY2(result.ok(), qPrintable(result.error));
        QCOMPARE(tab.title, text("Face"));
        QCOMPARE(tab.backgroundKey, text("bg"));
        QCOMPARE(tab.backgroundPng, png);
        QCOMPARE(tab.buttons, button_att_list{selectionButton()});
        QCOMPARE(consumed, qint64(bytes.size()));
        QCOMPARE(pickerFileBytes(tab).toHex(), bytes.toHex());
    }

    void readOlderAndNewerPkr_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("version");
        QTest::addColumn<QString>("title");
        QTest::addColumn<button_att_list>("buttons");

        QTest::newRow("format 1, no key field")
            << picker_test_vectors::pkrVersion1() << 1 << text("Old")
            << picker_test_vectors::buttonsVersion1();
        QTest::newRow("format 3, no label colour")
            << hex("00000003 00000006 00410072006d ffffffff") +
                   picker_test_vectors::buttonListVersion3()
            << 3 << text("Arm")
            << button_att_list{makeButton(QPoint(1, 2), 3, 1, 0, 0xFF123456, 0x00FFFFFF, QString(),
                                          {text("x")}),
                               makeButton(QPoint(7, 8), 9, 0, 1, 0x80ABCDEF, 0x00FFFFFF, text("y"),
                                          {text("y"), text("z")})};
        QTest::newRow("format 9 read as far as understood")
            << hex("00000009") + picker_test_vectors::pkrVersion4().mid(4) << 9 << text("Arm")
            << button_att_list{selectionButton(), commandButton()};
    }

    void readOlderAndNewerPkr() {
        QFETCH(QByteArray, bytes);
        QFETCH(int, version);
        QFETCH(QString, title);
        QFETCH(button_att_list, buttons);
        picker_tab_record tab;
        const picker_read_result result = readFile(bytes, tab);
        QVERIFY2(result.ok(), qPrintable(result.error));
        QCOMPARE(result.version, version);
        QCOMPARE(tab.title, title);
        QCOMPARE(tab.buttons, buttons);
    }

    void tabStreamLayout() {
        picker_tab_set set;
        const picker_read_result result = readTabs(picker_test_vectors::tabStream(), set);
        QVERIFY2(result.ok(), qPrintable(result.error));
        QCOMPARE(result.version, 4);
        QCOMPARE(set.version, 4);
        QCOMPARE(set.current, 1);
        QCOMPARE(set.tabs.size(), 2);
        QCOMPARE(set.tabs[0].title, text("Arm"));
        QVERIFY(set.tabs[0].backgroundKey.isEmpty() && !set.tabs[0].backgroundKey.isNull());
        QCOMPARE(set.tabs[0].buttons, (button_att_list{selectionButton(), commandButton()}));
        QCOMPARE(set.tabs[1].title, text("Leg"));
        QCOMPARE(set.tabs[1].backgroundKey, text("bg"));
        QVERIFY(set.tabs[1].backgroundPng.isEmpty());
        QVERIFY(set.tabs[1].buttons.isEmpty());
        QCOMPARE(writtenTabs(set, QDataStream::Qt_DefaultCompiledVersion).toHex(),
                 picker_test_vectors::tabStream().toHex());
    }

    void tabStreamRoundTrip_data() {
        QTest::addColumn<int>("streamVersion");

        QTest::newRow("Qt 4.0 stream") << int(QDataStream::Qt_4_0);
        QTest::newRow("default stream") << int(QDataStream::Qt_DefaultCompiledVersion);
    }

    void tabStreamRoundTrip() {
        QFETCH(int, streamVersion);
        picker_tab_set set;
        set.current = -1;
        picker_tab_record face;
        face.title = text("Fa\xC3\xA7"
                          "e \xF0\x9F\x98\x80");
        face.backgroundKey = text("face_bg");
        face.backgroundPng = picker_test_vectors::tinyPng();
        face.buttons = {commandButton()};
        picker_tab_record empty;
        set.tabs = {face, empty, face};

        const QByteArray bytes = writtenTabs(set, streamVersion);
        picker_tab_set back;
        QDataStream stream(bytes);
        stream.setVersion(streamVersion);
        const picker_read_result result = ::readTabStream(stream, back);
        QVERIFY2(result.ok(), qPrintable(result.error));
        QCOMPARE(back.current, -1);
        QCOMPARE(back.tabs, set.tabs);
        QVERIFY(back.tabs[1].title.isNull());
        QVERIFY(stream.atEnd());
    }

    void countBeyondTheData() {
        const QByteArray bytes = hex("00000004 ffffffff ffffffff 7fffffff"
                                     "00000000 00000001 00000002 00000003 00000000 00000000");
        QCOMPARE(bytes.size(), 40);
        picker_tab_record tab;
        const picker_read_result result = readFile(bytes, tab);
        QCOMPARE(result.error, text("the file ends in the middle of button 0"));
        QVERIFY(tab.buttons.isEmpty());

        picker_tab_set set;
        const picker_read_result tabsResult =
            readTabs(hex("00000004 7fffffff 00000000") + bytes.mid(4), set);
        QVERIFY(!tabsResult.ok());
        QCOMPARE(set.tabs.size(), 1);
    }

    void faultIsDescribed_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("error");
        QTest::addColumn<bool>("isPicker"); // false: not a picker file at all, rather than damaged

        const QByteArray head = hex("00000004 00000000 00000004 00620067");
        const QByteArray signature = hex("89504e470d0a1a0a");
        QTest::newRow("empty") << QByteArray() << text("the file is empty") << false;
        QTest::newRow("short version")
            << hex("000000") << text("the file ends in the middle of the format version") << false;
        QTest::newRow("format version 0")
            << hex("00000000 00000000") << text("format version 0 was never written") << false;
        QTest::newRow("short title")
            << hex("00000004 0000") << text("the file ends in the middle of the title") << false;
        QTest::newRow("odd title length") << hex("00000004 00000003 004100")
                                          << text("an odd string length 3 in the title") << false;
        QTest::newRow("cut in button 1") << picker_test_vectors::pkrVersion4().chopped(3)
                                         << text("the file ends in the middle of button 1") << true;
        QTest::newRow("no button count")
            << head + hex("00000000") << text("the file ends in the middle of the button count")
            << true;
        QTest::newRow("image marker 7")
            << head + hex("00000007") << text("unknown image marker 7 in the background image")
            << false;
        QTest::newRow("not a PNG")
            << head + hex("00000001 89504e470d0a1a0b 0000000d 49484452")
            << text("an image that is not a PNG file in the background image") << false;
        QTest::newRow("broken chunk type")
            << head + hex("00000001") + signature + hex("0000000d 49480052")
            << text("a broken PNG chunk type in the background image") << false;
        QTest::newRow("PNG without IEND")
            << head + hex("00000001") + picker_test_vectors::tinyPng().chopped(12) + hex("00000000")
            << text("the file ends in the middle of the background image") << false;
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

        QTest::newRow(".pkr with image")
            << picker_test_vectors::pkrVersion4WithImage(picker_test_vectors::tinyPng()) << false;
        QTest::newRow(".pkr format 1") << picker_test_vectors::pkrVersion1() << false;
        QTest::newRow("tab stream") << picker_test_vectors::tabStream() << true;
    }

    void truncationAtEveryByte() {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, tabStream);
        picker_tab_record whole;
        picker_tab_set wholeSet;
        const bool wholeOk =
            tabStream ? readTabs(bytes, wholeSet).ok() : readFile(bytes, whole).ok();
        QVERIFY(wholeOk);
        for (int length = 0; length < bytes.size(); ++length) {
            const QByteArray cut = bytes.left(length);
            if (tabStream) {
                picker_tab_set set;
                const picker_read_result result = readTabs(cut, set);
                QVERIFY2(!result.ok(), qPrintable(QString::number(length)));
                QVERIFY(set.tabs.size() <= wholeSet.tabs.size());
                for (int i = 0; i < set.tabs.size(); ++i) {
                    QVERIFY(isPrefix(set.tabs[i].buttons, wholeSet.tabs[i].buttons));
                }
            } else {
                picker_tab_record tab;
                const picker_read_result result = readFile(cut, tab);
                QVERIFY2(!result.ok(), qPrintable(QString::number(length)));
                QVERIFY(isPrefix(tab.buttons, whole.buttons));
            }
        }
    }
};

QTEST_GUILESS_MAIN(tst_picker_file)
#include "tst_picker_file.moc"

#include "picker_file.h"
#include "picker_piece_stream.h"

#include <QBuffer>
#include <QDataStream>
#include <QImage>
#include <QRandomGenerator>
#include <QtTest>

namespace {

picker_tab_record tab(const QString& title, int buttons, const QByteArray& png) {
    picker_tab_record record;
    record.title = title;
    if (!png.isEmpty())
        record.backgroundKey = QStringLiteral("42");
    record.backgroundPng = png;
    for (int i = 0; i < buttons; ++i) {
        buttonAttributes att;
        att.pos = QPoint(i % 40 * 20, i / 40 * 20);
        att.size = 10 + i % 5;
        att.color = 0xffb22222;
        att.label = QString::number(i);
        att.sel = QStringList{QStringLiteral("hero:ctrl_%1").arg(i)};
        record.buttons.append(att);
    }
    return record;
}

QVector<picker_stream_piece> pieces_of(const picker_tab_set& set, picker_record_cache& cache) {
    picker_tab_stream_pieces pieces(qint32(set.tabs.size()), set.current, &cache);
    for (const picker_tab_record& t : set.tabs) {
        pieces.addTab(t.title, t.backgroundKey, t.backgroundPng, qint32(t.buttons.size()));
        for (const buttonAttributes& att : t.buttons)
            pieces.addButton(att);
    }
    return pieces.take();
}

// A PNG of noise: what a background costs when it deflates poorly.
QByteArray noise_png(int side) {
    QImage image(side, side, QImage::Format_ARGB32);
    QRandomGenerator generator(7);
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x)
            image.setPixel(x, y, generator.generate());
    }
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return png;
}

} // namespace

class tst_picker_piece_stream : public QObject {
    Q_OBJECT
private slots:
    void compressedSceneReadsBack_data();
    void compressedSceneReadsBack();
};

using tab_set_edit = std::function<void(picker_tab_set&)>;
Q_DECLARE_METATYPE(picker_tab_set)
Q_DECLARE_METATYPE(tab_set_edit)

void tst_picker_piece_stream::compressedSceneReadsBack_data() {
    QTest::addColumn<picker_tab_set>("first");
    QTest::addColumn<tab_set_edit>("edit");

    picker_tab_set big;
    big.tabs = {tab(QStringLiteral("Body"), 1000, noise_png(140)),
                tab(QStringLiteral("Face"), 3, {})};
    big.current = 1;
    QTest::newRow("unchanged") << big << tab_set_edit([](picker_tab_set&) {});
    QTest::newRow("one record moved")
        << big << tab_set_edit([](picker_tab_set& s) { s.tabs[0].buttons[500].pos.rx() += 1; });
    QTest::newRow("a button removed: every later record shifts")
        << big << tab_set_edit([](picker_tab_set& s) { s.tabs[0].buttons.removeAt(3); });
    QTest::newRow("background replaced")
        << big << tab_set_edit([](picker_tab_set& s) { s.tabs[0].backgroundPng = noise_png(16); });
    QTest::newRow("tab closed") << big << tab_set_edit([](picker_tab_set& s) {
        s.tabs.removeLast();
        s.current = 0;
    });
    QTest::newRow("tab opened") << big << tab_set_edit([](picker_tab_set& s) {
        s.tabs.append(tab(QStringLiteral("Hands"), 300, {}));
    });
    QTest::newRow("everything gone") << big << tab_set_edit([](picker_tab_set& s) {
        s.tabs.clear();
        s.current = -1;
    });
}

// The second write reuses what the first laid out and deflated; both must be what qUncompress
// and the tab stream reader take, byte for byte the plain stream.
void tst_picker_piece_stream::compressedSceneReadsBack() {
    QFETCH(picker_tab_set, first);
    QFETCH(tab_set_edit, edit);
    picker_piece_compressor compressor;
    picker_record_cache cache;
    picker_tab_set second = first;
    edit(second);
    for (const picker_tab_set& set : {first, second}) {
        QByteArray plain;
        {
            QDataStream out(&plain, QIODevice::WriteOnly);
            writeTabStream(out, set);
        }
        const QByteArray packed = compressor.compress(pieces_of(set, cache));
        QCOMPARE(qUncompress(packed), plain);

        QDataStream in(qUncompress(packed));
        picker_tab_set read;
        QVERIFY(readTabStream(in, read).ok());
        QCOMPARE(read.current, set.current);
        QCOMPARE(read.tabs, set.tabs);
    }
}

QTEST_GUILESS_MAIN(tst_picker_piece_stream)
#include "tst_picker_piece_stream.moc"

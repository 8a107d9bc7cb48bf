#include "files_test_support.h"
#include "picker_file.h"
#include "picker_mel_quote.h"
#include "ui_test_support.h"

#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

namespace {

const QString data_write = QStringLiteral("fileInfo \"TalvoraPickerData\" \"");
const QString left_hand = QStringLiteral("hero:L_hand_ctrl");
const QString root = QStringLiteral("hero:root_ctrl");

enum image_call { store_call, remove_call, fetch_call, fetch_front_call };

bool only_digits(const QString& key) {
    for (const QChar c : key) {
        if (!c.isDigit())
            return false;
    }
    return !key.isEmpty();
}

} // namespace

class tst_picker_scene : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void picker_without_tabs_still_writes_an_entry();
    void stored_tabs_decode_to_the_layout();
    void changes_of_one_event_make_one_write();
    void image_entries_follow_the_key_data();
    void image_entries_follow_the_key();
    void views_sharing_a_key_both_receive_the_image_data();
    void views_sharing_a_key_both_receive_the_image();
    void replaced_background_is_stored_data();
    void replaced_background_is_stored();
    void scene_open_brings_the_pickers_back();
    void hostile_key_runs_nothing_data();
    void hostile_key_runs_nothing();

private:
    bool restore(const QByteArray& tabStream);

    picker_session session_;
};

void tst_picker_scene::initTestCase() {
    QStandardPaths::setTestModeEnabled(true);
    qputenv("TALVORA_PICKER_CONFIG", QByteArray("/nonexistent/pickers.cfg"));
}

void tst_picker_scene::init() {
    QVERIFY(session_.start());
}

void tst_picker_scene::cleanup() {
    session_.stop();
}

bool tst_picker_scene::restore(const QByteArray& tabStream) {
    const host_status status = session_.host->executeCommand(
        QStringLiteral("TalvoraPicker restore \"%1\"").arg(scene_text(tabStream)));
    session_.host->processIdle();
    return status.ok();
}

void tst_picker_scene::picker_without_tabs_still_writes_an_entry() {
    session_.window()->close_tab(0);
    QVERIFY(!session_.host->isModified());
    session_.writeScene();

    QCOMPARE(session_.storedTabs(), QByteArray::fromHex("00000004"
                                                        "00000000"
                                                        "ffffffff"));
    QVERIFY(session_.host->isModified());
}

void tst_picker_scene::stored_tabs_decode_to_the_layout() {
    const QList<QStringList> buttons{{left_hand, root}, {root}};
    session_.view(0)->push_button(laid_button(0, buttons.at(0)), -1);
    session_.view(0)->push_button(laid_button(1, buttons.at(1)), -1);
    session_.window()->new_tab();
    session_.tabs()->setTabText(1, QStringLiteral("Face"));
    session_.view(1)->setBackground(QStringLiteral("31"), QPixmap::fromImage([] {
                                        QImage image(6, 6, QImage::Format_ARGB32);
                                        image.fill(Qt::blue);
                                        return image;
                                    }()));
    session_.writeScene();

    QByteArray stored = session_.storedTabs();
    QByteArray front;
    {
        QDataStream out(&front, QIODevice::WriteOnly);
        out << qint32(4) << qint32(2) << qint32(1) << qint32(0);
        lay_tab_body(out, 4, {QStringLiteral("Untitled"), QString(), QByteArray(), buttons});
    }
    QVERIFY(stored.startsWith(front));
    // The second tab: index, title, key, then the marker and a PNG of the blue picture.
    QDataStream in(stored);
    in.skipRawData(static_cast<int>(front.size()));
    qint32 index = 0;
    QString title;
    QString key;
    qint32 marker = 0;
    in >> index >> title >> key >> marker;
    QCOMPARE(index, 1);
    QCOMPARE(title, QStringLiteral("Face"));
    QCOMPARE(key, QStringLiteral("31"));
    QCOMPARE(marker, 1);
    picker_tab_set set;
    QDataStream again(stored);
    QVERIFY(readTabStream(again, set).ok());
    QVERIFY(again.atEnd());
    QImage image;
    QVERIFY(image.loadFromData(set.tabs.at(1).backgroundPng, "PNG"));
    QCOMPARE(image.size(), QSize(6, 6));
    QCOMPARE(QColor(image.pixel(5, 5)), QColor(Qt::blue));
    QVERIFY(set.tabs.at(1).buttons.isEmpty());
}

void tst_picker_scene::changes_of_one_event_make_one_write() {
    picker_view* view = session_.view(0);
    view->push_button(laid_button(0, {root}), -1);
    view->signal_changed();
    view->signal_changed();
    session_.window()->updateSceneData();
    QCOMPARE(session_.host->issuedStartingWith(data_write), 0);

    // The event loop comes round: one write, holding the last state.
    QTRY_COMPARE(session_.host->issuedStartingWith(data_write), 1);
    QCoreApplication::processEvents();
    session_.host->processIdle();
    QCOMPARE(session_.host->issuedStartingWith(data_write), 1);
    picker_tab_set set;
    QByteArray stored = session_.storedTabs();
    QDataStream in(stored);
    QVERIFY(readTabStream(in, set).ok());
    QCOMPARE(set.tabs.first().buttons.size(), 1);
}

void tst_picker_scene::image_entries_follow_the_key_data() {
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("call");
    QTest::addColumn<QString>("issued");

    const QString none;
    for (const int call : {store_call, remove_call, fetch_call, fetch_front_call})
        QTest::addRow("no key, call %d", call) << QString() << call << none;
    QTest::newRow("remove") << QStringLiteral("4711") << int(remove_call)
                            << QStringLiteral("fileInfo -remove \"TalvoraPickerImage_4711\"; file "
                                              "-modified 1;");
    QTest::newRow("fetch") << QStringLiteral("4711") << int(fetch_call)
                           << QStringLiteral("TalvoraPicker fetch_image `fileInfo -q "
                                             "\"TalvoraPickerImage_4711\"`;");
    QTest::newRow("fetch front") << QStringLiteral("4711") << int(fetch_front_call)
                                 << QStringLiteral("TalvoraPicker fetch_image `fileInfo -q "
                                                   "\"TalvoraPickerImage_4711\"`;");
    QTest::newRow("store") << QStringLiteral("4711") << int(store_call)
                           << QStringLiteral("fileInfo \"TalvoraPickerImage_4711\" \"");
}

void tst_picker_scene::image_entries_follow_the_key() {
    QFETCH(QString, key);
    QFETCH(int, call);
    QFETCH(QString, issued);

    picker_view* view = session_.view(0);
    QImage red(3, 3, QImage::Format_ARGB32);
    red.fill(Qt::red);
    view->setBackground(key, QPixmap::fromImage(red));
    session_.host->issued.clear();
    picker_window* window = session_.window();
    if (call == store_call)
        window->setImageData(view);
    else if (call == remove_call)
        window->removeImageData(view);
    else if (call == fetch_call)
        window->fetchImageData(view);
    else
        window->fetchFrontImageData();

    if (issued.isEmpty()) {
        QCOMPARE(session_.host->issued, QStringList());
        return;
    }
    QCOMPARE(session_.host->issued.size(), 1);
    const QString text = session_.host->issued.first();
    if (call != store_call) {
        QCOMPARE(text, issued);
        return;
    }
    // The image entry: a marker and the PNG file, in base64, unquoted.
    const QString tail = QStringLiteral("\"; file -modified 1;");
    QVERIFY(text.startsWith(issued));
    QVERIFY(text.endsWith(tail));
    const QByteArray value = QByteArray::fromBase64(
        text.mid(issued.size(), text.size() - issued.size() - tail.size()).toLatin1());
    QCOMPARE(value.left(4), QByteArray::fromHex("00000001"));
    QImage image;
    QVERIFY(image.loadFromData(value.mid(4), "PNG"));
    QCOMPARE(QColor(image.pixel(2, 2)), QColor(Qt::red));
    session_.host->processIdle();
    QCOMPARE(session_.host->fileInfo(QStringLiteral("TalvoraPickerImage_4711")),
             text.mid(issued.size(), text.size() - issued.size() - tail.size()));
}

void tst_picker_scene::views_sharing_a_key_both_receive_the_image_data() {
    QTest::addColumn<bool>("wholeImage");
    QTest::addColumn<QList<QRgb>>("colours");

    const QRgb red = QColor(Qt::red).rgb();
    const QRgb blue = QColor(Qt::blue).rgb();
    // The directive decodes as many characters as the key has: a key as long as the image text
    // brings it whole; the usual short key yields no picture and changes nothing.
    QTest::newRow("key as long as the image") << true << QList<QRgb>{blue, red, blue};
    QTest::newRow("short key") << false << QList<QRgb>{red, red, red};
}

void tst_picker_scene::views_sharing_a_key_both_receive_the_image() {
    QFETCH(bool, wholeImage);
    QFETCH(QList<QRgb>, colours);

    const QString blueText = QString::fromLatin1(png_of(Qt::blue).toBase64());
    const QString shared =
        wholeImage ? QString(blueText.size() + 8, QLatin1Char('7')) : QStringLiteral("9001");
    const QByteArray red = png_of(Qt::red);
    QVERIFY(restore(laid_tabs(4, 0,
                              {{QStringLiteral("A"), shared, red, {}},
                               {QStringLiteral("B"), QStringLiteral("5"), red, {}},
                               {QStringLiteral("C"), shared, red, {}}})));
    QCOMPARE(session_.view(0)->backgroundKey(), shared);

    QVERIFY(session_.host->executeCommand(
        QStringLiteral("TalvoraPicker fetch_image %1 %2")
            .arg(picker_mel_quote(shared), picker_mel_quote(blueText))));

    for (int i = 0; i < colours.size(); ++i)
        QCOMPARE(pixel_of(session_.view(i)->background()), colours.at(i));
}

void tst_picker_scene::replaced_background_is_stored_data() {
    QTest::addColumn<QString>("newKey");

    QTest::newRow("same key") << QStringLiteral("31");
    QTest::newRow("new key") << QStringLiteral("32");
}

// Written once with a red picture, the tab then shows a blue one: both entries must hold blue.
void tst_picker_scene::replaced_background_is_stored() {
    QFETCH(QString, newKey);

    picker_view* view = session_.view(0);
    view->setBackground(QStringLiteral("31"),
                        QPixmap::fromImage(QImage::fromData(png_of(Qt::red))));
    session_.writeScene();
    session_.window()->setImageData(view);
    view->setBackground(newKey, QPixmap::fromImage(QImage::fromData(png_of(Qt::blue))));
    session_.writeScene();
    session_.window()->setImageData(view);
    session_.host->processIdle();

    picker_tab_set set;
    const QByteArray stored = session_.storedTabs();
    QDataStream in(stored);
    QVERIFY(readTabStream(in, set).ok());
    QCOMPARE(set.tabs.first().backgroundKey, newKey);
    QImage tab;
    QVERIFY(tab.loadFromData(set.tabs.first().backgroundPng, "PNG"));
    QCOMPARE(QColor(tab.pixel(1, 1)), QColor(Qt::blue));
    const QByteArray entry = QByteArray::fromBase64(
        session_.host->fileInfo(QStringLiteral("TalvoraPickerImage_") + newKey).toLatin1());
    QImage image;
    QVERIFY(image.loadFromData(entry.mid(4), "PNG"));
    QCOMPARE(QColor(image.pixel(1, 1)), QColor(Qt::blue));
}

void tst_picker_scene::scene_open_brings_the_pickers_back() {
    const QByteArray green = png_of(Qt::green, 8);
    QVERIFY(restore(laid_tabs(
        4, 1,
        {{QStringLiteral("Face"), QString(), QByteArray(), {{left_hand}}},
         {QStringLiteral("Body"), QStringLiteral("2024"), green, {{left_hand, root}, {root}}}})));
    session_.view(1)->push_button(laid_button(2, {left_hand}), -1);
    session_.writeScene();
    const QMap<QString, QString> saved = session_.host->fileInfoEntries();
    QVERIFY(saved.contains(QStringLiteral("TalvoraPickerImage_2024")));

    session_.host->newScene();
    QCOMPARE(tab_titles(*session_.window()), QStringList{QStringLiteral("Untitled")});
    session_.host->openScene(picker_session::nodes(), saved);
    QVERIFY(session_.host->setSelection({left_hand}));
    session_.host->processIdle();

    QCOMPARE(tab_titles(*session_.window()),
             (QStringList{QStringLiteral("Face"), QStringLiteral("Body")}));
    QCOMPARE(session_.tabs()->currentIndex(), 1);
    QCOMPARE(lit_states(session_.view(0)), QList<qint16>{1});
    QCOMPARE(lit_states(session_.view(1)), (QList<qint16>{2, 0, 1}));
    QCOMPARE(session_.view(1)->backgroundKey(), QStringLiteral("2024"));
    QCOMPARE(session_.view(1)->background().size(), QSize(8, 8));
    QCOMPARE(QColor(pixel_of(session_.view(1)->background(), 7, 0)), QColor(Qt::green));
    QVERIFY(session_.host->scriptLog().isEmpty());
}

void tst_picker_scene::hostile_key_runs_nothing_data() {
    QTest::addColumn<QString>("key");
    // Each would run print if it reached the MEL as written.
    QTest::newRow("quote") << QStringLiteral("1\"; print \"pwned");
    QTest::newRow("semicolon") << QStringLiteral("1; print pwned; //");
    QTest::newRow("backquote") << QStringLiteral("1`print \"pwned\"`");
    QTest::newRow("newline") << QStringLiteral("1\"\nprint \"pwned");
    QTest::newRow("escaped quote") << QStringLiteral("1\\\"; print \"pwned");
}

void tst_picker_scene::hostile_key_runs_nothing() {
    QFETCH(QString, key);

    // From the scene and from a file the key is replaced before it reaches any MEL.
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("trap.pkr"));
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(laid_file(4, {QStringLiteral("File"), key, png_of(Qt::red), {{root}}}));
    }
    QVERIFY(restore(laid_tabs(4, 0, {{QStringLiteral("Scene"), key, png_of(Qt::red), {{root}}}})));
    QVERIFY(session_.host->executeCommand(
        QStringLiteral("TalvoraPicker open %1").arg(picker_mel_quote(path))));
    session_.writeScene();
    for (int i = 0; i < 2; ++i) {
        const QString replaced = session_.view(i)->backgroundKey();
        QVERIFY2(only_digits(replaced), qPrintable(replaced));
        QCOMPARE(replaced, QString::number(session_.view(i)->background().cacheKey()));
    }
    QVERIFY(session_.host->hasFileInfo(QStringLiteral("TalvoraPickerImage_") +
                                       session_.view(0)->backgroundKey()));

    // A key set some other way is still only ever a quoted string.
    picker_view* view = session_.view(1);
    view->setBackground(key, view->background());
    session_.window()->setImageData(view);
    session_.window()->fetchImageData(view);
    session_.host->processIdle();
    QVERIFY(session_.host->hasFileInfo(QStringLiteral("TalvoraPickerImage_") + key));
    session_.window()->removeImageData(view);
    session_.host->processIdle();
    QVERIFY(!session_.host->hasFileInfo(QStringLiteral("TalvoraPickerImage_") + key));

    QCOMPARE(session_.host->scriptLog(), QStringList());
}

QTEST_MAIN(tst_picker_scene)
#include "tst_picker_scene.moc"

#include "files_test_support.h"
#include "picker_mel_quote.h"

#include <QTemporaryDir>
#include <QTest>

namespace {

const QString image_entry = QStringLiteral("TalvoraPickerImage_");

// Body: (both hands) and (root); Face: (left hand) over a green picture under key 2024.
QByteArray rig_picker(qint32 current) {
    return laid_tabs(
        4, current,
        {{QStringLiteral("Body"), QString(), QByteArray(), {{left_hand, right_hand}, {root}}},
         {QStringLiteral("Face"), QStringLiteral("2024"), png_of(Qt::green, 8), {{left_hand}}}});
}

} // namespace

class tst_picker_scene : public QObject {
    Q_OBJECT

    picker_session session_;

private slots:
    void init() { QVERIFY(session_.start()); }
    void cleanup() { session_.stop(); }

    void picker_without_tabs_still_writes_an_entry() {
        session_.window()->close_tab(0);
        QVERIFY(!session_.host->isModified());
        session_.writeScene();

        QCOMPARE(session_.storedTabs(), QByteArray::fromHex("00000004"
                                                            "00000000"
                                                            "ffffffff"));
        QVERIFY(session_.host->isModified());
    }

    void image_entries_follow_the_key() {
        picker_view* view = session_.view(0);
        picker_window* window = session_.window();
        QPixmap red(3, 3);
        red.fill(Qt::red);
        view->setBackground(QString(), red);
        session_.host->processIdle();
        window->setImageData(view);
        window->removeImageData(view);
        window->fetchImageData(view);
        window->fetchFrontImageData();
        QCOMPARE(session_.host->pendingMel(), QStringList());

        // Stored, then fetched back as a scene open does.
        view->setBackground(QStringLiteral("4711"), red);
        window->setImageData(view);
        window->fetchFrontImageData();
        QCOMPARE(session_.host->pendingMel().last(),
                 QStringLiteral("TalvoraPicker fetch_image `fileInfo -q "
                                "\"TalvoraPickerImage_4711\"`;"));
        session_.host->processIdle();
        // The entry: a marker and the PNG file, in base64.
        const QByteArray value = QByteArray::fromBase64(
            session_.host->fileInfo(image_entry + view->backgroundKey()).toLatin1());
        QCOMPARE(value.left(4), QByteArray::fromHex("00000001"));
        QImage image;
        QVERIFY(image.loadFromData(value.mid(4), "PNG"));
        QCOMPARE(QColor(image.pixel(2, 2)), QColor(Qt::red));
        QCOMPARE(session_.host->scriptLog(), QStringList());
    }

    // The directive decodes as many characters as the key has: only a key as long as the image
    // text brings it whole.
    void views_sharing_a_key_both_receive_the_image() {
        const QString blueText = QString::fromLatin1(png_of(Qt::blue).toBase64());
        const QString shared(blueText.size() + 8, QLatin1Char('7'));
        const QByteArray red = png_of(Qt::red);
        QVERIFY(session_.restore(laid_tabs(4, 0,
                                           {{QStringLiteral("A"), shared, red, {}},
                                            {QStringLiteral("B"), QStringLiteral("5"), red, {}},
                                            {QStringLiteral("C"), shared, red, {}}})));

        QVERIFY(session_.host->executeCommand(
            QStringLiteral("TalvoraPicker fetch_image %1 %2")
                .arg(picker_mel_quote(shared), picker_mel_quote(blueText))));

        const QRgb blue = QColor(Qt::blue).rgb();
        QCOMPARE(pixel_of(session_.view(0)->background()), blue);
        QCOMPARE(pixel_of(session_.view(1)->background()), QColor(Qt::red).rgb());
        QCOMPARE(pixel_of(session_.view(2)->background()), blue);
    }

    void scene_open_brings_the_pickers_back() {
        QVERIFY(session_.restore(rig_picker(1)));
        session_.writeScene();
        const QMap<QString, QString> saved = session_.host->fileInfoEntries();
        QVERIFY(saved.contains(image_entry + QStringLiteral("2024")));

        session_.host->newScene();
        QCOMPARE(tab_titles(*session_.window()), QStringList{QStringLiteral("Untitled")});
        session_.host->openScene(picker_session::nodes(), saved);
        QVERIFY(session_.host->setSelection({left_hand}));
        session_.host->processIdle();

        QCOMPARE(tab_titles(*session_.window()),
                 (QStringList{QStringLiteral("Body"), QStringLiteral("Face")}));
        QCOMPARE(session_.tabs()->currentIndex(), 1);
        QCOMPARE(lit_states(session_.view(0)), (QList<qint16>{2, 0}));
        QCOMPARE(lit_states(session_.view(1)), QList<qint16>{1});
        QCOMPARE(session_.view(1)->backgroundKey(), QStringLiteral("2024"));
        QCOMPARE(session_.view(1)->background().size(), QSize(8, 8));
        QCOMPARE(QColor(pixel_of(session_.view(1)->background(), 7, 0)), QColor(Qt::green));
        QVERIFY(session_.host->scriptLog().isEmpty());
    }

    void host_selection_lights_every_tab_data() {
        QTest::addColumn<QStringList>("selected");
        QTest::addColumn<QList<qint16>>("body");
        QTest::addColumn<QList<qint16>>("face");

        QTest::newRow("one hand") << QStringList{left_hand} << QList<qint16>{2, 0}
                                  << QList<qint16>{1};
        QTest::newRow("nothing") << QStringList() << QList<qint16>{0, 0} << QList<qint16>{0};
    }
    void host_selection_lights_every_tab() {
        QFETCH(QStringList, selected);
        QFETCH(QList<qint16>, body);
        QFETCH(QList<qint16>, face);
        QVERIFY(session_.restore(rig_picker(0)));
        QVERIFY(session_.host->setSelection({root}));
        QVERIFY(session_.host->setSelection(selected));

        QCOMPARE(picker_window::selection(), session_.host->selection());
        QCOMPARE(lit_states(session_.view(0)), body);
        QCOMPARE(lit_states(session_.view(1)), face);
        QCOMPARE(entry_of(*session_.window(), 2, QStringLiteral("Add One Button"))->isEnabled(),
                 !selected.isEmpty());
        QCOMPARE(session_.host->pendingIdleCount(), 0);
    }

    // What a click does: clear everything, light the button under the pointer, post.
    void posted_selection_runs_once_without_echo() {
        QVERIFY(session_.restore(rig_picker(0)));
        QVERIFY(session_.host->setSelection({left_hand}));
        session_.window()->clearAllSelected();
        QVERIFY((*session_.view(0)->buttons())[1].select(false));
        QVERIFY(session_.window()->postSelection());
        QCOMPARE(session_.host->pendingMel(),
                 QStringList{QStringLiteral("TalvoraPicker select \"hero:root_ctrl\"")});
        QCOMPARE(session_.host->selection(), QStringList{left_hand});

        session_.host->processIdle();

        QCOMPARE(session_.host->selection(), QStringList{root});
        QCOMPARE(session_.host->pendingIdleCount(), 0);
        QCOMPARE(lit_states(session_.view(0)), (QList<qint16>{0, 1}));
    }

    void hostile_text_runs_nothing_data() {
        QTest::addColumn<QString>("text");
        // Each starts with a real node, so a reader fooled into ending it early would select
        // that node and run the rest.
        QTest::newRow("quote") << QStringLiteral("persp\"; print \"pwned");
        QTest::newRow("semicolon") << QStringLiteral("persp; print pwned; //");
        QTest::newRow("backquote") << QStringLiteral("persp`print \"pwned\"`");
        QTest::newRow("newline") << QStringLiteral("persp\"\nprint \"pwned");
        QTest::newRow("escaped quote") << QStringLiteral("persp\\\"; print \"pwned");
    }
    // As a background key, from the scene or a file, or as a node name of a button.
    void hostile_text_runs_nothing() {
        QFETCH(QString, text);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("trap.pkr"));
        QVERIFY(write_file(
            path, laid_file(4, {QStringLiteral("File"), text, png_of(Qt::red), {{root}}})));
        QVERIFY(session_.restore(
            laid_tabs(4, 0, {{QStringLiteral("Scene"), text, png_of(Qt::red), {{text}}}})));
        QVERIFY(session_.host->executeCommand(
            QStringLiteral("TalvoraPicker open %1").arg(picker_mel_quote(path))));
        session_.writeScene();
        // Replaced before it reaches any MEL.
        for (int i = 0; i < 2; ++i)
            QCOMPARE(session_.view(i)->backgroundKey(),
                     QString::number(session_.view(i)->background().cacheKey()));
        QVERIFY(session_.host->hasFileInfo(image_entry + session_.view(0)->backgroundKey()));

        // A key set some other way is still only ever a quoted string.
        picker_view* view = session_.view(1);
        view->setBackground(text, view->background());
        session_.window()->setImageData(view);
        session_.window()->fetchImageData(view);
        session_.host->processIdle();
        QVERIFY(session_.host->hasFileInfo(image_entry + text));
        session_.window()->removeImageData(view);
        session_.window()->clearAllSelected();
        QVERIFY((*session_.view(0)->buttons())[0].select(false));
        QVERIFY(session_.window()->postSelection());
        session_.host->processIdle();

        QVERIFY(!session_.host->hasFileInfo(image_entry + text));
        QVERIFY(session_.host->selection().isEmpty());
        QCOMPARE(session_.host->scriptLog(), QStringList());
    }

    void damaged_scene_data_keeps_the_whole_tabs_data() {
        QTest::addColumn<int>("cut");
        QTest::addColumn<QStringList>("titles");
        QTest::addColumn<QString>("error");

        const int face = rig_picker(0).indexOf(QByteArray("\0F\0a\0c\0e", 8));
        const QString damaged =
            QStringLiteral("// Error: TalvoraPicker - the pickers stored in the "
                           "scene are damaged; %1 of 2 tabs were restored: the "
                           "data ends in the middle of %2 ");
        QTest::newRow("in the second tab")
            << face + 2 << QStringList{QStringLiteral("Body")}
            << damaged.arg(QLatin1String("1"), QLatin1String("the title of tab 1"));
        QTest::newRow("in the first tab: the tabs shown stay")
            << 30 << QStringList{QStringLiteral("Old")}
            << damaged.arg(QLatin1String("0"), QLatin1String("the background key of tab 0"));
    }
    void damaged_scene_data_keeps_the_whole_tabs() {
        QFETCH(int, cut);
        QFETCH(QStringList, titles);
        QFETCH(QString, error);
        QVERIFY(session_.restore(
            laid_tabs(4, 0, {{QStringLiteral("Old"), QString(), QByteArray(), {}}})));
        session_.host->clearScriptLog();

        session_.restore(rig_picker(0).left(cut));

        QCOMPARE(session_.host->scriptLog(), QStringList{error});
        QCOMPARE(tab_titles(*session_.window()), titles);
    }
};

QTEST_MAIN(tst_picker_scene)
#include "tst_picker_scene.moc"

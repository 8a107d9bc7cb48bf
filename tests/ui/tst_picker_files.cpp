#include "../support/picker_session.h"
#include "picker_background_key.h"
#include "picker_mel_quote.h"

#include <QDataStream>
#include <QDir>
#include <QImage>

#include <csignal>
#include <memory>
#include <sys/resource.h>

using namespace picker_test_kit;

namespace {

const QString left_hand = "hero:L_hand_ctrl"_q;
const QString right_hand = "hero:R_hand_ctrl"_q;
const QString root = "hero:root_ctrl"_q;

QStringList nodes() {
    return {"persp"_q, left_hand, right_hand, root};
}

QByteArray png_of(const QColor& colour, int edge = 4) {
    QImage image(edge, edge, QImage::Format_ARGB32);
    image.fill(colour);
    return pngOf(image);
}

QRgb pixel_of(const QPixmap& pixmap, int x = 1, int y = 1) {
    return pixmap.toImage().pixel(x, y);
}

// Selection buttons at (10 b, 20), size 8, one per list of node names.
button_att_list named(const QList<QStringList>& buttons) {
    button_att_list list;
    for (const QStringList& names : buttons)
        list << button(names, QPoint(10 * int(list.size()), 20), 8, 0xFFB22222);
    return list;
}

const QString untitled = "Untitled"_q;

laid_tab tab_titled(const QString& title) {
    return {title, QString(), QByteArray(), named({{root}})};
}

QString run_open(const QStringList& paths) {
    QString mel = "TalvoraPicker open"_q;
    for (const QString& path : paths)
        mel += QLatin1Char(' ') + picker_mel_quote(path);
    return mel;
}

// Lowers the largest file this process may write, as a full disk would stop a save midway.
struct file_size_limit {
    explicit file_size_limit(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &saved);
        previous = std::signal(SIGXFSZ, SIG_IGN);
        const rlimit lowered{bytes, saved.rlim_max};
        setrlimit(RLIMIT_FSIZE, &lowered);
    }
    ~file_size_limit() {
        setrlimit(RLIMIT_FSIZE, &saved);
        std::signal(SIGXFSZ, previous);
    }
    rlimit saved{};
    void (*previous)(int) = nullptr;
};

const QString image_entry = "TalvoraPickerImage_"_q;

// Body: (both hands) and (root); Face: (left hand) over a green picture under key 2024.
QByteArray rig_picker(qint32 current) {
    return laid_tabs({{"Body"_q, QString(), QByteArray(), named({{left_hand, right_hand}, {root}})},
                      {"Face"_q, "2024"_q, png_of(Qt::green, 8), named({{left_hand}})}},
                     current);
}

} // namespace

// Picker files and the pickers stored in the scene, end to end: the plug-in loaded into an
// embedded host, its dock open on a scene of rig nodes, real files in a temporary folder, and
// settings and the pickers config kept away from the user's.
class tst_picker_files : public QObject {
    Q_OBJECT

    std::unique_ptr<picker_session> session_;

    picker_window* window() const { return dynamic_cast<picker_window*>(picker_main::window()); }
    QTabWidget* tabs() const { return window()->findChild<QTabWidget*>(); }
    picker_view* view(int index) const { return qobject_cast<picker_view*>(tabs()->widget(index)); }
    // Hands the tab stream to the picker as a scene's stored data is handed over.
    bool restore(const QByteArray& tabStream) {
        const host_status status =
            session_->host.executeCommand("TalvoraPicker restore \"%1\""_q.arg(
                QString::fromLatin1(qCompress(tabStream, 9).toBase64())));
        session_->host.processIdle();
        return status.ok();
    }
    // The images of the tabs as the picker stored them in the scene when each entered it;
    // restoring a scene reads them and writes nothing.
    void storeImages() {
        for (int i = 0; i < tab_titles(*window()).size(); ++i)
            window()->setImageData(view(i)->tab());
        session_->host.processIdle();
    }
    // Queues the change's scene write, runs it and everything it queued.
    void writeScene() {
        window()->updateSceneData();
        window()->flushSceneData();
        session_->host.processIdle();
    }

private slots:
    void initTestCase() { isolate_settings(); }
    void init() {
        session_ = std::make_unique<picker_session>(nodes());
        QVERIFY(session_->isUp());
    }
    void cleanup() { session_.reset(); }

    // A, a broken second file (absent: null), C; the answer to the one message decides on C.
    void open_three_with_the_second_broken_data() {
        QTest::addColumn<QByteArray>("second");
        QTest::addColumn<int>("answer");
        QTest::addColumn<QStringList>("titles");

        const QStringList ac{untitled, "A"_q, "C"_q};
        const QStringList a{untitled, "A"_q};
        QTest::newRow("unreadable, ignore") << QByteArray() << int(QMessageBox::Ignore) << ac;
        QTest::newRow("unreadable, cancel") << QByteArray() << int(QMessageBox::Cancel) << a;
        QTest::newRow("JSON, ignore") << QByteArray("{\"title\": \"B\", \"buttons\": []}\n")
                                      << int(QMessageBox::Ignore) << ac;
    }
    void open_three_with_the_second_broken() {
        QFETCH(QByteArray, second);
        QFETCH(int, answer);
        QFETCH(QStringList, titles);

        const QStringList paths{session_->path("a.pkr"_q), session_->path("b.pkr"_q),
                                session_->path("c.pkr"_q)};
        QVERIFY(writeBytes(paths.at(0), laid_file(tab_titled("A"_q))));
        QVERIFY(second.isNull() || writeBytes(paths.at(1), second));
        QVERIFY(writeBytes(paths.at(2), laid_file(tab_titled("C"_q))));
        scripted_prompts prompts;
        prompts.answers.append(static_cast<QMessageBox::StandardButton>(answer));

        // Not every file opened: the command fails, so that a script stops there.
        QVERIFY(!session_->host.executeCommand(run_open(paths)));

        QCOMPARE(tab_titles(*window()), titles);
        QCOMPARE(prompts.messages.size(), 1);
        const picker_message& shown = prompts.messages.first();
        QCOMPARE(shown.title, "Open Failed"_q);
        const QString text = second.isNull()
                                 ? "Could not open the file \"%1\".\n\nPlease check the "
                                   "file permissions and try again."_q
                                 : "The file \"%1\" is not a picker file."_q;
        QCOMPARE(shown.text, text.arg(QDir::toNativeSeparators(paths.at(1))));
        QCOMPARE(int(shown.buttons), int(QMessageBox::Cancel | QMessageBox::Ignore));
        const int last = titles.size() - 1;
        QCOMPARE(tabs()->currentIndex(), last);
        QCOMPARE(view(last)->tab()->path(), paths.at(last == 1 ? 0 : 2));
        // Each opened tab asks for its namespaces to be bound to the scene's.
        QCOMPARE(
            session_->host.pendingMel().count("TalvoraPicker \"bind\" `picker_ListNamespaces`;"_q),
            last);
        writeScene();
        QCOMPARE(session_->stored().tabs.size(), titles.size());
    }

    void untitled_save_asks_for_a_name_once() {
        scripted_prompts prompts;
        const QString path = session_->path("body.pkr"_q);
        prompts.files.append(QStringList{path});
        const QStringList names{left_hand, root};
        QVERIFY(restore(laid_tabs({{untitled, QString(), QByteArray(), named({names})}})));
        QAction* save = entry_of(*window(), 0, "Save"_q);

        save->trigger();
        QCOMPARE(session_->host.pendingMel(), QStringList{"TalvoraPicker(\"save\");"_q});
        session_->host.processIdle();

        QCOMPARE(prompts.questions.size(), 1);
        QCOMPARE(prompts.questions.first().title, "Save Tab:"_q);
        QCOMPARE(view(0)->tab()->path(), path);
        QCOMPARE(readBytes(path), laid_file({untitled, QString(), QByteArray(), named({names})}));

        // Known by name now: saved again without asking.
        tabs()->setTabText(0, "Body"_q);
        save->trigger();
        session_->host.processIdle();
        QCOMPARE(prompts.questions.size(), 1);
        QCOMPARE(readBytes(path), laid_file({"Body"_q, QString(), QByteArray(), named({names})}));
        QVERIFY(prompts.messages.isEmpty());
    }

    // A background of noise makes the new file far larger than the disk lets through.
    void failed_save_as_keeps_the_old_file() {
        const QString path = session_->path("old.pkr"_q);
        const QByteArray oldBytes = laid_file(tab_titled("Old"_q));
        QVERIFY(writeBytes(path, oldBytes));
        QVERIFY(session_->host.executeCommand(run_open({path})));
        view(1)->tab()->setBackground("77"_q, QPixmap::fromImage(QImage::fromData(noisePng(128))));
        scripted_prompts prompts;
        prompts.files.append(QStringList{path});
        prompts.answers.append(QMessageBox::Ok);
        {
            const file_size_limit limit(oldBytes.size() + 4096);
            QVERIFY(!session_->host.executeCommand("TalvoraPicker saveas"_q));
        }

        QCOMPARE(prompts.questions.size(), 1);
        QCOMPARE(readBytes(path), oldBytes);
        QCOMPARE(prompts.messages.size(), 1);
        QCOMPARE(prompts.messages.first().title, "Save Failed"_q);
        QCOMPARE(prompts.messages.first().text,
                 "Could not open the file \"%1\" for writing.\n\nPlease check that "
                 "this file is not locked and that you have the proper permissions "
                 "and try again."_q.arg(path));
        QCOMPARE(view(1)->tab()->path(), QString());
    }

    void close_tab_keeps_a_shared_image_data() {
        QTest::addColumn<QStringList>("keys");
        QTest::addColumn<int>("closed");
        QTest::addColumn<bool>("kept");

        const QString k = "111"_q;
        const QString l = "222"_q;
        QTest::newRow("shared before") << QStringList{k, l, k} << 2 << true;
        QTest::newRow("only the next tab shares it") << QStringList{k, k, l} << 0 << false;
        QTest::newRow("not shared") << QStringList{l, k} << 1 << false;
    }
    void close_tab_keeps_a_shared_image() {
        QFETCH(QStringList, keys);
        QFETCH(int, closed);
        QFETCH(bool, kept);

        QList<laid_tab> tabs;
        for (const QString& key : keys)
            tabs.append({"T%1"_q.arg(tabs.size()), key, png_of(Qt::green), {}});
        QVERIFY(restore(laid_tabs(tabs)));
        storeImages();
        const QString entry = "TalvoraPickerImage_"_q + keys.at(closed);
        QVERIFY(session_->host.hasFileInfo(entry));
        scripted_prompts prompts;
        prompts.answers.append(QMessageBox::Ok);

        window()->close_one(closed);
        window()->flushSceneData();
        session_->host.processIdle();

        QCOMPARE(prompts.messages.size(), 1);
        QCOMPARE(session_->host.hasFileInfo(entry), kept);
        QCOMPARE(session_->stored().tabs.size(), keys.size() - 1);
    }

    // A newer stream warns and keeps the tabs shown; a current tab out of range is the first.
    void restored_stream_data() {
        QTest::addColumn<qint32>("version");
        QTest::addColumn<qint32>("current");
        QTest::addColumn<QStringList>("titles");

        const QStringList ab{"A"_q, "B"_q};
        QTest::newRow("version 5") << 5 << 1 << QStringList{untitled};
        QTest::newRow("current minus one") << 4 << -1 << ab;
        QTest::newRow("current one past the end") << 4 << 2 << ab;
    }
    void restored_stream() {
        QFETCH(qint32, version);
        QFETCH(qint32, current);
        QFETCH(QStringList, titles);
        scripted_prompts prompts;
        prompts.answers.append(QMessageBox::Ok);

        QVERIFY(restore(laid_tabs({tab_titled("A"_q), tab_titled("B"_q)}, current, version)));

        QCOMPARE(tab_titles(*window()), titles);
        QCOMPARE(tabs()->currentIndex(), 0);
        QCOMPARE(prompts.messages.size(), version > 4 ? 1 : 0);
        if (version > 4)
            QCOMPARE(prompts.messages.first().text,
                     "The scene file contains data\nin a format (5) more recent "
                     "than the version of the picker\ninstalled in this machine "
                     "can understand.  Please update\nthe picker, and try again.\n"_q);
    }

    void picker_without_tabs_still_writes_an_entry() {
        session_->key(Qt::Key_W, Qt::ControlModifier);
        writeScene();

        QCOMPARE(session_->storedBytes(), hex("00000004 00000000 ffffffff"));
        QVERIFY(session_->host.isModified());
    }

    // The directive decodes as many characters as the key has: only a key as long as the image
    // text brings it whole.
    void views_sharing_a_key_both_receive_the_image() {
        const QString blueText = QString::fromLatin1(png_of(Qt::blue).toBase64());
        const QString shared(blueText.size() + 8, QLatin1Char('7'));
        const QByteArray red = png_of(Qt::red);
        QVERIFY(restore(laid_tabs(
            {{"A"_q, shared, red, {}}, {"B"_q, "5"_q, red, {}}, {"C"_q, shared, red, {}}})));

        QVERIFY(session_->host.executeCommand("TalvoraPicker fetch_image %1 %2"_q.arg(
            picker_mel_quote(shared), picker_mel_quote(blueText))));

        const QRgb blue = QColor(Qt::blue).rgb();
        QCOMPARE(pixel_of(view(0)->tab()->background()), blue);
        QCOMPARE(pixel_of(view(1)->tab()->background()), QColor(Qt::red).rgb());
        QCOMPARE(pixel_of(view(2)->tab()->background()), blue);
    }

    void hostile_text_runs_nothing_data() {
        QTest::addColumn<QString>("text");
        // Each starts with a real node, so a reader fooled into ending it early would select
        // that node and run the rest.
        QTest::newRow("quote") << "persp\"; print \"pwned"_q;
        QTest::newRow("semicolon") << "persp; print pwned; //"_q;
        QTest::newRow("backquote") << "persp`print \"pwned\"`"_q;
        QTest::newRow("newline") << "persp\"\nprint \"pwned"_q;
        QTest::newRow("escaped quote") << "persp\\\"; print \"pwned"_q;
    }
    // As a background key, from the scene or a file, or as a node name of a button.
    void hostile_text_runs_nothing() {
        QFETCH(QString, text);
        const QString path = session_->path("trap.pkr"_q);
        QVERIFY(writeBytes(path, laid_file({"File"_q, text, png_of(Qt::red), named({{root}})})));
        QVERIFY(restore(laid_tabs({{"Scene"_q, text, png_of(Qt::red), named({{text}})}})));
        QVERIFY(
            session_->host.executeCommand("TalvoraPicker open %1"_q.arg(picker_mel_quote(path))));
        storeImages();
        writeScene();
        // Replaced before it reaches any MEL, by the key the image itself gives.
        for (int i = 0; i < 2; ++i)
            QCOMPARE(view(i)->tab()->backgroundKey(), backgroundKeyOf(png_of(Qt::red)));
        QVERIFY(session_->host.hasFileInfo(image_entry + view(0)->tab()->backgroundKey()));

        // A key set some other way is still only ever a quoted string.
        picker_view* keyed = view(1);
        keyed->tab()->setBackground(text, keyed->tab()->background());
        window()->setImageData(keyed->tab());
        window()->fetchImageData(keyed->tab());
        session_->host.processIdle();
        QVERIFY(session_->host.hasFileInfo(image_entry + text));
        window()->removeImageData(keyed->tab());
        window()->clearAllSelected();
        view(0)->tab()->select(0, true);
        QVERIFY(window()->postSelection());
        session_->host.processIdle();

        QVERIFY(!session_->host.hasFileInfo(image_entry + text));
        QVERIFY(session_->host.selection().isEmpty());
        QCOMPARE(session_->host.scriptLog(), QStringList());
    }

    void damaged_scene_data_keeps_the_whole_tabs_data() {
        QTest::addColumn<int>("cut");
        QTest::addColumn<QStringList>("titles");
        QTest::addColumn<QString>("error");

        const int face = rig_picker(0).indexOf(QByteArray("\0F\0a\0c\0e", 8));
        const QString damaged = "// Error: TalvoraPicker - the pickers stored in the "
                                "scene are damaged; %1 of 2 tabs were restored: the "
                                "data ends in the middle of %2 "_q;
        QTest::newRow("in the second tab")
            << face + 2 << QStringList{"Body"_q}
            << damaged.arg(QLatin1String("1"), QLatin1String("the title of tab 1"));
        QTest::newRow("in the first tab: the tabs shown stay")
            << 30 << QStringList{"Old"_q}
            << damaged.arg(QLatin1String("0"), QLatin1String("the background key of tab 0"));
    }
    void damaged_scene_data_keeps_the_whole_tabs() {
        QFETCH(int, cut);
        QFETCH(QStringList, titles);
        QFETCH(QString, error);
        QVERIFY(restore(laid_tabs({{"Old"_q, QString(), QByteArray(), {}}})));
        session_->host.clearScriptLog();

        restore(rig_picker(0).left(cut));

        QCOMPARE(session_->host.scriptLog(), QStringList{error});
        QCOMPARE(tab_titles(*window()), titles);
    }
};

QTEST_MAIN(tst_picker_files)
#include "tst_picker_files.moc"

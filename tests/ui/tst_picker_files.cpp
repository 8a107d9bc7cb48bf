#include "../core/picker_test_vectors.h"
#include "picker_background_key.h"
#include "picker_embedded_host.h"
#include "picker_file.h"
#include "picker_main.h"
#include "picker_mel_quote.h"
#include "picker_prompt.h"
#include "picker_view.h"
#include "picker_window.h"
#include "ui_test_support.h"

#include <QDataStream>
#include <QDir>
#include <QImage>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <memory>
#include <sys/resource.h>

using namespace picker_test_vectors;

namespace {

// Answers the window's questions from scripts, in order, and keeps what was asked. A question
// nobody scripted an answer for is answered with NoButton or no file.
class scripted_prompts {
public:
    scripted_prompts() {
        picker_set_message_hook([this](const picker_message& message) {
            messages.append(message);
            return answers.isEmpty() ? QMessageBox::NoButton : answers.takeFirst();
        });
        picker_set_file_hook([this](const picker_file_question& question) {
            questions.append(question);
            return files.isEmpty() ? QStringList() : files.takeFirst();
        });
    }
    ~scripted_prompts() {
        picker_set_message_hook(picker_message_hook());
        picker_set_file_hook(picker_file_hook());
    }
    scripted_prompts(const scripted_prompts&) = delete;
    scripted_prompts& operator=(const scripted_prompts&) = delete;

    QList<QMessageBox::StandardButton> answers;
    QList<QStringList> files;
    QList<picker_message> messages;
    QList<picker_file_question> questions;
};

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

// One tab laid out field by field as version 4 has it: title, key and, under a key, the image
// marker and PNG file, then its buttons: one selection button per list of node names, at
// (10 b, 20), size 8.
struct laid_tab {
    QString title;
    QString key;
    QByteArray png;
    QList<QStringList> buttons;
};

void lay_tab_body(QDataStream& out, const laid_tab& tab) {
    out << tab.title << tab.key;
    if (!tab.key.isEmpty()) {
        out << qint32(tab.png.isEmpty() ? 0 : 1);
        out.writeRawData(tab.png.constData(), static_cast<int>(tab.png.size()));
    }
    out << qint32(tab.buttons.size());
    for (int b = 0; b < tab.buttons.size(); ++b) {
        out << qint32(b) << qint32(10 * b) << qint32(20) << qint32(8) << qint32(0) << qint32(0)
            << quint32(0xFFB22222) << quint32(0xFF000000) << QString()
            << qint32(tab.buttons.at(b).size());
        for (const QString& name : tab.buttons.at(b))
            out << name;
    }
}

QByteArray laid_file(qint32 version, const laid_tab& tab) {
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(7);
    out << version;
    lay_tab_body(out, tab);
    return bytes;
}

QByteArray laid_tabs(qint32 version, qint32 current, const QList<laid_tab>& tabs) {
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << version << qint32(tabs.size()) << current;
    for (int t = 0; t < tabs.size(); ++t) {
        out << qint32(t);
        lay_tab_body(out, tabs.at(t));
    }
    return bytes;
}

const QString untitled = "Untitled"_q;

laid_tab tab_titled(const QString& title) {
    return {title, QString(), QByteArray(), {{root}}};
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
    return laid_tabs(4, current,
                     {{"Body"_q, QString(), QByteArray(), {{left_hand, right_hand}, {root}}},
                      {"Face"_q, "2024"_q, png_of(Qt::green, 8), {{left_hand}}}});
}

} // namespace

// Picker files and the pickers stored in the scene, end to end: the plug-in loaded into an
// embedded host, its dock open on a scene of rig nodes, real files in a temporary folder, and
// settings and the pickers config kept away from the user's.
class tst_picker_files : public QObject {
    Q_OBJECT

    std::unique_ptr<picker_embedded_host> host_;
    std::unique_ptr<QTemporaryDir> dir_;

    picker_window* window() const { return dynamic_cast<picker_window*>(picker_main::window()); }
    QTabWidget* tabs() const { return window()->findChild<QTabWidget*>(); }
    picker_view* view(int index) const { return qobject_cast<picker_view*>(tabs()->widget(index)); }
    // Hands the tab stream to the picker as a scene's stored data is handed over.
    bool restore(const QByteArray& tabStream) {
        const host_status status = host_->executeCommand("TalvoraPicker restore \"%1\""_q.arg(
            QString::fromLatin1(qCompress(tabStream, 9).toBase64())));
        host_->processIdle();
        return status.ok();
    }
    // The tab stream stored in the scene, raw and decoded.
    QByteArray storedTabs() const {
        return qUncompress(
            QByteArray::fromBase64(host_->fileInfo("TalvoraPickerData"_q).toLatin1()));
    }
    picker_tab_set storedSet() const {
        picker_tab_set set;
        QDataStream in(storedTabs());
        return readTabStream(in, set).ok() ? set : picker_tab_set{-1, -1, {}};
    }
    // The images of the tabs as the picker stored them in the scene when each entered it;
    // restoring a scene reads them and writes nothing.
    void storeImages() {
        for (int i = 0; i < tab_titles(*window()).size(); ++i)
            window()->setImageData(view(i)->tab());
        host_->processIdle();
    }
    // Queues the change's scene write, runs it and everything it queued.
    void writeScene() {
        window()->updateSceneData();
        window()->flushSceneData();
        host_->processIdle();
    }

private slots:
    void initTestCase() {
        QStandardPaths::setTestModeEnabled(true);
        qputenv("TALVORA_PICKER_CONFIG", QByteArray("/nonexistent/pickers.cfg"));
    }
    void init() {
        dir_ = std::make_unique<QTemporaryDir>();
        QVERIFY(dir_->isValid());
        host_ = std::make_unique<picker_embedded_host>();
        QVERIFY(picker_main::initialize(*host_, &picker_window::create));
        host_->openScene(nodes(), {});
        QVERIFY(host_->executeCommand("TalvoraPicker"_q));
        host_->processIdle();
        QVERIFY(window());
    }
    void cleanup() {
        host_->quit();
        picker_main::uninitialize();
        host_.reset();
        dir_.reset();
    }

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

        const QStringList paths{dir_->filePath("a.pkr"_q), dir_->filePath("b.pkr"_q),
                                dir_->filePath("c.pkr"_q)};
        QVERIFY(writeBytes(paths.at(0), laid_file(4, tab_titled("A"_q))));
        QVERIFY(second.isNull() || writeBytes(paths.at(1), second));
        QVERIFY(writeBytes(paths.at(2), laid_file(4, tab_titled("C"_q))));
        scripted_prompts prompts;
        prompts.answers.append(static_cast<QMessageBox::StandardButton>(answer));

        // Not every file opened: the command fails, so that a script stops there.
        QVERIFY(!host_->executeCommand(run_open(paths)));

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
        QCOMPARE(host_->pendingMel().count("TalvoraPicker \"bind\" `picker_ListNamespaces`;"_q),
                 last);
        writeScene();
        QCOMPARE(storedSet().tabs.size(), titles.size());
    }

    void untitled_save_asks_for_a_name_once() {
        scripted_prompts prompts;
        const QString path = dir_->filePath("body.pkr"_q);
        prompts.files.append(QStringList{path});
        const QStringList names{left_hand, root};
        QVERIFY(restore(laid_tabs(4, 0, {{untitled, QString(), QByteArray(), {names}}})));
        QAction* save = entry_of(*window(), 0, "Save"_q);

        save->trigger();
        QCOMPARE(host_->pendingMel(), QStringList{"TalvoraPicker(\"save\");"_q});
        host_->processIdle();

        QCOMPARE(prompts.questions.size(), 1);
        QCOMPARE(prompts.questions.first().title, "Save Tab:"_q);
        QCOMPARE(view(0)->tab()->path(), path);
        QCOMPARE(readBytes(path), laid_file(4, {untitled, QString(), QByteArray(), {names}}));

        // Known by name now: saved again without asking.
        tabs()->setTabText(0, "Body"_q);
        save->trigger();
        host_->processIdle();
        QCOMPARE(prompts.questions.size(), 1);
        QCOMPARE(readBytes(path), laid_file(4, {"Body"_q, QString(), QByteArray(), {names}}));
        QVERIFY(prompts.messages.isEmpty());
    }

    // A background of noise makes the new file far larger than the disk lets through.
    void failed_save_as_keeps_the_old_file() {
        const QString path = dir_->filePath("old.pkr"_q);
        const QByteArray oldBytes = laid_file(4, tab_titled("Old"_q));
        QVERIFY(writeBytes(path, oldBytes));
        QVERIFY(host_->executeCommand(run_open({path})));
        view(1)->tab()->setBackground("77"_q, QPixmap::fromImage(QImage::fromData(noisePng(128))));
        scripted_prompts prompts;
        prompts.files.append(QStringList{path});
        prompts.answers.append(QMessageBox::Ok);
        {
            const file_size_limit limit(oldBytes.size() + 4096);
            QVERIFY(!host_->executeCommand("TalvoraPicker saveas"_q));
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
        QVERIFY(restore(laid_tabs(4, 0, tabs)));
        storeImages();
        const QString entry = "TalvoraPickerImage_"_q + keys.at(closed);
        QVERIFY(host_->hasFileInfo(entry));
        scripted_prompts prompts;
        prompts.answers.append(QMessageBox::Ok);

        window()->close_one(closed);
        window()->flushSceneData();
        host_->processIdle();

        QCOMPARE(prompts.messages.size(), 1);
        QCOMPARE(host_->hasFileInfo(entry), kept);
        QCOMPARE(storedSet().tabs.size(), keys.size() - 1);
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

        QVERIFY(restore(laid_tabs(version, current, {tab_titled("A"_q), tab_titled("B"_q)})));

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
        window()->close_tab(0);
        QVERIFY(!host_->isModified());
        writeScene();

        QCOMPARE(storedTabs(), hex("00000004 00000000 ffffffff"));
        QVERIFY(host_->isModified());
    }

    void image_entries_follow_the_key() {
        picker_view* front = view(0);
        picker_window* shell = window();
        QPixmap red(3, 3);
        red.fill(Qt::red);
        front->tab()->setBackground(QString(), red);
        host_->processIdle();
        shell->setImageData(front->tab());
        shell->removeImageData(front->tab());
        shell->fetchImageData(front->tab());
        shell->fetchFrontImageData();
        QCOMPARE(host_->pendingMel(), QStringList());

        // Stored, then fetched back as a scene open does.
        front->tab()->setBackground("4711"_q, red);
        shell->setImageData(front->tab());
        shell->fetchFrontImageData();
        QCOMPARE(host_->pendingMel().last(), "TalvoraPicker fetch_image `fileInfo -q "
                                             "\"TalvoraPickerImage_4711\"`;"_q);
        host_->processIdle();
        // The entry: a marker and the PNG file, in base64.
        const QByteArray value = QByteArray::fromBase64(
            host_->fileInfo(image_entry + front->tab()->backgroundKey()).toLatin1());
        QCOMPARE(value.left(4), QByteArray::fromHex("00000001"));
        QImage image;
        QVERIFY(image.loadFromData(value.mid(4), "PNG"));
        QCOMPARE(QColor(image.pixel(2, 2)), QColor(Qt::red));
        QCOMPARE(host_->scriptLog(), QStringList());
    }

    // The directive decodes as many characters as the key has: only a key as long as the image
    // text brings it whole.
    void views_sharing_a_key_both_receive_the_image() {
        const QString blueText = QString::fromLatin1(png_of(Qt::blue).toBase64());
        const QString shared(blueText.size() + 8, QLatin1Char('7'));
        const QByteArray red = png_of(Qt::red);
        QVERIFY(restore(laid_tabs(
            4, 0, {{"A"_q, shared, red, {}}, {"B"_q, "5"_q, red, {}}, {"C"_q, shared, red, {}}})));

        QVERIFY(host_->executeCommand("TalvoraPicker fetch_image %1 %2"_q.arg(
            picker_mel_quote(shared), picker_mel_quote(blueText))));

        const QRgb blue = QColor(Qt::blue).rgb();
        QCOMPARE(pixel_of(view(0)->tab()->background()), blue);
        QCOMPARE(pixel_of(view(1)->tab()->background()), QColor(Qt::red).rgb());
        QCOMPARE(pixel_of(view(2)->tab()->background()), blue);
    }

    void scene_open_brings_the_pickers_back() {
        QVERIFY(restore(rig_picker(1)));
        storeImages();
        writeScene();
        const QMap<QString, QString> saved = host_->fileInfoEntries();
        QVERIFY(saved.contains(image_entry + "2024"_q));

        host_->newScene();
        QCOMPARE(tab_titles(*window()), QStringList{"Untitled"_q});
        host_->openScene(nodes(), saved);
        QVERIFY(host_->setSelection({left_hand}));
        host_->processIdle();

        QCOMPARE(tab_titles(*window()), (QStringList{"Body"_q, "Face"_q}));
        QCOMPARE(tabs()->currentIndex(), 1);
        QCOMPARE(lit_states(view(0)), (QList<qint16>{2, 0}));
        QCOMPARE(lit_states(view(1)), QList<qint16>{1});
        QCOMPARE(view(1)->tab()->backgroundKey(), "2024"_q);
        QCOMPARE(view(1)->tab()->background().size(), QSize(8, 8));
        QCOMPARE(QColor(pixel_of(view(1)->tab()->background(), 7, 0)), QColor(Qt::green));
        QVERIFY(host_->scriptLog().isEmpty());
    }

    void host_selection_lights_every_tab() {
        QVERIFY(restore(rig_picker(0)));
        QAction* add = entry_of(*window(), 2, "Add One Button"_q);
        QVERIFY(host_->setSelection({root}));
        QVERIFY(host_->setSelection({left_hand}));
        QCOMPARE(window()->selection(), host_->selection());
        QCOMPARE(lit_states(view(0)), (QList<qint16>{2, 0}));
        QCOMPARE(lit_states(view(1)), QList<qint16>{1});
        QVERIFY(add->isEnabled());

        QVERIFY(host_->setSelection({}));
        QCOMPARE(lit_states(view(0)), (QList<qint16>{0, 0}));
        QCOMPARE(lit_states(view(1)), QList<qint16>{0});
        QVERIFY(!add->isEnabled());
        QCOMPARE(host_->pendingIdleCount(), 0);
    }

    // What a click does: clear everything, light the button under the pointer, post.
    void posted_selection_runs_once_without_echo() {
        QVERIFY(restore(rig_picker(0)));
        QVERIFY(host_->setSelection({left_hand}));
        window()->clearAllSelected();
        view(0)->tab()->select(1, true);
        QVERIFY(window()->postSelection());
        QCOMPARE(host_->pendingMel(), QStringList{"TalvoraPicker select \"hero:root_ctrl\""_q});
        QCOMPARE(host_->selection(), QStringList{left_hand});

        host_->processIdle();

        QCOMPARE(host_->selection(), QStringList{root});
        QCOMPARE(host_->pendingIdleCount(), 0);
        QCOMPARE(lit_states(view(0)), (QList<qint16>{0, 1}));
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
        const QString path = dir_->filePath("trap.pkr"_q);
        QVERIFY(writeBytes(path, laid_file(4, {"File"_q, text, png_of(Qt::red), {{root}}})));
        QVERIFY(restore(laid_tabs(4, 0, {{"Scene"_q, text, png_of(Qt::red), {{text}}}})));
        QVERIFY(host_->executeCommand("TalvoraPicker open %1"_q.arg(picker_mel_quote(path))));
        storeImages();
        writeScene();
        // Replaced before it reaches any MEL, by the key the image itself gives.
        for (int i = 0; i < 2; ++i)
            QCOMPARE(view(i)->tab()->backgroundKey(), backgroundKeyOf(png_of(Qt::red)));
        QVERIFY(host_->hasFileInfo(image_entry + view(0)->tab()->backgroundKey()));

        // A key set some other way is still only ever a quoted string.
        picker_view* keyed = view(1);
        keyed->tab()->setBackground(text, keyed->tab()->background());
        window()->setImageData(keyed->tab());
        window()->fetchImageData(keyed->tab());
        host_->processIdle();
        QVERIFY(host_->hasFileInfo(image_entry + text));
        window()->removeImageData(keyed->tab());
        window()->clearAllSelected();
        view(0)->tab()->select(0, true);
        QVERIFY(window()->postSelection());
        host_->processIdle();

        QVERIFY(!host_->hasFileInfo(image_entry + text));
        QVERIFY(host_->selection().isEmpty());
        QCOMPARE(host_->scriptLog(), QStringList());
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
        QVERIFY(restore(laid_tabs(4, 0, {{"Old"_q, QString(), QByteArray(), {}}})));
        host_->clearScriptLog();

        restore(rig_picker(0).left(cut));

        QCOMPARE(host_->scriptLog(), QStringList{error});
        QCOMPARE(tab_titles(*window()), titles);
    }
};

QTEST_MAIN(tst_picker_files)
#include "tst_picker_files.moc"

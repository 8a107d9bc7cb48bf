#include "files_test_support.h"
#include "picker_file.h"
#include "picker_mel_quote.h"
#include "ui_test_support.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <sys/resource.h>

namespace {

const QString untitled = QStringLiteral("Untitled");
const QString open_failure = QStringLiteral(
    "Could not open the file \"%1\".\n\nPlease check the file permissions and try again.");
const QString not_a_picker = QStringLiteral("The file \"%1\" is not a picker file.");
const QString save_failure = QStringLiteral(
    "Could not open the file \"%1\" for writing.\n\nPlease check that this file is not locked "
    "and that you have the proper permissions and try again.");

laid_tab tab_titled(const QString& title) {
    return {title, QString(), QByteArray(), {{QStringLiteral("hero:root_ctrl")}}};
}

bool write_file(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QByteArray read_file(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString run_open(const QStringList& paths) {
    QString mel = QStringLiteral("TalvoraPicker open");
    for (const QString& path : paths)
        mel += QLatin1Char(' ') + picker_mel_quote(path);
    return mel;
}

// Lowers the largest file this process may write, as a full disk would stop a save midway.
class file_size_limit {
public:
    explicit file_size_limit(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &saved_);
        previous_ = std::signal(SIGXFSZ, SIG_IGN);
        rlimit lowered = saved_;
        lowered.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &lowered);
    }
    ~file_size_limit() {
        setrlimit(RLIMIT_FSIZE, &saved_);
        std::signal(SIGXFSZ, previous_);
    }
    file_size_limit(const file_size_limit&) = delete;
    file_size_limit& operator=(const file_size_limit&) = delete;

private:
    rlimit saved_{};
    void (*previous_)(int) = nullptr;
};

QPixmap noise(int edge) {
    QImage image(edge, edge, QImage::Format_RGB32);
    quint32 state = 12345;
    for (int y = 0; y < edge; ++y) {
        for (int x = 0; x < edge; ++x) {
            state = state * 1664525u + 1013904223u;
            image.setPixel(x, y, state >> 8);
        }
    }
    return QPixmap::fromImage(image);
}

enum save_target { cancelled, fresh_name, missing_folder, disk_full };

} // namespace

class tst_picker_files : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void open_several_files_data();
    void open_several_files();
    void untitled_save_asks_for_a_name_once();
    void save_as_data();
    void save_as();
    void close_tab_keeps_a_shared_image_data();
    void close_tab_keeps_a_shared_image();
    void newer_tab_stream_warns_and_keeps_the_tabs();
    void current_tab_of_the_stream_data();
    void current_tab_of_the_stream();

private:
    bool restore(const QByteArray& tabStream);

    picker_session session_;
    std::unique_ptr<QTemporaryDir> dir_;
};

void tst_picker_files::initTestCase() {
    QStandardPaths::setTestModeEnabled(true);
    qputenv("TALVORA_PICKER_CONFIG", QByteArray("/nonexistent/pickers.cfg"));
}

void tst_picker_files::init() {
    dir_ = std::make_unique<QTemporaryDir>();
    QVERIFY(dir_->isValid());
    QVERIFY(session_.start());
}

void tst_picker_files::cleanup() {
    session_.stop();
    dir_.reset();
}

bool tst_picker_files::restore(const QByteArray& tabStream) {
    const host_status status = session_.host->executeCommand(
        QStringLiteral("TalvoraPicker restore \"%1\"").arg(scene_text(tabStream)));
    session_.host->processIdle();
    return status.ok();
}

void tst_picker_files::open_several_files_data() {
    QTest::addColumn<QList<QByteArray>>("contents");
    QTest::addColumn<int>("bad");
    QTest::addColumn<bool>("missing");
    QTest::addColumn<int>("answer");
    QTest::addColumn<QString>("message");
    QTest::addColumn<int>("buttons");
    QTest::addColumn<QStringList>("titles");

    const QByteArray a = laid_file(4, tab_titled(QStringLiteral("A")));
    const QByteArray b = laid_file(4, tab_titled(QStringLiteral("B")));
    const QByteArray c = laid_file(4, tab_titled(QStringLiteral("C")));
    const int cancelIgnore = int(QMessageBox::Cancel | QMessageBox::Ignore);
    const QStringList ac{untitled, QStringLiteral("A"), QStringLiteral("C")};
    const QStringList onlyA{untitled, QStringLiteral("A")};
    const QStringList abc{untitled, QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C")};

    QByteArray versionZero;
    {
        QDataStream out(&versionZero, QIODevice::WriteOnly);
        out << qint32(0) << QStringLiteral("B") << QString() << qint32(0);
    }
    QByteArray futureFile;
    {
        QDataStream out(&futureFile, QIODevice::WriteOnly);
        out << qint32(5) << QStringLiteral("B") << QString() << qint32(0);
    }
    QByteArray brokenImage =
        laid_file(4, {QStringLiteral("B"), QStringLiteral("12"), png_of(Qt::red), {}});
    brokenImage.chop(20);
    QByteArray shortButtons =
        laid_file(4, {QStringLiteral("B"), QString(), QByteArray(), {{QStringLiteral("x")}, {}}});
    shortButtons.chop(6);

    QTest::newRow("second unreadable, ignore")
        << QList<QByteArray>{a, b, c} << 1 << true << int(QMessageBox::Ignore) << open_failure
        << cancelIgnore << ac;
    QTest::newRow("second unreadable, cancel")
        << QList<QByteArray>{a, b, c} << 1 << true << int(QMessageBox::Cancel) << open_failure
        << cancelIgnore << onlyA;
    QTest::newRow("last unreadable")
        << QList<QByteArray>{a, b, c} << 2 << true << int(QMessageBox::Ok) << open_failure
        << int(QMessageBox::Ok)
        << (QStringList{untitled, QStringLiteral("A"), QStringLiteral("B")});
    QTest::newRow("empty file") << QList<QByteArray>{a, QByteArray(), c} << 1 << false
                                << int(QMessageBox::Ignore) << not_a_picker << cancelIgnore << ac;
    QTest::newRow("JSON file, cancel")
        << QList<QByteArray>{a, QByteArray("{\"title\": \"B\", \"buttons\": []}\n"), c} << 1
        << false << int(QMessageBox::Cancel) << not_a_picker << cancelIgnore << onlyA;
    QTest::newRow("format version 0")
        << QList<QByteArray>{a, versionZero, c} << 1 << false << int(QMessageBox::Ignore)
        << not_a_picker << cancelIgnore << ac;
    QTest::newRow("background image cut short")
        << QList<QByteArray>{a, brokenImage, c} << 1 << false << int(QMessageBox::Ignore)
        << not_a_picker << cancelIgnore << ac;
    QTest::newRow("buttons cut short open")
        << QList<QByteArray>{a, shortButtons, c} << -1 << false << 0 << QString() << 0 << abc;
    QTest::newRow("format version 5 opens")
        << QList<QByteArray>{a, futureFile, c} << -1 << false << 0 << QString() << 0 << abc;
}

void tst_picker_files::open_several_files() {
    QFETCH(QList<QByteArray>, contents);
    QFETCH(int, bad);
    QFETCH(bool, missing);
    QFETCH(int, answer);
    QFETCH(QString, message);
    QFETCH(int, buttons);
    QFETCH(QStringList, titles);

    QStringList paths;
    for (int i = 0; i < contents.size(); ++i) {
        paths.append(dir_->filePath(QStringLiteral("picker %1.pkr").arg(i)));
        if (!(missing && i == bad))
            QVERIFY(write_file(paths.last(), contents.at(i)));
    }
    scripted_prompts prompts;
    prompts.answers.append(static_cast<QMessageBox::StandardButton>(answer));

    QVERIFY(session_.host->executeCommand(run_open(paths)));

    QCOMPARE(tab_titles(*session_.window()), titles);
    if (bad < 0) {
        QCOMPARE(prompts.messages.size(), 0);
    } else {
        QCOMPARE(prompts.messages.size(), 1);
        const picker_message& shown = prompts.messages.first();
        QCOMPARE(shown.icon, QMessageBox::Critical);
        QCOMPARE(shown.parent, static_cast<QWidget*>(session_.window()));
        QCOMPARE(shown.title, QStringLiteral("Open Failed"));
        QCOMPARE(shown.text, message.arg(QDir::toNativeSeparators(paths.at(bad))));
        QCOMPARE(int(shown.buttons), buttons);
    }
    const int last = titles.size() - 1;
    QCOMPARE(session_.tabs()->currentIndex(), last);
    QCOMPARE(session_.view(last)->path(), paths.at(titles.last().at(0).unicode() - 'A'));
    QCOMPARE(session_.view(1)->buttons()->size(), 1);
    // Each opened tab asks for its namespaces to be bound to the scene's.
    QCOMPARE(session_.host->pendingMel().count(
                 QStringLiteral("TalvoraPicker \"bind\" `picker_ListNamespaces`;")),
             titles.size() - 1);

    session_.window()->flushSceneData();
    session_.host->processIdle();
    picker_tab_set stored;
    QByteArray bytes = session_.storedTabs();
    QDataStream in(&bytes, QIODevice::ReadOnly);
    QVERIFY(readTabStream(in, stored).ok());
    QCOMPARE(stored.tabs.size(), titles.size());
    QCOMPARE(stored.tabs.last().title, titles.last());
}

void tst_picker_files::untitled_save_asks_for_a_name_once() {
    scripted_prompts prompts;
    const QString path = dir_->filePath(QStringLiteral("body.pkr"));
    prompts.files.append(QStringList{path});
    const QStringList names{QStringLiteral("hero:L_hand_ctrl"), QStringLiteral("hero:root_ctrl")};
    session_.view(0)->push_button(laid_button(0, names), -1);
    QAction* save = entry_of(*session_.window(), 0, QStringLiteral("Save"));

    save->trigger();
    QCOMPARE(session_.host->pendingMel(), QStringList{QStringLiteral("TalvoraPicker(\"save\");")});
    session_.host->processIdle();

    QCOMPARE(prompts.questions.size(), 1);
    const picker_file_question& asked = prompts.questions.first();
    QCOMPARE(asked.type, picker_file_question::kind::save_file);
    QCOMPARE(asked.title, QStringLiteral("Save Tab:"));
    QCOMPARE(asked.filter, QStringLiteral("Talvora Picker (*.pkr)"));
    QCOMPARE(asked.directory, QString());
    QCOMPARE(session_.view(0)->path(), path);
    QCOMPARE(read_file(path), laid_file(4, {untitled, QString(), QByteArray(), {names}}));

    // Known by name now: saved again without asking.
    session_.tabs()->setTabText(0, QStringLiteral("Body"));
    save->trigger();
    session_.host->processIdle();
    QCOMPARE(prompts.questions.size(), 1);
    QCOMPARE(read_file(path),
             laid_file(4, {QStringLiteral("Body"), QString(), QByteArray(), {names}}));
    QVERIFY(prompts.messages.isEmpty());
}

void tst_picker_files::save_as_data() {
    QTest::addColumn<int>("target");
    QTest::newRow("cancelled") << int(cancelled);
    QTest::newRow("new name") << int(fresh_name);
    QTest::newRow("folder missing") << int(missing_folder);
    QTest::newRow("disk full over the old file") << int(disk_full);
}

void tst_picker_files::save_as() {
    QFETCH(int, target);

    const QString oldPath = dir_->filePath(QStringLiteral("old.pkr"));
    const QByteArray oldBytes = laid_file(4, tab_titled(QStringLiteral("Old")));
    QVERIFY(write_file(oldPath, oldBytes));
    QVERIFY(session_.host->executeCommand(run_open({oldPath})));
    picker_view* view = session_.view(1);
    QCOMPARE(view->path(), oldPath);
    // Far larger than the disk-full row lets through.
    view->setBackground(QStringLiteral("77"), noise(128));

    QString chosen;
    if (target == fresh_name)
        chosen = dir_->filePath(QStringLiteral("new.pkr"));
    else if (target == missing_folder)
        chosen = dir_->filePath(QStringLiteral("no such folder/new.pkr"));
    else if (target == disk_full)
        chosen = oldPath;
    scripted_prompts prompts;
    prompts.files.append(chosen.isEmpty() ? QStringList() : QStringList{chosen});
    prompts.answers.append(QMessageBox::Ok);
    {
        std::unique_ptr<file_size_limit> limit;
        if (target == disk_full)
            limit = std::make_unique<file_size_limit>(oldBytes.size() + 4096);
        QVERIFY(session_.host->executeCommand(QStringLiteral("TalvoraPicker saveas")));
    }

    QCOMPARE(prompts.questions.size(), 1);
    QCOMPARE(prompts.questions.first().directory, oldPath);
    QCOMPARE(read_file(oldPath), oldBytes);
    const bool failed = target == missing_folder || target == disk_full;
    QCOMPARE(prompts.messages.size(), failed ? 1 : 0);
    if (failed) {
        QCOMPARE(prompts.messages.first().icon, QMessageBox::Critical);
        QCOMPARE(prompts.messages.first().title, QStringLiteral("Save Failed"));
        QCOMPARE(prompts.messages.first().text, save_failure.arg(chosen));
        QCOMPARE(view->path(), QString());
        QCOMPARE(QDir(dir_->path()).entryList(QDir::Files), QStringList{QStringLiteral("old.pkr")});
    } else if (target == fresh_name) {
        QCOMPARE(view->path(), chosen);
        picker_tab_record saved;
        QVERIFY(readPickerFile(read_file(chosen), saved).ok());
        QCOMPARE(saved.backgroundKey, QStringLiteral("77"));
        QPixmap image;
        QVERIFY(image.loadFromData(saved.backgroundPng, "PNG"));
        QCOMPARE(pixel_of(image, 5, 9), pixel_of(view->background(), 5, 9));
    } else {
        QCOMPARE(view->path(), oldPath);
    }
}

void tst_picker_files::close_tab_keeps_a_shared_image_data() {
    QTest::addColumn<QStringList>("keys");
    QTest::addColumn<int>("closed");
    QTest::addColumn<bool>("kept");

    const QString k = QStringLiteral("111");
    const QString l = QStringLiteral("222");
    QTest::newRow("shared further on") << QStringList{k, l, k} << 0 << true;
    QTest::newRow("shared before") << QStringList{k, l, k} << 2 << true;
    QTest::newRow("only the next tab shares it") << QStringList{k, k, l} << 0 << false;
    QTest::newRow("not shared") << QStringList{l, k} << 1 << false;
}

void tst_picker_files::close_tab_keeps_a_shared_image() {
    QFETCH(QStringList, keys);
    QFETCH(int, closed);
    QFETCH(bool, kept);

    QList<laid_tab> tabs;
    for (const QString& key : keys)
        tabs.append({QStringLiteral("T%1").arg(tabs.size()), key, png_of(Qt::green), {}});
    QVERIFY(restore(laid_tabs(4, 0, tabs)));
    const QString entry = QStringLiteral("TalvoraPickerImage_") + keys.at(closed);
    QVERIFY(session_.host->hasFileInfo(entry));
    scripted_prompts prompts;
    prompts.answers.append(QMessageBox::Ok);

    session_.window()->close_one(closed);
    session_.window()->flushSceneData();
    session_.host->processIdle();

    QCOMPARE(prompts.messages.size(), 1);
    QCOMPARE(session_.host->hasFileInfo(entry), kept);
    picker_tab_set stored;
    QByteArray bytes = session_.storedTabs();
    QDataStream in(&bytes, QIODevice::ReadOnly);
    QVERIFY(readTabStream(in, stored).ok());
    QCOMPARE(stored.tabs.size(), keys.size() - 1);
}

void tst_picker_files::newer_tab_stream_warns_and_keeps_the_tabs() {
    scripted_prompts prompts;
    prompts.answers.append(QMessageBox::Ok);
    QVERIFY(restore(laid_tabs(5, 0, {tab_titled(QStringLiteral("Future"))})));

    QCOMPARE(prompts.messages.size(), 1);
    const picker_message& shown = prompts.messages.first();
    QCOMPARE(shown.icon, QMessageBox::Warning);
    QCOMPARE(shown.parent, static_cast<QWidget*>(nullptr));
    QCOMPARE(shown.title, QStringLiteral("Warning"));
    QCOMPARE(shown.text,
             QStringLiteral("The scene file contains data\nin a format (5) more recent than the "
                            "version of the picker\ninstalled in this machine can understand.  "
                            "Please update\nthe picker, and try again.\n"));
    QCOMPARE(int(shown.buttons), int(QMessageBox::Ok));
    QCOMPARE(tab_titles(*session_.window()), QStringList{untitled});
}

void tst_picker_files::current_tab_of_the_stream_data() {
    QTest::addColumn<int>("stored");
    QTest::addColumn<int>("current");
    QTest::newRow("second") << 1 << 1;
    QTest::newRow("minus one") << -1 << 0;
    QTest::newRow("one past the end") << 2 << 0;
}

void tst_picker_files::current_tab_of_the_stream() {
    QFETCH(int, stored);
    QFETCH(int, current);
    QVERIFY(restore(
        laid_tabs(4, stored, {tab_titled(QStringLiteral("A")), tab_titled(QStringLiteral("B"))})));
    QCOMPARE(tab_titles(*session_.window()),
             (QStringList{QStringLiteral("A"), QStringLiteral("B")}));
    QCOMPARE(session_.tabs()->currentIndex(), current);
}

QTEST_MAIN(tst_picker_files)
#include "tst_picker_files.moc"

#include "files_test_support.h"
#include "picker_mel_quote.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <sys/resource.h>

namespace {

const QString untitled = QStringLiteral("Untitled");

laid_tab tab_titled(const QString& title) {
    return {title, QString(), QByteArray(), {{root}}};
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

} // namespace

class tst_picker_files : public QObject {
    Q_OBJECT

    picker_session session_;
    std::unique_ptr<QTemporaryDir> dir_;

private slots:
    void init() {
        dir_ = std::make_unique<QTemporaryDir>();
        QVERIFY(dir_->isValid());
        QVERIFY(session_.start());
    }
    void cleanup() {
        session_.stop();
        dir_.reset();
    }

    // A, a broken second file (absent: null), C; the answer to the one message decides on C.
    void open_three_with_the_second_broken_data() {
        QTest::addColumn<QByteArray>("second");
        QTest::addColumn<int>("answer");
        QTest::addColumn<QStringList>("titles");

        const QStringList ac{untitled, QStringLiteral("A"), QStringLiteral("C")};
        const QStringList a{untitled, QStringLiteral("A")};
        QTest::newRow("unreadable, ignore") << QByteArray() << int(QMessageBox::Ignore) << ac;
        QTest::newRow("unreadable, cancel") << QByteArray() << int(QMessageBox::Cancel) << a;
        QTest::newRow("JSON, ignore") << QByteArray("{\"title\": \"B\", \"buttons\": []}\n")
                                      << int(QMessageBox::Ignore) << ac;
    }
    void open_three_with_the_second_broken() {
        QFETCH(QByteArray, second);
        QFETCH(int, answer);
        QFETCH(QStringList, titles);

        const QStringList paths{dir_->filePath(QStringLiteral("a.pkr")),
                                dir_->filePath(QStringLiteral("b.pkr")),
                                dir_->filePath(QStringLiteral("c.pkr"))};
        QVERIFY(write_file(paths.at(0), laid_file(4, tab_titled(QStringLiteral("A")))));
        QVERIFY(second.isNull() || write_file(paths.at(1), second));
        QVERIFY(write_file(paths.at(2), laid_file(4, tab_titled(QStringLiteral("C")))));
        scripted_prompts prompts;
        prompts.answers.append(static_cast<QMessageBox::StandardButton>(answer));

        QVERIFY(session_.host->executeCommand(run_open(paths)));

        QCOMPARE(tab_titles(*session_.window()), titles);
        QCOMPARE(prompts.messages.size(), 1);
        const picker_message& shown = prompts.messages.first();
        QCOMPARE(shown.title, QStringLiteral("Open Failed"));
        const QString text =
            second.isNull() ? QStringLiteral("Could not open the file \"%1\".\n\nPlease check the "
                                             "file permissions and try again.")
                            : QStringLiteral("The file \"%1\" is not a picker file.");
        QCOMPARE(shown.text, text.arg(QDir::toNativeSeparators(paths.at(1))));
        QCOMPARE(int(shown.buttons), int(QMessageBox::Cancel | QMessageBox::Ignore));
        const int last = titles.size() - 1;
        QCOMPARE(session_.tabs()->currentIndex(), last);
        QCOMPARE(session_.view(last)->path(), paths.at(last == 1 ? 0 : 2));
        // Each opened tab asks for its namespaces to be bound to the scene's.
        QCOMPARE(session_.host->pendingMel().count(
                     QStringLiteral("TalvoraPicker \"bind\" `picker_ListNamespaces`;")),
                 last);
        session_.writeScene();
        QCOMPARE(session_.storedSet().tabs.size(), titles.size());
    }

    void untitled_save_asks_for_a_name_once() {
        scripted_prompts prompts;
        const QString path = dir_->filePath(QStringLiteral("body.pkr"));
        prompts.files.append(QStringList{path});
        const QStringList names{left_hand, root};
        QVERIFY(session_.restore(laid_tabs(4, 0, {{untitled, QString(), QByteArray(), {names}}})));
        QAction* save = entry_of(*session_.window(), 0, QStringLiteral("Save"));

        save->trigger();
        QCOMPARE(session_.host->pendingMel(),
                 QStringList{QStringLiteral("TalvoraPicker(\"save\");")});
        session_.host->processIdle();

        QCOMPARE(prompts.questions.size(), 1);
        QCOMPARE(prompts.questions.first().title, QStringLiteral("Save Tab:"));
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

    // A background of noise makes the new file far larger than the disk lets through.
    void failed_save_as_keeps_the_old_file() {
        const QString path = dir_->filePath(QStringLiteral("old.pkr"));
        const QByteArray oldBytes = laid_file(4, tab_titled(QStringLiteral("Old")));
        QVERIFY(write_file(path, oldBytes));
        QVERIFY(session_.host->executeCommand(run_open({path})));
        QImage noise(128, 128, QImage::Format_RGB32);
        quint32 state = 12345;
        for (int i = 0; i < 128 * 128; ++i)
            noise.setPixel(i % 128, i / 128, (state = state * 1664525u + 1013904223u) >> 8);
        session_.view(1)->setBackground(QStringLiteral("77"), QPixmap::fromImage(noise));
        scripted_prompts prompts;
        prompts.files.append(QStringList{path});
        prompts.answers.append(QMessageBox::Ok);
        {
            const file_size_limit limit(oldBytes.size() + 4096);
            QVERIFY(session_.host->executeCommand(QStringLiteral("TalvoraPicker saveas")));
        }

        QCOMPARE(prompts.questions.size(), 1);
        QCOMPARE(read_file(path), oldBytes);
        QCOMPARE(prompts.messages.size(), 1);
        QCOMPARE(prompts.messages.first().title, QStringLiteral("Save Failed"));
        QCOMPARE(prompts.messages.first().text,
                 QStringLiteral("Could not open the file \"%1\" for writing.\n\nPlease check that "
                                "this file is not locked and that you have the proper permissions "
                                "and try again.")
                     .arg(path));
        QCOMPARE(session_.view(1)->path(), QString());
    }

    void close_tab_keeps_a_shared_image_data() {
        QTest::addColumn<QStringList>("keys");
        QTest::addColumn<int>("closed");
        QTest::addColumn<bool>("kept");

        const QString k = QStringLiteral("111");
        const QString l = QStringLiteral("222");
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
            tabs.append({QStringLiteral("T%1").arg(tabs.size()), key, png_of(Qt::green), {}});
        QVERIFY(session_.restore(laid_tabs(4, 0, tabs)));
        const QString entry = QStringLiteral("TalvoraPickerImage_") + keys.at(closed);
        QVERIFY(session_.host->hasFileInfo(entry));
        scripted_prompts prompts;
        prompts.answers.append(QMessageBox::Ok);

        session_.window()->close_one(closed);
        session_.window()->flushSceneData();
        session_.host->processIdle();

        QCOMPARE(prompts.messages.size(), 1);
        QCOMPARE(session_.host->hasFileInfo(entry), kept);
        QCOMPARE(session_.storedSet().tabs.size(), keys.size() - 1);
    }

    // A newer stream warns and keeps the tabs shown; a current tab out of range is the first.
    void restored_stream_data() {
        QTest::addColumn<qint32>("version");
        QTest::addColumn<qint32>("current");
        QTest::addColumn<QStringList>("titles");

        const QStringList ab{QStringLiteral("A"), QStringLiteral("B")};
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

        QVERIFY(session_.restore(laid_tabs(
            version, current, {tab_titled(QStringLiteral("A")), tab_titled(QStringLiteral("B"))})));

        QCOMPARE(tab_titles(*session_.window()), titles);
        QCOMPARE(session_.tabs()->currentIndex(), 0);
        QCOMPARE(prompts.messages.size(), version > 4 ? 1 : 0);
        if (version > 4)
            QCOMPARE(
                prompts.messages.first().text,
                QStringLiteral("The scene file contains data\nin a format (5) more recent "
                               "than the version of the picker\ninstalled in this machine "
                               "can understand.  Please update\nthe picker, and try again.\n"));
    }
};

QTEST_MAIN(tst_picker_files)
#include "tst_picker_files.moc"

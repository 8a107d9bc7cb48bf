#include "picker_config.h"
#include "picker_window.h"
#include "ui_test_support.h"

#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

namespace {

// Everything the File menu holds after "Exit Picker", separators written as "-".
QStringList entries_after_exit(const picker_window& window) {
    QStringList entries;
    bool past = false;
    const QList<QAction*> actions = menu_of(window, 0)->actions();
    for (const QAction* action : actions) {
        if (past)
            entries.append(action->isSeparator() ? QStringLiteral("-") : action->text());
        past = past || action->text() == QLatin1String("Exit Picker");
    }
    return entries;
}

} // namespace

class tst_picker_config : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void tokenize_line_data();
    void tokenize_line();
    void parse_file_data();
    void parse_file();
    void window_reads_the_configured_file();

private:
    QString write_config(const QString& name, const QByteArray& text);
    QTemporaryDir dir_;
};

void tst_picker_config::initTestCase() {
    QStandardPaths::setTestModeEnabled(true);
    QVERIFY(dir_.isValid());
    qputenv("TALVORA_PICKER_CONFIG", dir_.filePath(QStringLiteral("absent.cfg")).toUtf8());
}

QString tst_picker_config::write_config(const QString& name, const QByteArray& text) {
    const QString path = dir_.filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        return QString();
    return path;
}

void tst_picker_config::tokenize_line_data() {
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("line");
    QTest::addColumn<QStringList>("expected");

    const auto all = -1;
    QTest::newRow("comment line") << all << QStringLiteral("   # Main = /a/b.pkr") << QStringList();
    QTest::newRow("spaced with trailing comment")
        << all << QStringLiteral("Main = /a/b.pkr # old")
        << QStringList{QStringLiteral("Main"), QStringLiteral("="), QStringLiteral("/a/b.pkr")};
    QTest::newRow("blank after equals gives four")
        << all << QStringLiteral("Main= /a/b.pkr")
        << QStringList{QStringLiteral("Main"), QStringLiteral("="), QString(),
                       QStringLiteral("/a/b.pkr")};
    QTest::newRow("quoted name, single-quoted backslash path")
        << all << QStringLiteral("\"Face rig\" = 'C:\\rigs\\face.pkr'")
        << QStringList{QStringLiteral("Face rig"), QStringLiteral("="),
                       QStringLiteral("C:\\rigs\\face.pkr")};
    QTest::newRow("quotes keep blanks, equals and hash")
        << all << QStringLiteral("\"a = #b\"") << QStringList{QStringLiteral("a = #b")};
    QTest::newRow("unterminated double quote keeps its text")
        << all << QStringLiteral("Main = \"/a/b c")
        << QStringList{QStringLiteral("Main"), QStringLiteral("="), QStringLiteral("/a/b c")};
    QTest::newRow("unterminated empty quote yields nothing")
        << all << QStringLiteral("Main = '")
        << QStringList{QStringLiteral("Main"), QStringLiteral("=")};
    QTest::newRow("count stops the scan")
        << 4 << QStringLiteral("Main=/a/b.pkr") << QStringList{QStringLiteral("Main")};
}

void tst_picker_config::tokenize_line() {
    QFETCH(int, count);
    QFETCH(QString, line);
    QFETCH(QStringList, expected);

    // Tokens are appended to what the list already holds.
    QStringList tokens{QStringLiteral("kept")};
    QCOMPARE(tokenize(count < 0 ? static_cast<int>(line.size()) : count, line, tokens), 0);
    QCOMPARE(tokens, QStringList{QStringLiteral("kept")} + expected);
}

void tst_picker_config::parse_file_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QStringList>("menu");
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QStringList>("paths");

    QTest::newRow("separator added once")
        << QByteArray("A=/a.pkr\n# note\nB = /b.pkr\n")
        << QStringList{QStringLiteral("-"), QStringLiteral("A"), QStringLiteral("B")}
        << QStringList{QStringLiteral("A"), QStringLiteral("B")}
        << QStringList{QStringLiteral("/a.pkr"), QStringLiteral("/b.pkr")};
    QTest::newRow("duplicate name replaces the path, adds an entry")
        << QByteArray("Main = /old.pkr\nMain = /new.pkr\n")
        << QStringList{QStringLiteral("-"), QStringLiteral("Main"), QStringLiteral("Main")}
        << QStringList{QStringLiteral("Main")} << QStringList{QStringLiteral("/new.pkr")};
    QTest::newRow("malformed lines skipped")
        << QByteArray("Main= /a.pkr\nonly words here\n= x\n\n#\nA = b = c\n") << QStringList()
        << QStringList() << QStringList();
    QTest::newRow("backslashes become forward slashes")
        << QByteArray("\"Face rig\" = 'C:\\rigs\\face.pkr'\r\n")
        << QStringList{QStringLiteral("-"), QStringLiteral("Face rig")}
        << QStringList{QStringLiteral("Face rig")}
        << QStringList{QStringLiteral("C:/rigs/face.pkr")};
}

void tst_picker_config::parse_file() {
    QFETCH(QByteArray, text);
    QFETCH(QStringList, menu);
    QFETCH(QStringList, names);
    QFETCH(QStringList, paths);

    const QString path = write_config(QStringLiteral("parse.cfg"), text);
    QVERIFY(!path.isEmpty());
    picker_window window(nullptr);
    window.parse_picker_config(path);
    QCOMPARE(entries_after_exit(window), menu);
    QCOMPARE(window.recent().keys(), names);
    QCOMPARE(window.recent().values(), paths);
}

void tst_picker_config::window_reads_the_configured_file() {
    const QString path = write_config(QStringLiteral("start.cfg"), "Hero = /rigs/hero.pkr\n");
    QVERIFY(!path.isEmpty());
    qputenv("TALVORA_PICKER_CONFIG", path.toUtf8());
    const picker_window window(nullptr);
    qputenv("TALVORA_PICKER_CONFIG", dir_.filePath(QStringLiteral("absent.cfg")).toUtf8());
    QCOMPARE(entries_after_exit(window),
             (QStringList{QStringLiteral("-"), QStringLiteral("Hero")}));
    QCOMPARE(window.recent().value(QStringLiteral("Hero")), QStringLiteral("/rigs/hero.pkr"));
    const QList<QAction*> own = window.actions();
    QVERIFY(std::any_of(own.begin(), own.end(), [](const QAction* action) {
        return action->text() == QLatin1String("Hero");
    }));
}

QTEST_MAIN(tst_picker_config)
#include "tst_picker_config.moc"

#include "../support/picker_test_kit.h"
#include "picker_config.h"
#include "picker_window.h"

#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

class tst_picker_config : public QObject {
    Q_OBJECT

    QTemporaryDir dir_;

private slots:
    void initTestCase() {
        QStandardPaths::setTestModeEnabled(true);
        QVERIFY(dir_.isValid());
    }

    void tokenize_line_data() {
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("line");
        QTest::addColumn<QStringList>("expected");

        const QString main = QStringLiteral("Main");
        const QString eq = QStringLiteral("=");
        QTest::newRow("blank after equals gives four, trailing comment")
            << -1 << QStringLiteral("Main= /a/b.pkr # old")
            << QStringList{main, eq, QString(), QStringLiteral("/a/b.pkr")};
        QTest::newRow("quotes keep blanks, equals, hash and backslashes")
            << -1 << QStringLiteral("\"a = #b\" = 'C:\\rigs\\face.pkr'")
            << QStringList{QStringLiteral("a = #b"), eq, QStringLiteral("C:\\rigs\\face.pkr")};
        QTest::newRow("unterminated double quote keeps its text")
            << -1 << QStringLiteral("Main = \"/a/b c")
            << QStringList{main, eq, QStringLiteral("/a/b c")};
        QTest::newRow("count stops the scan")
            << 4 << QStringLiteral("Main=/a/b.pkr") << QStringList{main};
    }

    void tokenize_line() {
        QFETCH(int, count);
        QFETCH(QString, line);
        QFETCH(QStringList, expected);

        // Tokens are appended to what the list already holds.
        QStringList tokens{QStringLiteral("kept")};
        QCOMPARE(tokenize(count < 0 ? static_cast<int>(line.size()) : count, line, tokens), 0);
        QCOMPARE(tokens, QStringList{QStringLiteral("kept")} + expected);
    }

    void window_reads_the_configured_file_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QStringList>("menu");
        QTest::addColumn<QStringList>("paths");

        QTest::newRow("separator once, backslashes turned")
            << QByteArray("A=/a.pkr\n# note\n\"Face rig\" = 'C:\\rigs\\face.pkr'\r\n")
            << QStringList{QStringLiteral("-"), QStringLiteral("A"), QStringLiteral("Face rig")}
            << QStringList{QStringLiteral("/a.pkr"), QStringLiteral("C:/rigs/face.pkr")};
        QTest::newRow("duplicate name replaces the path, adds an entry")
            << QByteArray("Main = /old.pkr\nMain = /new.pkr\n")
            << QStringList{QStringLiteral("-"), QStringLiteral("Main"), QStringLiteral("Main")}
            << QStringList{QStringLiteral("/new.pkr")};
        QTest::newRow("malformed lines skipped")
            << QByteArray("Main= /a.pkr\nonly words here\n= x\n\n#\nA = b = c\n") << QStringList()
            << QStringList();
    }

    void window_reads_the_configured_file() {
        QFETCH(QByteArray, text);
        QFETCH(QStringList, menu);
        QFETCH(QStringList, paths);

        const QString path = dir_.filePath(QStringLiteral("pickers.cfg"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        QCOMPARE(file.write(text), text.size());
        file.close();
        qputenv("TALVORA_PICKER_CONFIG", path.toUtf8());
        const picker_window window(nullptr);

        // Everything the File menu holds after "Exit Picker", separators written as "-".
        QStringList entries;
        bool past = false;
        const QList<QAction*> actions =
            window.findChild<QMenuBar*>()->actions().at(0)->menu()->actions();
        for (const QAction* action : actions) {
            if (past)
                entries.append(action->isSeparator() ? QStringLiteral("-") : action->text());
            past = past || action->text() == QLatin1String("Exit Picker");
        }
        QCOMPARE(entries, menu);
        QCOMPARE(window.recent().values(), paths);
    }
};

QTEST_MAIN(tst_picker_config)
#include "tst_picker_config.moc"

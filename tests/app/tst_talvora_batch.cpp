#include <QProcess>
#include <QtTest>

// The program as a pipeline runs it: exit codes and what it prints.
class tst_talvora_batch : public QObject {
    Q_OBJECT
    struct outcome {
        int exitCode = -1;
        QString out;
        QString err;
    };
    const QString demo_ = QStringLiteral(TALVORA_PICKER_DEMO);

    outcome talvora(const QStringList& arguments) {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        // Batch mode must need no display of any kind.
        environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
        environment.remove(QStringLiteral("DISPLAY"));
        environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(TALVORA_PICKER), expand(arguments));
        if (!process.waitForFinished(60000))
            return {};
        return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
                QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }

    QStringList expand(const QStringList& arguments) const {
        QStringList expanded;
        for (QString argument : arguments)
            expanded.append(argument.replace(QLatin1String("{demo}"), demo_));
        return expanded;
    }

private slots:
    void run_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("out");
        QTest::addColumn<QString>("err");
        const QString batch = QStringLiteral("--batch");
        const QString c = QStringLiteral("-c");

        QTest::newRow("statements in order, results printed")
            << QStringList{batch, c, QStringLiteral("fileInfo \"k\" \"v\""), c,
                           QStringLiteral("fileInfo -q \"k\"")}
            << 0 << QStringLiteral("// Result: v //") << QString();
        QTest::newRow("a failing statement ends the run")
            << QStringList{batch,
                           c,
                           QStringLiteral("fileInfo \"k\" \"v\""),
                           c,
                           QStringLiteral("select -r \"nobody\""),
                           c,
                           QStringLiteral("fileInfo -q \"k\"")}
            << 1 << QString() << QStringLiteral("No object matches name: nobody");
        QTest::newRow("a question nobody can answer takes its default")
            << QStringList{batch, c, QStringLiteral("TalvoraPicker open \"{demo}/demo.pkr\"")} << 0
            << QString() << QStringLiteral("Choose Namespace: cancelled in batch mode");
    }

    void run() {
        QFETCH(QStringList, arguments);
        QFETCH(int, exitCode);
        QFETCH(QString, out);
        QFETCH(QString, err);
        const outcome result = talvora(arguments);
        QCOMPARE(result.exitCode, exitCode);
        QVERIFY2(result.out.contains(expand({out}).value(0)), qPrintable(result.out));
        QVERIFY2(result.err.contains(expand({err}).value(0)), qPrintable(result.err));
        if (exitCode != 0)
            QVERIFY2(!result.out.contains(QLatin1String("// Result: v //")),
                     qPrintable(result.out));
    }
};

QTEST_GUILESS_MAIN(tst_talvora_batch)
#include "tst_talvora_batch.moc"

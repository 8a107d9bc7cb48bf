#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

// The program as a pipeline runs it: exit codes, what it prints, and the scene it leaves.
class tst_talvora_batch : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void run_data();
    void run();
    void pickerStoredInSavedScene();

private:
    struct outcome {
        int exitCode = -1;
        QString out;
        QString err;
    };
    outcome talvora(const QStringList& arguments);
    QStringList expand(const QStringList& arguments) const;

    QTemporaryDir dir_;
    const QString demo_ = QStringLiteral(TALVORA_PICKER_DEMO);
};

void tst_talvora_batch::initTestCase() {
    QVERIFY(dir_.isValid());
    QFile script(dir_.filePath(QStringLiteral("two.mel")));
    QVERIFY(script.open(QIODevice::WriteOnly));
    script.write("fileInfo \"from\" \"script\";\nfileInfo -q \"from\";\n");
}

tst_talvora_batch::outcome tst_talvora_batch::talvora(const QStringList& arguments) {
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

QStringList tst_talvora_batch::expand(const QStringList& arguments) const {
    QStringList expanded;
    for (QString argument : arguments)
        expanded.append(argument.replace(QLatin1String("{demo}"), demo_)
                            .replace(QLatin1String("{tmp}"), dir_.path()));
    return expanded;
}

void tst_talvora_batch::run_data() {
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
    QTest::newRow("the script runs after -c")
        << QStringList{batch, c, QStringLiteral("fileInfo \"from\" \"c\""),
                       QStringLiteral("--script"), QStringLiteral("{tmp}/two.mel")}
        << 0 << QStringLiteral("// Result: script //") << QString();
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
    QTest::newRow("an unreadable script")
        << QStringList{batch, QStringLiteral("--script"), QStringLiteral("{tmp}/none.mel")} << 1
        << QString() << QStringLiteral("cannot read the script {tmp}/none.mel");
    QTest::newRow("a scene that is not there")
        << QStringList{batch, QStringLiteral("{tmp}/none.ma")} << 1 << QString()
        << QStringLiteral("{tmp}/none.ma");
    QTest::newRow("-c outside batch mode") << QStringList{c, QStringLiteral("ls")} << 1 << QString()
                                           << QStringLiteral("-c and --script need --batch");
}

void tst_talvora_batch::run() {
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QFETCH(QString, out);
    QFETCH(QString, err);
    const outcome result = talvora(arguments);
    QCOMPARE(result.exitCode, exitCode);
    QVERIFY2(result.out.contains(expand({out}).value(0)), qPrintable(result.out));
    QVERIFY2(result.err.contains(expand({err}).value(0)), qPrintable(result.err));
    if (exitCode != 0)
        QVERIFY2(!result.out.contains(QLatin1String("// Result: v //")), qPrintable(result.out));
}

// What a pipeline does with it: a picker put into a scene, the scene saved, and the picker there
// when the saved scene is opened again.
void tst_talvora_batch::pickerStoredInSavedScene() {
    const QString saved = dir_.filePath(QStringLiteral("stored.ma"));
    const outcome stored =
        talvora({QStringLiteral("--batch"), QStringLiteral("{demo}/demo_scene.ma"),
                 QStringLiteral("-c"), QStringLiteral("TalvoraPicker open \"{demo}/demo.pkr\""),
                 QStringLiteral("-c"), QStringLiteral("file -rename \"%1\"").arg(saved),
                 QStringLiteral("-c"), QStringLiteral("file -save")});
    QVERIFY2(stored.exitCode == 0, qPrintable(stored.err));

    QProcess pkrtool;
    pkrtool.start(QStringLiteral(PKRTOOL), {QStringLiteral("scene"), saved});
    QVERIFY(pkrtool.waitForFinished(60000));
    QVERIFY2(QString::fromUtf8(pkrtool.readAllStandardOutput()).contains(QLatin1String("Biped")),
             qPrintable(QString::fromUtf8(pkrtool.readAllStandardError())));

    // Both references come back with the scene, and so does the picker entry.
    const outcome reopened =
        talvora({QStringLiteral("--batch"), saved, QStringLiteral("-c"),
                 QStringLiteral("select -r \"villain:head_ctrl\""), QStringLiteral("-c"),
                 QStringLiteral("fileInfo -q \"TalvoraPickerData\"")});
    QVERIFY2(reopened.exitCode == 0, qPrintable(reopened.err));
    QVERIFY2(reopened.out.contains(QLatin1String("// Result: AA")), qPrintable(reopened.out));
}

QTEST_GUILESS_MAIN(tst_talvora_batch)
#include "tst_talvora_batch.moc"

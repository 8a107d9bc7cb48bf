#include "pkrtool_scene.h"

#include "pkrtool_cli.h"

#include "picker_background_key.h"
#include "picker_file.h"
#include "picker_maya_ascii.h"
#include "picker_stream.h"

#include <QCommandLineParser>
#include <QDataStream>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QIODevice>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QTemporaryFile>
#include <QtEndian>

#include <cstdio>
#include <memory>
#include <vector>

namespace {

const QLatin1String picker_data_key(picker_scene_data_key);
const QLatin1String image_key_prefix(picker_scene_image_prefix);
// The longest name most file systems take, in bytes.
constexpr int file_name_bytes = 255;
// The tab data of one scene, uncompressed: far beyond any picker, short of what a small
// compressed entry could be made to claim.
constexpr quint32 tab_data_bytes = 256u << 20;

// Reads the scene file (its references are not followed) and the tabs it stores; false after
// reporting why not. A scene without pickers is no failure: it has no tabs.
bool readScenePickers(const pkrtool_run& run, const QString& path, picker_tab_set& set,
                      bool& hasPickers) {
    QByteArray bytes;
    if (!run.readInput(path, bytes))
        return false;
    picker_ma_scene scene;
    const QString shown = shownName(path);
    const picker_ma_result read = parseMayaAsciiFile(bytes, shown, scene);
    if (!read.ok()) {
        run.fail(read.error);
        return false;
    }
    // The last entry is the one Maya keeps.
    const picker_ma_statement* stored = nullptr;
    for (const picker_ma_statement& statement : scene.source.statements) {
        if (statement.type == picker_ma_statement::kind::fileInfo &&
            statement.name == picker_data_key)
            stored = &statement;
    }
    hasPickers = stored != nullptr;
    if (!hasPickers)
        return true;
    const QString where = QStringLiteral("%1:%2").arg(shown).arg(stored->line);
    const QByteArray compressed = QByteArray::fromBase64(stored->value.toLatin1());
    if (compressed.size() >= 4 &&
        qFromBigEndian<quint32>(compressed.constData()) > tab_data_bytes) {
        run.fail(QStringLiteral("%1: the stored pickers claim more than %2 bytes")
                     .arg(where)
                     .arg(tab_data_bytes));
        return false;
    }
    const QByteArray data = qUncompress(compressed);
    if (data.isEmpty()) {
        run.fail(QStringLiteral("%1: the stored pickers are not readable").arg(where));
        return false;
    }
    QDataStream stream(data);
    const picker_read_result tabs = readTabStream(stream, set);
    if (!tabs.ok()) {
        run.fail(QStringLiteral("%1: the stored pickers: %2").arg(where, tabs.error));
        return false;
    }
    return true;
}

// Whole characters from the front of text whose UTF-8 takes at most bytes.
QString fitBytes(const QString& text, int bytes) {
    QString fitted;
    int used = 0;
    for (int i = 0; i < text.size(); ++i) {
        const int length = text.at(i).isHighSurrogate() && i + 1 < text.size() ? 2 : 1;
        const QString character = text.mid(i, length);
        used += int(character.toUtf8().size());
        if (used > bytes)
            break;
        fitted += character;
        i += length - 1;
    }
    return fitted;
}

// A file name from a tab title: characters file systems refuse become '_', and the name is cut
// to what a file system takes, kept apart from the names already used.
QString fileNameFor(const QString& title, int index, QSet<QString>& used) {
    QString base = title.trimmed();
    static const QString refused = QStringLiteral("/\\:*?\"<>|");
    for (QChar& c : base) {
        if (refused.contains(c) || c.unicode() < 0x20)
            c = QLatin1Char('_');
    }
    if (base.isEmpty() || base.startsWith(QLatin1Char('.')))
        base = QStringLiteral("tab %1").arg(index + 1);
    QString name;
    for (int n = 1; name.isEmpty() || used.contains(name.toLower()); ++n) {
        const QString suffix =
            (n == 1 ? QString() : QStringLiteral(" (%1)").arg(n)) + QStringLiteral(".pkr");
        name = fitBytes(base, file_name_bytes - int(suffix.toUtf8().size())) + suffix;
    }
    used.insert(name.toLower());
    return name;
}

} // namespace

int runScene(const pkrtool_run& run, const QStringList& arguments) {
    QCommandLineParser parser;
    const QCommandLineOption json = jsonOption();
    parser.addOption(json);
    int exitCode = pkrtool_ok;
    if (!run.parse(parser, arguments, exitCode))
        return exitCode;
    picker_tab_set set;
    bool hasPickers = false;
    if (!readScenePickers(run, parser.positionalArguments().first(), set, hasPickers))
        return pkrtool_failed;
    if (parser.isSet(json)) {
        QJsonArray tabs;
        for (const picker_tab_record& tab : std::as_const(set.tabs))
            tabs.append(QJsonObject{{QStringLiteral("title"), tab.title},
                                    {QStringLiteral("backgroundKey"), tab.backgroundKey},
                                    {QStringLiteral("buttons"), tab.buttons.size()}});
        const QJsonObject object{{QStringLiteral("pickers"), hasPickers},
                                 {QStringLiteral("current"), hasPickers ? set.current : -1},
                                 {QStringLiteral("tabs"), tabs}};
        run.out().write(QJsonDocument(object).toJson(QJsonDocument::Indented));
        return pkrtool_ok;
    }
    if (!hasPickers) {
        writeText(run.out(), QStringLiteral("no pickers\n"));
        return pkrtool_ok;
    }
    QString text = QStringLiteral("tabs: %1\n").arg(set.tabs.size());
    for (int i = 0; i < set.tabs.size(); ++i) {
        const picker_tab_record& tab = set.tabs.at(i);
        // Titles are the user's text: joined, never passed through arg().
        text += QString::number(i) + QStringLiteral("  \"") + tab.title + QStringLiteral("\": ") +
                QString::number(tab.buttons.size()) + QStringLiteral(" buttons") +
                (i == set.current ? QStringLiteral(" (current)\n") : QStringLiteral("\n"));
    }
    writeText(run.out(), text);
    return pkrtool_ok;
}

int runExtract(const pkrtool_run& run, const QStringList& arguments) {
    QCommandLineParser parser;
    const QCommandLineOption output = outputOption();
    parser.addOption(output);
    int exitCode = pkrtool_ok;
    if (!run.parse(parser, arguments, exitCode))
        return exitCode;
    if (!parser.isSet(output) || parser.value(output) == QLatin1String("-"))
        return run.usage(QStringLiteral("extract needs -o DIR"));
    picker_tab_set set;
    bool hasPickers = false;
    if (!readScenePickers(run, parser.positionalArguments().first(), set, hasPickers))
        return pkrtool_failed;
    const QDir dir(parser.value(output));
    if (!dir.mkpath(QStringLiteral(".")))
        return run.fail(QStringLiteral("%1: cannot make the directory").arg(dir.path()));
    // Every file is written aside first; they take their names only once all are whole.
    QSet<QString> used;
    std::vector<std::unique_ptr<QTemporaryFile>> written;
    QStringList paths;
    for (int i = 0; i < set.tabs.size(); ++i) {
        paths.append(dir.filePath(fileNameFor(set.tabs.at(i).title, i, used)));
        auto file =
            std::make_unique<QTemporaryFile>(dir.filePath(QStringLiteral(".pkrtool-XXXXXX")));
        const QByteArray bytes = pickerFileBytes(set.tabs.at(i));
        if (!file->open() || file->write(bytes) != bytes.size() || !file->flush())
            return run.fail(QStringLiteral("cannot write '%1': %2; no tab was extracted")
                                .arg(paths.last(), file->errorString()));
        file->close();
        written.push_back(std::move(file));
    }
    for (const QString& path : std::as_const(paths)) {
        if (QFileInfo(path).isDir())
            return run.fail(
                QStringLiteral("cannot write '%1': a directory has its name; no tab was extracted")
                    .arg(path));
    }
    for (std::size_t i = 0; i < written.size(); ++i) {
        const QString& path = paths.at(int(i));
        if (std::rename(QFile::encodeName(written.at(i)->fileName()).constData(),
                        QFile::encodeName(path).constData()) != 0)
            return run.fail(QStringLiteral("cannot write '%1'").arg(path));
        written.at(i)->setAutoRemove(false);
        writeText(run.out(), path + QLatin1Char('\n'));
    }
    return pkrtool_ok;
}

int runStore(const pkrtool_run& run, const QStringList& arguments) {
    QCommandLineParser parser;
    const QCommandLineOption output = outputOption();
    const QCommandLineOption picker(QStringLiteral("picker"), QString(),
                                    QStringLiteral("FILE.pkr"));
    parser.addOptions({output, picker});
    int exitCode = pkrtool_ok;
    if (!run.parse(parser, arguments, exitCode))
        return exitCode;
    if (!parser.isSet(picker))
        return run.usage(QStringLiteral("store needs --picker FILE.pkr"));
    const QString scenePath = parser.positionalArguments().first();
    const QStringList pickers = parser.values(picker);
    if ((QStringList(scenePath) + pickers).count(QStringLiteral("-")) > 1)
        return run.usage(QStringLiteral("standard input can be read only once"));
    // Standard input cannot be rewritten in place: the result goes where a filter's goes.
    const QString target = parser.isSet(output) ? parser.value(output) : scenePath;
    if (parser.isSet(output)) {
        if (const QString same = run.sameFileMistake(scenePath, target); !same.isEmpty())
            return run.usage(same);
    }
    QByteArray bytes;
    if (!run.readInput(scenePath, bytes))
        return pkrtool_failed;
    picker_ma_scene scene;
    const picker_ma_result read = parseMayaAsciiFile(bytes, shownName(scenePath), scene);
    if (!read.ok())
        return run.fail(read.error);

    // Stored as the window stores its tabs: the tab stream, and each background on its own for
    // the image fetch that follows a restore. Two pickers may carry one key for two images; the
    // second is stored under a key of its own.
    picker_tab_set set;
    QHash<QString, QByteArray> images;
    QList<QPair<QString, QString>> entries;
    for (const QString& path : pickers) {
        picker_tab_record tab;
        qint32 version = 0;
        if (!run.readPicker(path, tab, version))
            return pkrtool_failed;
        if (!tab.backgroundKey.isEmpty() && !tab.backgroundPng.isEmpty()) {
            tab.backgroundKey = freeBackgroundKey(tab.backgroundKey, tab.backgroundPng, images);
            if (!images.contains(tab.backgroundKey)) {
                images.insert(tab.backgroundKey, tab.backgroundPng);
                QByteArray image;
                QDataStream stream(&image, QIODevice::WriteOnly);
                writeImage(stream, tab.backgroundPng);
                entries.append(
                    {image_key_prefix + tab.backgroundKey, QString::fromLatin1(image.toBase64())});
            }
        }
        set.tabs.append(tab);
    }
    QByteArray data;
    {
        QDataStream stream(&data, QIODevice::WriteOnly);
        writeTabStream(stream, set);
    }
    entries.prepend({picker_data_key, QString::fromLatin1(qCompress(data).toBase64())});
    for (auto it = scene.fileInfo.begin(); it != scene.fileInfo.end();) {
        const bool ours = it->first == picker_data_key || it->first.startsWith(image_key_prefix);
        it = ours ? scene.fileInfo.erase(it) : std::next(it);
    }
    scene.fileInfo += entries;

    QString error;
    QByteArray written;
    if (!mayaAsciiBytes(scene, QString(), written, &error))
        return run.fail(
            QStringLiteral("%1: %2; the scene is left as it was").arg(shownName(scenePath), error));
    if (!run.writeOutput(target, written))
        return pkrtool_failed;
    run.report(QStringLiteral("%1: %2 tabs stored\n")
                   .arg(target == QLatin1String("-") ? QStringLiteral("standard output") : target)
                   .arg(set.tabs.size()),
               target == QLatin1String("-"));
    return pkrtool_ok;
}

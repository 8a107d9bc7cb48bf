#include "pkrtool_scene.h"

#include "pkrtool_cli.h"
#include "pkrtool_commands.h"

#include "picker_file.h"
#include "picker_maya_ascii.h"
#include "picker_stream.h"

#include <QCommandLineParser>
#include <QDataStream>
#include <QDir>
#include <QIODevice>
#include <QSet>

namespace {

const QLatin1String picker_data_key(picker_scene_data_key);
const QLatin1String image_key_prefix(picker_scene_image_prefix);

// Reads the scene and the tabs it stores; false after reporting why not. A scene without
// pickers is no failure: it has no tabs.
bool readScenePickers(const QString& path, picker_tab_set& set, bool& hasPickers, QIODevice& err) {
    picker_ma_scene scene;
    const picker_ma_result read = readMayaAscii(path, scene);
    if (!read.ok()) {
        fail(err, read.error);
        return false;
    }
    hasPickers = false;
    for (const auto& entry : scene.fileInfo) {
        if (entry.first != picker_data_key)
            continue;
        hasPickers = true;
        const QByteArray data = qUncompress(QByteArray::fromBase64(entry.second.toLatin1()));
        if (data.isEmpty()) {
            fail(err, QStringLiteral("%1: the stored pickers are not readable").arg(path));
            return false;
        }
        QDataStream stream(data);
        const picker_read_result tabs = readTabStream(stream, set);
        if (!tabs.ok()) {
            fail(err, QStringLiteral("%1: the stored pickers: %2").arg(path, tabs.error));
            return false;
        }
    }
    return true;
}

// A file name from a tab title: characters file systems refuse become '_'.
QString fileNameFor(const QString& title, int index, QSet<QString>& used) {
    QString base = title.trimmed();
    static const QString refused = QStringLiteral("/\\:*?\"<>|");
    for (QChar& c : base) {
        if (refused.contains(c) || c.unicode() < 0x20)
            c = QLatin1Char('_');
    }
    if (base.isEmpty() || base.startsWith(QLatin1Char('.')))
        base = QStringLiteral("tab %1").arg(index + 1);
    QString name = base + QStringLiteral(".pkr");
    for (int n = 2; used.contains(name.toLower()); ++n)
        name = QStringLiteral("%1 (%2).pkr").arg(base).arg(n);
    used.insert(name.toLower());
    return name;
}

} // namespace

int runScene(const QStringList& arguments, QIODevice& out, QIODevice& err) {
    QCommandLineParser parser;
    if (!parseCommand(parser, arguments, err))
        return pkrtool_usage;
    picker_tab_set set;
    bool hasPickers = false;
    if (!readScenePickers(parser.positionalArguments().first(), set, hasPickers, err))
        return pkrtool_failed;
    if (!hasPickers) {
        writeText(out, QStringLiteral("no pickers\n"));
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
    writeText(out, text);
    return pkrtool_ok;
}

int runExtract(const QStringList& arguments, QIODevice& out, QIODevice& err) {
    QCommandLineParser parser;
    const QCommandLineOption output = outputOption();
    parser.addOption(output);
    if (!parseCommand(parser, arguments, err))
        return pkrtool_usage;
    if (!parser.isSet(output))
        return usageError(err, QStringLiteral("extract needs -o DIR"));
    picker_tab_set set;
    bool hasPickers = false;
    if (!readScenePickers(parser.positionalArguments().first(), set, hasPickers, err))
        return pkrtool_failed;
    const QDir dir(parser.value(output));
    if (!dir.mkpath(QStringLiteral(".")))
        return fail(err, QStringLiteral("%1: cannot make the directory").arg(dir.path()));
    QSet<QString> used;
    for (int i = 0; i < set.tabs.size(); ++i) {
        const QString path = dir.filePath(fileNameFor(set.tabs.at(i).title, i, used));
        if (!writeFile(path, pickerFileBytes(set.tabs.at(i)), err))
            return pkrtool_failed;
        writeText(out, path + QLatin1Char('\n'));
    }
    return pkrtool_ok;
}

int runStore(const QStringList& arguments, QIODevice& out, QIODevice& err) {
    QCommandLineParser parser;
    const QCommandLineOption output = outputOption();
    const QCommandLineOption picker(QStringLiteral("picker"), QString(),
                                    QStringLiteral("FILE.pkr"));
    parser.addOptions({output, picker});
    if (!parseCommand(parser, arguments, err))
        return pkrtool_usage;
    if (!parser.isSet(picker))
        return usageError(err, QStringLiteral("store needs --picker FILE.pkr"));
    const QString scenePath = parser.positionalArguments().first();
    picker_ma_scene scene;
    const picker_ma_result read = readMayaAscii(scenePath, scene);
    if (!read.ok())
        return fail(err, read.error);

    // Stored as the window stores its tabs: the tab stream, and each background on its own for
    // the image fetch that follows a restore.
    picker_tab_set set;
    QList<QPair<QString, QString>> entries;
    for (const QString& path : parser.values(picker)) {
        picker_tab_record tab;
        qint32 version = 0;
        if (!readPicker(path, tab, version, err))
            return pkrtool_failed;
        if (!tab.backgroundKey.isEmpty() && !tab.backgroundPng.isEmpty()) {
            QByteArray image;
            QDataStream stream(&image, QIODevice::WriteOnly);
            writeImage(stream, tab.backgroundPng);
            entries.append(
                {image_key_prefix + tab.backgroundKey, QString::fromLatin1(image.toBase64())});
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

    const QString target = parser.isSet(output) ? parser.value(output) : scenePath;
    QString error;
    if (!writeMayaAscii(target, scene, &error))
        return fail(err, error);
    writeText(out, QStringLiteral("%1: %2 tabs stored\n").arg(target).arg(set.tabs.size()));
    return pkrtool_ok;
}

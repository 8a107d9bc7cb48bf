#include "picker_maya_ascii.h"

#include "picker_file.h"
#include "picker_maya_ascii_lexer.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QRegularExpression>
#include <QSet>

namespace {

using namespace picker_ma_lexing;

// The statements of one file and what they say; its references are not followed.
struct file_contents {
    picker_ma_source source;
    QStringList nodes;
    QList<picker_ma_reference> references;
    QList<int> referenceLines;
    QList<QPair<QString, QString>> fileInfo;
};

class disk_files : public picker_ma_files {
public:
    bool isFile(const QString& path) const override { return QFileInfo(path).isFile(); }

    QString identity(const QString& path) const override {
        const QFileInfo info(path);
        const QString canonical = info.canonicalFilePath();
        return canonical.isEmpty() ? info.absoluteFilePath() : canonical;
    }

    bool read(const QString& path, qint64 limit, QByteArray& bytes, QString& error) const override {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly)) {
            error = file.errorString();
            return false;
        }
        if (!file.isSequential() && file.size() > limit) {
            error = tooLarge(limit);
            return false;
        }
        bytes = file.read(limit + 1);
        if (bytes.size() > limit) {
            error = tooLarge(limit);
            return false;
        }
        return true;
    }

    bool write(const QString& path, const QByteArray& bytes, QString& error) override {
        return writeFileWhole(path, bytes, &error);
    }

    static QString tooLarge(qint64 limit) {
        return QStringLiteral("larger than the %1 bytes a scene may read").arg(limit);
    }
};

QString cleanAbsolute(const QString& path) {
    return QDir::cleanPath(QFileInfo(path).absoluteFilePath());
}

QString flagValue(const QList<token>& tokens, const char* shortName, const char* longName) {
    for (int i = 1; i + 1 < tokens.size(); ++i) {
        const token& t = tokens.at(i);
        if (!t.quoted && (t.text == QLatin1String(shortName) || t.text == QLatin1String(longName)))
            return tokens.at(i + 1).text;
    }
    return QString();
}

bool hasFlag(const QList<token>& tokens, const char* shortName, const char* longName) {
    for (const token& t : tokens) {
        if (!t.quoted && (t.text == QLatin1String(shortName) || t.text == QLatin1String(longName)))
            return true;
    }
    return false;
}

// The namespace and the quoted path last, and where the path is written.
void readReference(const QList<token>& tokens, int textStart, picker_ma_statement& statement) {
    const token& last = tokens.last();
    statement.name = flagValue(tokens, "-ns", "-namespace");
    if (statement.name.isEmpty())
        statement.name = QFileInfo(last.text).completeBaseName();
    statement.value = last.text;
    if (last.plain) {
        statement.valueStart = last.start - textStart;
        statement.valueEnd = last.end - textStart;
    }
}

// What the statement is to the program; error text "LINE: what" when it is broken.
QString interpret(const raw_statement& s, int textStart, picker_ma_statement& statement) {
    if (s.tokens.isEmpty())
        return QString();
    const QString& command = s.tokens.first().text;
    if (command == QLatin1String("fileInfo")) {
        if (s.tokens.size() != 3 || !s.tokens.at(1).quoted || !s.tokens.at(2).quoted)
            return QStringLiteral("%1: fileInfo needs a quoted key and value").arg(s.line);
        statement.type = picker_ma_statement::kind::fileInfo;
        statement.name = s.tokens.at(1).text;
        statement.value = s.tokens.at(2).text;
    } else if (command == QLatin1String("createNode")) {
        if (s.tokens.size() < 2 || s.tokens.at(1).text.startsWith(QLatin1Char('-')))
            return QStringLiteral("%1: createNode needs a node type").arg(s.line);
        statement.name = flagValue(s.tokens, "-n", "-name");
        // A reference node is Maya's record of a "file -r" statement, which makes it again.
        if (!statement.name.isEmpty() && s.tokens.at(1).text != QLatin1String("reference"))
            statement.type = picker_ma_statement::kind::node;
    } else if (command == QLatin1String("file") && hasFlag(s.tokens, "-r", "-reference")) {
        const token& last = s.tokens.last();
        if (!last.quoted)
            return QStringLiteral("%1: file -r needs a quoted path last").arg(s.line);
        statement.type = picker_ma_statement::kind::reference;
        readReference(s.tokens, textStart, statement);
    } else if (command == QLatin1String("file") &&
               hasFlag(s.tokens, "-rdi", "-referenceDepthInfo") && s.tokens.last().quoted) {
        statement.type = picker_ma_statement::kind::referenceDepth;
        readReference(s.tokens, textStart, statement);
    } else if (command == QLatin1String("file") || command == QLatin1String("requires") ||
               command == QLatin1String("currentUnit")) {
        statement.type = picker_ma_statement::kind::prologue;
    }
    return QString();
}

bool isText(const QByteArray& bytes) {
    if (bytes.contains('\0'))
        return false;
    const QString text = QString::fromUtf8(bytes);
    return !text.contains(QChar(QChar::ReplacementCharacter)) ||
           bytes.contains(QByteArrayLiteral("\xEF\xBF\xBD"));
}

// Reads one file's statements; the error "PATH: ..." or "PATH:LINE: ...", empty on success.
QString parseContents(const QByteArray& bytes, const QString& path, file_contents& contents) {
    if (bytes.size() > picker_ma_limit::scene_bytes)
        return QStringLiteral("%1: %2").arg(path,
                                            disk_files::tooLarge(picker_ma_limit::scene_bytes));
    if (!isText(bytes))
        return QStringLiteral("%1: not a text file").arg(path);
    if (!bytes.startsWith("//Maya ASCII"))
        return QStringLiteral("%1: not a Maya ASCII scene (no \"//Maya ASCII\" header)").arg(path);
    const int firstNewline = int(bytes.indexOf('\n'));
    if (firstNewline > 0 && bytes.at(firstNewline - 1) == '\r')
        contents.source.newline = QByteArrayLiteral("\r\n");
    QSet<QString> images;
    lexer lex(bytes);
    raw_statement raw;
    QString error;
    int end = 0;
    while (lex.next(raw, error)) {
        picker_ma_statement statement;
        statement.text = bytes.mid(end, raw.end - end);
        statement.bodyStart = raw.start - end;
        statement.line = raw.line;
        error = interpret(raw, end, statement);
        if (!error.isEmpty())
            break;
        end = raw.end;
        switch (statement.type) {
        case picker_ma_statement::kind::fileInfo:
            contents.fileInfo.append(qMakePair(statement.name, statement.value));
            if (statement.name.startsWith(QLatin1String(picker_scene_image_prefix)))
                images.insert(statement.name);
            if (images.size() > picker_ma_limit::images)
                error = QStringLiteral("%1: more than %2 picker background images stored")
                            .arg(raw.line)
                            .arg(picker_ma_limit::images);
            break;
        case picker_ma_statement::kind::node:
            contents.nodes.append(statement.name);
            if (contents.nodes.size() > picker_ma_limit::nodes)
                error = QStringLiteral("%1: more than %2 nodes in one scene")
                            .arg(raw.line)
                            .arg(picker_ma_limit::nodes);
            break;
        case picker_ma_statement::kind::reference:
            contents.references.append(picker_ma_reference{statement.name, statement.value});
            contents.referenceLines.append(raw.line);
            break;
        default:
            break;
        }
        if (!error.isEmpty())
            break;
        contents.source.statements.append(statement);
    }
    if (!error.isEmpty())
        return path + QLatin1Char(':') + error;
    contents.source.tail = bytes.mid(end);
    return QString();
}

picker_ma_scene sceneOf(const file_contents& contents) {
    picker_ma_scene scene;
    scene.nodes = contents.nodes;
    scene.references = contents.references;
    scene.fileInfo = contents.fileInfo;
    scene.source = contents.source;
    return scene;
}

QString expandEnvironment(const QString& path) {
    static const QRegularExpression variable(
        QStringLiteral("\\$(?:\\{([A-Za-z_][A-Za-z0-9_]*)\\}|([A-Za-z_][A-Za-z0-9_]*))"));
    QString expanded;
    int from = 0;
    auto match = variable.globalMatch(path);
    while (match.hasNext()) {
        const QRegularExpressionMatch m = match.next();
        const QString name = m.captured(1).isEmpty() ? m.captured(2) : m.captured(1);
        expanded += path.mid(from, m.capturedStart() - from);
        expanded += QString::fromLocal8Bit(qgetenv(name.toLocal8Bit().constData()));
        from = m.capturedEnd();
    }
    return expanded + path.mid(from);
}

// A problem with one reference: a missing file is a warning, anything else an error.
struct load_problem {
    load_problem() = default;
    load_problem(const QString& text, bool isMissing = false, const QString& tellOnce = {})
        : message(text), missing(isMissing), once(tellOnce) {}

    QString message;
    bool missing = false;
    // The same file missing under the same namespace is told once, wherever it is referenced.
    QString once;
    bool isEmpty() const { return message.isEmpty(); }
};

// Follows references depth first, each file read once however often it is referenced, within
// the scene's limits; what was loaded before a limit stays.
class reference_loader {
public:
    reference_loader(picker_ma_scene& scene, picker_ma_result& result, const picker_ma_files& files,
                     qint64 bytesRead)
        : scene_(scene), result_(result), files_(files), bytesRead_(bytesRead) {}

    // The files the references are followed from, outermost first.
    void enter(const QString& path) {
        chain_.append(files_.identity(path));
        chainNames_.append(QFileInfo(path).fileName());
    }

    // Loads the reference made at line of from (0: not from a file) under prefix + its
    // namespace, then what it references in turn.
    load_problem load(const picker_ma_reference& reference, const QString& from, int line,
                      const QString& prefix, int depth) {
        if (stopped_)
            return {};
        const QString where = line > 0 ? QStringLiteral("%1:%2: ").arg(from).arg(line) : QString();
        const QString ns = prefix + reference.ns;
        const QString found = resolveReferencePath(reference.path, from, files_);
        if (found.isEmpty()) {
            const QString what = QStringLiteral("could not find the referenced file \"%1\"; "
                                                "namespace \"%2\" is left out.")
                                     .arg(reference.path, ns);
            return {where + what, true, what};
        }
        const QString id = files_.identity(found);
        const int open = chain_.indexOf(id);
        if (open >= 0)
            return {QStringLiteral("reference cycle: ") +
                    (chainNames_.mid(open) << QFileInfo(found).fileName())
                        .join(QStringLiteral(" \u2192 "))};
        if (depth >= picker_ma_limit::reference_depth)
            return {QStringLiteral("%1references nested more than %2 deep; namespace \"%3\" is "
                                   "left out.")
                        .arg(where)
                        .arg(picker_ma_limit::reference_depth)
                        .arg(ns)};
        if (scene_.referencesLoaded >= picker_ma_limit::references)
            return stop(QStringLiteral("%1the scene loads more than %2 references; no more are "
                                       "loaded.")
                            .arg(where)
                            .arg(picker_ma_limit::references));
        const file_contents* contents = nullptr;
        if (const load_problem problem = read(found, id, contents); !problem.isEmpty())
            return problem;
        ++scene_.referencesLoaded;
        const QString nodePrefix = ns + QLatin1Char(':');
        for (const QString& node : contents->nodes) {
            if (scene_.nodes.size() + scene_.referencedNodes.size() >= picker_ma_limit::nodes)
                return stop(QStringLiteral("%1the scene has more than %2 nodes; no more are "
                                           "loaded.")
                                .arg(where.isEmpty() ? found + QStringLiteral(": ") : where)
                                .arg(picker_ma_limit::nodes));
            scene_.referencedNodes.append(nodePrefix + node);
        }
        // The loads below may move the cached contents.
        const QList<picker_ma_reference> nested = contents->references;
        const QList<int> lines = contents->referenceLines;
        chain_.append(id);
        chainNames_.append(QFileInfo(found).fileName());
        for (int i = 0; i < nested.size(); ++i)
            report(load(nested.at(i), found, lines.at(i), nodePrefix, depth + 1));
        chain_.removeLast();
        chainNames_.removeLast();
        return {};
    }

    // Each message once: a file referenced many times fails the same way each time.
    void report(const load_problem& problem) {
        const QString& once = problem.once.isEmpty() ? problem.message : problem.once;
        if (problem.isEmpty() || reported_.contains(once))
            return;
        reported_.insert(once);
        (problem.missing ? result_.warnings : result_.errors).append(problem.message);
    }

private:
    load_problem stop(const QString& message) {
        stopped_ = true;
        return {message};
    }

    load_problem read(const QString& found, const QString& id, const file_contents*& contents) {
        const auto cached = cache_.constFind(id);
        if (cached != cache_.constEnd()) {
            contents = &cached.value();
            return {};
        }
        QByteArray bytes;
        QString cause;
        const qint64 budget = picker_ma_limit::scene_bytes - bytesRead_;
        if (!files_.read(found, budget, bytes, cause)) {
            if (cause == disk_files::tooLarge(budget))
                return stop(QStringLiteral("%1: the scene's files come to more than %2 bytes; no "
                                           "more are loaded.")
                                .arg(found)
                                .arg(picker_ma_limit::scene_bytes));
            return {QStringLiteral("%1: %2").arg(found, cause)};
        }
        bytesRead_ += bytes.size();
        file_contents read;
        const QString error = parseContents(bytes, found, read);
        if (!error.isEmpty())
            return {error};
        contents = &cache_.insert(id, read).value();
        return {};
    }

    picker_ma_scene& scene_;
    picker_ma_result& result_;
    const picker_ma_files& files_;
    qint64 bytesRead_ = 0;
    QStringList chain_;
    QStringList chainNames_;
    QHash<QString, file_contents> cache_;
    QSet<QString> reported_;
    bool stopped_ = false;
};

} // namespace

picker_ma_files& picker_ma_disk() {
    static disk_files disk;
    return disk;
}

bool picker_ma_memory_files::isFile(const QString& path) const {
    return files.contains(cleanAbsolute(path));
}

QString picker_ma_memory_files::identity(const QString& path) const {
    return cleanAbsolute(path);
}

bool picker_ma_memory_files::read(const QString& path, qint64 limit, QByteArray& bytes,
                                  QString& error) const {
    const auto found = files.constFind(cleanAbsolute(path));
    if (found == files.constEnd()) {
        error = QStringLiteral("No such file or directory");
        return false;
    }
    if (found.value().size() > limit) {
        error = disk_files::tooLarge(limit);
        return false;
    }
    bytes = found.value();
    return true;
}

bool picker_ma_memory_files::write(const QString& path, const QByteArray& bytes, QString& error) {
    Q_UNUSED(error)
    files.insert(cleanAbsolute(path), bytes);
    return true;
}

QString resolveReferencePath(const QString& path, const QString& scenePath,
                             const picker_ma_files& files) {
    const QString expanded = expandEnvironment(path);
    const QDir sceneDir = QFileInfo(scenePath).absoluteDir();
    const QStringList candidates{expanded, path, sceneDir.filePath(expanded),
                                 sceneDir.filePath(QFileInfo(expanded).fileName())};
    for (const QString& candidate : candidates) {
        if (!candidate.isEmpty() && files.isFile(candidate))
            return candidate;
    }
    return QString();
}

picker_ma_result parseMayaAsciiFile(const QByteArray& bytes, const QString& path,
                                    picker_ma_scene& scene) {
    file_contents contents;
    picker_ma_result result;
    result.error = parseContents(bytes, path, contents);
    if (result.ok())
        scene = sceneOf(contents);
    return result;
}

picker_ma_result parseMayaAscii(const QByteArray& bytes, const QString& path,
                                picker_ma_scene& scene, const picker_ma_files& files) {
    file_contents contents;
    picker_ma_result result;
    result.error = parseContents(bytes, path, contents);
    if (!result.ok())
        return result;
    picker_ma_scene loaded = sceneOf(contents);
    reference_loader loader(loaded, result, files, bytes.size());
    loader.enter(path);
    for (int i = 0; i < contents.references.size(); ++i)
        loader.report(
            loader.load(contents.references.at(i), path, contents.referenceLines.at(i), {}, 0));
    scene = loaded;
    return result;
}

picker_ma_result readMayaAscii(const QString& path, picker_ma_scene& scene,
                               const picker_ma_files& files) {
    QByteArray bytes;
    QString cause;
    if (!files.read(path, picker_ma_limit::scene_bytes, bytes, cause)) {
        picker_ma_result result;
        result.error = QStringLiteral("%1: %2").arg(path, cause);
        return result;
    }
    return parseMayaAscii(bytes, path, scene, files);
}

picker_ma_result referenceMayaAscii(const QString& ns, const QString& path,
                                    const QString& scenePath, picker_ma_scene& scene,
                                    const picker_ma_files& files) {
    picker_ma_result result;
    picker_ma_scene loaded = scene;
    reference_loader loader(loaded, result, files, 0);
    if (!scenePath.isEmpty())
        loader.enter(scenePath);
    result.error = loader.load(picker_ma_reference{ns, path}, scenePath, 0, {}, 0).message;
    if (!result.ok())
        return result;
    loaded.references.append(picker_ma_reference{ns, path});
    scene = loaded;
    return result;
}

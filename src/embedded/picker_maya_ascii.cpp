#include "picker_maya_ascii.h"

#include "picker_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>

namespace {

// Deep enough for any real rig; a file that references itself stops here.
constexpr int max_reference_depth = 16;
// Long values are written in pieces joined with '+', as Maya writes long strings.
constexpr int string_piece = 1024;

struct token {
    QString text;
    bool quoted = false;
};

struct statement {
    int line = 0;
    QList<token> tokens;
};

struct file_contents {
    QStringList nodes;
    QList<picker_ma_reference> references;
    QList<QPair<QString, QString>> fileInfo;
};

class lexer {
public:
    explicit lexer(const QString& text) : text_(text) {}

    // False at the end of the text; error set when a statement is broken.
    bool next(statement& out, QString& error) {
        out = statement();
        skipBlank();
        if (pos_ >= text_.size())
            return false;
        out.line = line_;
        while (pos_ < text_.size()) {
            const QChar c = text_.at(pos_);
            if (c == QLatin1Char(';')) {
                ++pos_;
                return true;
            }
            if (c == QLatin1Char('"')) {
                token quotedToken{QString(), true};
                if (!readJoinedString(quotedToken.text, error))
                    return false;
                out.tokens.append(quotedToken);
            } else {
                const int start = pos_;
                while (pos_ < text_.size() && !text_.at(pos_).isSpace() &&
                       text_.at(pos_) != QLatin1Char(';') && text_.at(pos_) != QLatin1Char('"'))
                    ++pos_;
                out.tokens.append(token{text_.mid(start, pos_ - start), false});
            }
            skipBlank();
        }
        error = QStringLiteral("%1: statement not ended with ';'").arg(out.line);
        return false;
    }

private:
    void skipBlank() {
        while (pos_ < text_.size()) {
            const QChar c = text_.at(pos_);
            if (c == QLatin1Char('\n')) {
                ++line_;
                ++pos_;
            } else if (c.isSpace()) {
                ++pos_;
            } else if (c == QLatin1Char('/') && pos_ + 1 < text_.size() &&
                       text_.at(pos_ + 1) == QLatin1Char('/')) {
                while (pos_ < text_.size() && text_.at(pos_) != QLatin1Char('\n'))
                    ++pos_;
            } else {
                return;
            }
        }
    }

    bool readString(QString& out, QString& error) {
        const int startLine = line_;
        ++pos_;
        while (pos_ < text_.size()) {
            const QChar c = text_.at(pos_++);
            if (c == QLatin1Char('"'))
                return true;
            if (c == QLatin1Char('\n')) {
                error = QStringLiteral("%1: string not closed").arg(startLine);
                return false;
            }
            if (c != QLatin1Char('\\') || pos_ >= text_.size()) {
                out += c;
                continue;
            }
            const QChar escaped = text_.at(pos_++);
            if (escaped == QLatin1Char('n'))
                out += QLatin1Char('\n');
            else if (escaped == QLatin1Char('t'))
                out += QLatin1Char('\t');
            else if (escaped == QLatin1Char('r'))
                out += QLatin1Char('\r');
            else
                out += escaped;
        }
        error = QStringLiteral("%1: string not closed").arg(startLine);
        return false;
    }

    // "a" + "b" across lines reads as one string.
    bool readJoinedString(QString& out, QString& error) {
        if (!readString(out, error))
            return false;
        for (;;) {
            const int savedPos = pos_;
            const int savedLine = line_;
            skipBlank();
            if (pos_ >= text_.size() || text_.at(pos_) != QLatin1Char('+')) {
                pos_ = savedPos;
                line_ = savedLine;
                return true;
            }
            ++pos_;
            skipBlank();
            if (pos_ >= text_.size() || text_.at(pos_) != QLatin1Char('"')) {
                error = QStringLiteral("%1: '+' must join two strings").arg(line_);
                return false;
            }
            if (!readString(out, error))
                return false;
        }
    }

    const QString& text_;
    int pos_ = 0;
    int line_ = 1;
};

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

// Error text without the file name; empty on success.
QString interpret(const statement& s, file_contents& contents) {
    const QString& command = s.tokens.first().text;
    if (command == QLatin1String("fileInfo")) {
        if (s.tokens.size() != 3 || !s.tokens.at(1).quoted || !s.tokens.at(2).quoted)
            return QStringLiteral("%1: fileInfo needs a quoted key and value").arg(s.line);
        contents.fileInfo.append(qMakePair(s.tokens.at(1).text, s.tokens.at(2).text));
    } else if (command == QLatin1String("createNode")) {
        if (s.tokens.size() < 2 || s.tokens.at(1).text.startsWith(QLatin1Char('-')))
            return QStringLiteral("%1: createNode needs a node type").arg(s.line);
        const QString name = flagValue(s.tokens, "-n", "-name");
        // A reference node is Maya's record of a "file -r" statement, which is kept apart and
        // makes it again; kept as a node it would be written back as a transform of that name.
        if (!name.isEmpty() && s.tokens.at(1).text != QLatin1String("reference"))
            contents.nodes.append(name);
    } else if (command == QLatin1String("file") && hasFlag(s.tokens, "-r", "-reference")) {
        const token& last = s.tokens.last();
        if (!last.quoted)
            return QStringLiteral("%1: file -r needs a quoted path last").arg(s.line);
        QString ns = flagValue(s.tokens, "-ns", "-namespace");
        if (ns.isEmpty())
            ns = QFileInfo(last.text).completeBaseName();
        contents.references.append(picker_ma_reference{ns, last.text});
    }
    return QString();
}

picker_ma_result parseContents(const QByteArray& bytes, const QString& path,
                               file_contents& contents) {
    picker_ma_result result;
    const QString text = QString::fromUtf8(bytes);
    const bool replaced = text.contains(QChar(QChar::ReplacementCharacter)) &&
                          !bytes.contains(QByteArrayLiteral("\xEF\xBF\xBD"));
    if (bytes.contains('\0') || replaced) {
        result.error = QStringLiteral("%1: not a text file").arg(path);
        return result;
    }
    if (!text.startsWith(QLatin1String("//Maya ASCII"))) {
        result.error =
            QStringLiteral("%1: not a Maya ASCII scene (no \"//Maya ASCII\" header)").arg(path);
        return result;
    }
    lexer lex(text);
    statement s;
    QString error;
    while (lex.next(s, error)) {
        if (s.tokens.isEmpty())
            continue;
        error = interpret(s, contents);
        if (!error.isEmpty())
            break;
    }
    if (!error.isEmpty())
        result.error = path + QLatin1Char(':') + error;
    return result;
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

class reference_loader {
public:
    reference_loader(picker_ma_scene& scene, picker_ma_result& result)
        : scene_(scene), result_(result) {}

    // Loads what the file references in turn; the message when the file itself cannot be read.
    QString load(const QString& ns, const QString& path, const QString& fromScene, int depth) {
        const QString found = resolveReferencePath(path, fromScene);
        if (found.isEmpty())
            return QStringLiteral("Could not find the referenced file \"%1\"; namespace \"%2\" "
                                  "is left out.")
                .arg(path, ns);
        if (depth >= max_reference_depth)
            return QStringLiteral("%1: references nested too deeply; namespace \"%2\" is left "
                                  "out.")
                .arg(found, ns);
        QFile file(found);
        if (!file.open(QIODevice::ReadOnly))
            return QStringLiteral("%1: %2").arg(found, file.errorString());
        file_contents contents;
        const picker_ma_result read = parseContents(file.readAll(), found, contents);
        if (!read.ok())
            return read.error;
        const QString prefix = ns + QLatin1Char(':');
        for (const QString& node : contents.nodes)
            scene_.referencedNodes.append(prefix + node);
        for (const picker_ma_reference& nested : contents.references)
            warn(load(prefix + nested.ns, nested.path, found, depth + 1));
        return QString();
    }

    // The same path missing twice is reported once.
    void warn(const QString& message) {
        if (message.isEmpty() || reported_.contains(message))
            return;
        reported_.insert(message);
        result_.warnings.append(message);
    }

private:
    picker_ma_scene& scene_;
    picker_ma_result& result_;
    QSet<QString> reported_;
};

QString quoted(const QString& text) {
    QString out;
    out.reserve(text.size() + 2);
    out += QLatin1Char('"');
    for (const QChar c : text) {
        if (c == QLatin1Char('"') || c == QLatin1Char('\\'))
            out += QLatin1Char('\\') + QString(c);
        else if (c == QLatin1Char('\n'))
            out += QLatin1String("\\n");
        else if (c == QLatin1Char('\t'))
            out += QLatin1String("\\t");
        else if (c == QLatin1Char('\r'))
            out += QLatin1String("\\r");
        else
            out += c;
    }
    out += QLatin1Char('"');
    return out;
}

QString quotedInPieces(const QString& text) {
    QString out = quoted(text.left(string_piece));
    for (int from = string_piece; from < text.size(); from += string_piece)
        out += QLatin1String("\n\t\t+ ") + quoted(text.mid(from, string_piece));
    return out;
}

} // namespace

QString resolveReferencePath(const QString& path, const QString& scenePath) {
    const QString expanded = expandEnvironment(path);
    const QDir sceneDir = QFileInfo(scenePath).absoluteDir();
    const QStringList candidates{expanded, path, sceneDir.filePath(expanded),
                                 sceneDir.filePath(QFileInfo(expanded).fileName())};
    for (const QString& candidate : candidates) {
        if (!candidate.isEmpty() && QFileInfo(candidate).isFile())
            return candidate;
    }
    return QString();
}

picker_ma_result parseMayaAscii(const QByteArray& bytes, const QString& path,
                                picker_ma_scene& scene) {
    file_contents contents;
    picker_ma_result result = parseContents(bytes, path, contents);
    if (!result.ok())
        return result;
    picker_ma_scene loaded;
    loaded.nodes = contents.nodes;
    loaded.references = contents.references;
    loaded.fileInfo = contents.fileInfo;
    reference_loader loader(loaded, result);
    for (const picker_ma_reference& reference : contents.references)
        loader.warn(loader.load(reference.ns, reference.path, path, 0));
    scene = loaded;
    return result;
}

picker_ma_result readMayaAscii(const QString& path, picker_ma_scene& scene) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        picker_ma_result result;
        result.error = QStringLiteral("%1: %2").arg(path, file.errorString());
        return result;
    }
    return parseMayaAscii(file.readAll(), path, scene);
}

picker_ma_result referenceMayaAscii(const QString& ns, const QString& path,
                                    const QString& scenePath, picker_ma_scene& scene) {
    picker_ma_result result;
    picker_ma_scene loaded = scene;
    reference_loader loader(loaded, result);
    result.error = loader.load(ns, path, scenePath, 0);
    if (!result.ok())
        return result;
    loaded.references.append(picker_ma_reference{ns, path});
    scene = loaded;
    return result;
}

QByteArray mayaAsciiBytes(const picker_ma_scene& scene, const QString& fileName) {
    QString text =
        QStringLiteral("//Maya ASCII 2025 scene\n//Name: %1\n//Codeset: UTF-8\n").arg(fileName);
    text += QLatin1String("requires maya \"2025\";\n");
    for (const picker_ma_reference& reference : scene.references)
        text += QStringLiteral("file -r -ns %1 %2;\n")
                    .arg(quoted(reference.ns), quoted(reference.path));
    for (const QString& node : scene.nodes)
        text += QStringLiteral("createNode transform -n %1;\n").arg(quoted(node));
    for (const auto& entry : scene.fileInfo)
        text += QStringLiteral("fileInfo %1 %2;\n")
                    .arg(quoted(entry.first), quotedInPieces(entry.second));
    text += QStringLiteral("// End of %1\n").arg(fileName);
    return text.toUtf8();
}

bool writeMayaAscii(const QString& path, const picker_ma_scene& scene, QString* error) {
    QString cause;
    if (writeFileWhole(path, mayaAsciiBytes(scene, QFileInfo(path).fileName()), &cause))
        return true;
    if (error)
        *error = QStringLiteral("%1: %2").arg(path, cause);
    return false;
}

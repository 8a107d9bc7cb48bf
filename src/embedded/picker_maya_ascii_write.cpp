#include "picker_maya_ascii.h"

#include <QHash>
#include <QMap>
#include <QSet>

namespace {

// Long values are written in pieces joined with '+', as Maya writes long strings.
constexpr int string_piece = 1024;

const QByteArray name_line = QByteArrayLiteral("//Name: ");
const QByteArray codeset_line = QByteArrayLiteral("//Codeset: ");
const QByteArray end_line = QByteArrayLiteral("// End of ");

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

QString quotedInPieces(const QString& text, const QString& newline) {
    QString out = quoted(text.left(string_piece));
    for (int from = string_piece; from < text.size(); from += string_piece)
        out += newline + QLatin1String("\t\t+ ") + quoted(text.mid(from, string_piece));
    return out;
}

// Where the line that starts with prefix is in text: its first byte after the prefix and one
// past its last, the line end left out; -1 when no line starts so.
QPair<int, int> lineAfter(const QByteArray& text, const QByteArray& prefix) {
    for (int at = 0; at >= 0 && at < text.size();) {
        if (text.mid(at, prefix.size()) == prefix) {
            const int start = at + int(prefix.size());
            int end = int(text.indexOf('\n', start));
            if (end < 0)
                end = int(text.size());
            if (end > start && text.at(end - 1) == '\r')
                --end;
            return {start, end};
        }
        at = int(text.indexOf('\n', at));
        at = at < 0 ? -1 : at + 1;
    }
    return {-1, -1};
}

QByteArray withLine(QByteArray text, const QByteArray& prefix, const QByteArray& value) {
    const QPair<int, int> line = lineAfter(text, prefix);
    if (line.first >= 0)
        text.replace(line.first, line.second - line.first, value);
    return text;
}

// The header Maya writes for a new scene, read as a source for the program's statements.
picker_ma_source skeleton(const QString& name) {
    QString shown = name;
    for (QChar& c : shown) {
        if (c.unicode() < 0x20)
            c = QLatin1Char('_');
    }
    const QByteArray text = QStringLiteral("//Maya ASCII 2025 scene\n//Name: %1\n//Codeset: UTF-8\n"
                                           "requires maya \"2025\";\n// End of %1\n")
                                .arg(shown)
                                .toUtf8();
    picker_ma_scene parsed;
    parseMayaAsciiFile(text, QString(), parsed);
    return parsed.source;
}

bool isAscii(const QString& text) {
    for (const QChar c : text) {
        if (c.unicode() > 0x7f)
            return false;
    }
    return true;
}

// Rewrites a source statement by statement.
class scene_writer {
public:
    scene_writer(const picker_ma_scene& scene, const picker_ma_source& source)
        : scene_(scene), source_(source), newline_(QString::fromLatin1(source.newline)) {}

    bool write(const QString& name, QByteArray& out, QString& error) {
        survey();
        error = check();
        if (error.isEmpty())
            plan();
        const QByteArray header =
            source_.statements.isEmpty()
                ? source_.tail
                : source_.statements.first().text.left(source_.statements.first().bodyStart);
        const QPair<int, int> codeset = lineAfter(header, codeset_line);
        const QString encoding =
            codeset.first < 0
                ? QString()
                : QString::fromUtf8(header.mid(codeset.first, codeset.second - codeset.first));
        if (error.isEmpty() && !encoding.isEmpty() &&
            encoding.compare(QLatin1String("UTF-8"), Qt::CaseInsensitive) != 0) {
            for (const QString& text : written_ + QStringList(name)) {
                if (!isAscii(text))
                    error = QStringLiteral("the scene's codeset is %1, in which this cannot be "
                                           "written: %2")
                                .arg(encoding, text.left(80));
            }
        }
        if (!error.isEmpty())
            return false;
        name_ = name.toUtf8();
        write_scene(out);
        return true;
    }

private:
    using kind = picker_ma_statement::kind;

    void survey() {
        const QList<picker_ma_statement>& statements = source_.statements;
        for (int i = 0; i < statements.size(); ++i) {
            const picker_ma_statement& statement = statements.at(i);
            switch (statement.type) {
            case kind::fileInfo:
                readInfo_.insert(statement.name, statement.value);
                lastOfKey_.insert(statement.name, i);
                lastInfo_ = i;
                break;
            case kind::node:
                readNodes_.insert(statement.name);
                break;
            case kind::reference:
                references_.append(i);
                lastReference_ = i;
                lastPrologue_ = i;
                break;
            case kind::prologue:
            case kind::referenceDepth:
                lastPrologue_ = i;
                break;
            case kind::other:
                break;
            }
        }
        for (const auto& entry : scene_.fileInfo) {
            if (!wantInfo_.contains(entry.first))
                infoOrder_.append(entry.first);
            wantInfo_.insert(entry.first, entry.second);
        }
    }

    // What the file has that the scene lost; removing it from the file is not this writer's.
    QString check() {
        const QSet<QString> nodes(scene_.nodes.cbegin(), scene_.nodes.cend());
        for (const picker_ma_statement& statement : source_.statements) {
            if (statement.type == kind::node && !nodes.contains(statement.name))
                return QStringLiteral("line %1: the node \"%2\" is no longer in the scene, and "
                                      "only a whole file is written")
                    .arg(statement.line)
                    .arg(statement.name);
        }
        for (int k = 0; k < references_.size(); ++k) {
            const picker_ma_statement& statement = source_.statements.at(references_.at(k));
            if (k >= scene_.references.size() || scene_.references.at(k).ns != statement.name)
                return QStringLiteral("line %1: the reference of \"%2\" under namespace \"%3\" "
                                      "is no longer in the scene, and only a whole file is "
                                      "written")
                    .arg(statement.line)
                    .arg(statement.value, statement.name);
            const QString& path = scene_.references.at(k).path;
            if (path == statement.value)
                continue;
            if (statement.valueStart < 0)
                return QStringLiteral("line %1: the path of the reference \"%2\" is written in "
                                      "pieces; it cannot be changed to \"%3\"")
                    .arg(statement.line)
                    .arg(statement.value, path);
            movedPaths_.insert(references_.at(k), path);
            written_.append(path);
            // Maya's note of the same reference moves with it.
            for (int i = 0; i < references_.at(k); ++i) {
                const picker_ma_statement& note = source_.statements.at(i);
                if (note.type == kind::referenceDepth && note.name == statement.name &&
                    note.value == statement.value && note.valueStart >= 0)
                    movedPaths_.insert(i, path);
            }
        }
        return QString();
    }

    // The statements to add, and where: references after the last one, fileInfo after the last
    // one (or the other statements that open a scene), nodes at the end.
    void plan() {
        const int start = -1;
        const int end = int(source_.statements.size()) - 1;
        for (int k = int(references_.size()); k < scene_.references.size(); ++k) {
            const picker_ma_reference& reference = scene_.references.at(k);
            add(lastReference_ >= 0 ? lastReference_ : start,
                QStringLiteral("file -r -ns %1 -typ \"mayaAscii\" %2;")
                    .arg(quoted(reference.ns), quoted(reference.path)));
        }
        for (const QString& key : std::as_const(infoOrder_)) {
            if (readInfo_.contains(key))
                continue;
            add(lastInfo_ >= 0 ? lastInfo_ : lastPrologue_, infoStatement(key));
        }
        QSet<QString> added;
        for (const QString& node : scene_.nodes) {
            if (readNodes_.contains(node) || added.contains(node))
                continue;
            added.insert(node);
            add(end, QStringLiteral("createNode transform -n %1;").arg(quoted(node)));
        }
        for (auto it = wantInfo_.cbegin(); it != wantInfo_.cend(); ++it) {
            if (readInfo_.contains(it.key()) && readInfo_.value(it.key()) != it.value())
                written_.append(infoStatement(it.key()));
        }
    }

    void add(int after, const QString& statement) {
        inserts_[after].append(statement);
        written_.append(statement);
    }

    QString infoStatement(const QString& key) const {
        return QStringLiteral("fileInfo %1 %2;")
            .arg(quoted(key), quotedInPieces(wantInfo_.value(key), newline_));
    }

    void write_inserts(QByteArray& out, int after) const {
        for (const QString& statement : inserts_.value(after)) {
            if (after < 0)
                out += statement.toUtf8() + source_.newline;
            else
                out += source_.newline + statement.toUtf8();
        }
    }

    // The bytes of statement i as the scene now has them; empty when it is left out.
    QByteArray body(int i) const {
        const picker_ma_statement& statement = source_.statements.at(i);
        const QByteArray text = statement.text.mid(statement.bodyStart);
        if (statement.type == kind::fileInfo) {
            const auto wanted = wantInfo_.constFind(statement.name);
            if (wanted == wantInfo_.constEnd())
                return QByteArray();
            if (wanted.value() == readInfo_.value(statement.name))
                return text;
            // The last statement of a key is the one Maya keeps; it takes the new value.
            return lastOfKey_.value(statement.name) == i ? infoStatement(statement.name).toUtf8()
                                                         : QByteArray();
        }
        const auto moved = movedPaths_.constFind(i);
        if (moved == movedPaths_.constEnd())
            return text;
        QByteArray changed = text;
        changed.replace(statement.valueStart - statement.bodyStart,
                        statement.valueEnd - statement.valueStart, quoted(moved.value()).toUtf8());
        return changed;
    }

    QByteArray renamed(const QByteArray& text, const QByteArray& prefix) const {
        return name_.isEmpty() ? text : withLine(text, prefix, name_);
    }

    void write_scene(QByteArray& out) const {
        const QList<picker_ma_statement>& statements = source_.statements;
        if (statements.isEmpty()) {
            const QByteArray tail = renamed(renamed(source_.tail, name_line), end_line);
            int split = lineAfter(tail, end_line).first;
            split = split < 0 ? int(tail.size()) : split - int(end_line.size());
            const QByteArray header = tail.left(split);
            out += header;
            if (!header.isEmpty() && !header.endsWith('\n') && inserts_.contains(-1))
                out += source_.newline;
            write_inserts(out, -1);
            out += tail.mid(split);
            return;
        }
        for (int i = 0; i < statements.size(); ++i) {
            const picker_ma_statement& statement = statements.at(i);
            QByteArray trivia = statement.text.left(statement.bodyStart);
            if (i == 0) {
                out += renamed(trivia, name_line);
                write_inserts(out, -1);
                trivia.clear();
            }
            const QByteArray kept = body(i);
            // What stood before a statement left out stays when it says something.
            if (!kept.isEmpty() || !trivia.trimmed().isEmpty())
                out += trivia;
            out += kept;
            write_inserts(out, i);
        }
        out += renamed(source_.tail, end_line);
    }

    const picker_ma_scene& scene_;
    const picker_ma_source& source_;
    const QString newline_;
    QByteArray name_;
    QHash<QString, QString> readInfo_;
    QHash<QString, int> lastOfKey_;
    QSet<QString> readNodes_;
    QList<int> references_;
    int lastReference_ = -1;
    int lastInfo_ = -1;
    int lastPrologue_ = -1;
    QHash<QString, QString> wantInfo_;
    QStringList infoOrder_;
    QHash<int, QString> movedPaths_;
    QMap<int, QStringList> inserts_;
    // Text the program writes into the file, for the codeset to take.
    QStringList written_;
};

} // namespace

bool mayaAsciiBytes(const picker_ma_scene& scene, const QString& name, QByteArray& bytes,
                    QString* error) {
    const picker_ma_source source =
        scene.source.isEmpty() ? skeleton(name.isEmpty() ? QStringLiteral("untitled.ma") : name)
                               : scene.source;
    QString problem;
    QByteArray written;
    if (!scene_writer(scene, source).write(name, written, problem)) {
        if (error)
            *error = problem;
        return false;
    }
    bytes = written;
    return true;
}

bool writeMayaAscii(const QString& path, const picker_ma_scene& scene, const QString& name,
                    QString* error, picker_ma_files& files) {
    QByteArray bytes;
    QString cause;
    if (mayaAsciiBytes(scene, name, bytes, &cause) && files.write(path, bytes, cause))
        return true;
    if (error)
        *error = QStringLiteral("%1: %2").arg(path, cause);
    return false;
}

#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QPair>
#include <QString>
#include <QStringList>

// Maya ASCII scenes as this program reads and writes them. A scene is kept as its statements in
// order, each with the bytes it was read as. The program understands the header, fileInfo, the
// names of created nodes and the references; a write changes only what the program changed
// (fileInfo entries, nodes and references added, a reference path moved, the name in the header)
// and carries every other byte through as it was.

// What a hostile scene may not exceed; each is an error naming the file and, where one is to
// blame, the line.
namespace picker_ma_limit {
// One file, and all the files a scene and its references read together.
constexpr qint64 scene_bytes = qint64(1) << 30;
constexpr int line_bytes = 64 << 20;
constexpr int string_bytes = 64 << 20;
// References within references.
constexpr int reference_depth = 16;
// References loaded for one scene, at every depth.
constexpr int references = 1000;
constexpr int nodes = 1000000;
// Picker background images stored in one scene.
constexpr int images = 1000;
} // namespace picker_ma_limit

// Where scenes and their references are read from and written to.
class picker_ma_files {
public:
    virtual ~picker_ma_files() = default;
    virtual bool isFile(const QString& path) const = 0;
    // One name for a file however it is reached, so that a reference back to it is seen.
    virtual QString identity(const QString& path) const = 0;
    // At most limit bytes; a longer file is refused. False with error set to the cause.
    virtual bool read(const QString& path, qint64 limit, QByteArray& bytes,
                      QString& error) const = 0;
    // Whole or not at all.
    virtual bool write(const QString& path, const QByteArray& bytes, QString& error) = 0;
};

// The file system.
picker_ma_files& picker_ma_disk();

// Files held in memory by clean absolute path, for scenes that must not touch the disk.
class picker_ma_memory_files : public picker_ma_files {
public:
    QMap<QString, QByteArray> files;

    bool isFile(const QString& path) const override;
    QString identity(const QString& path) const override;
    bool read(const QString& path, qint64 limit, QByteArray& bytes, QString& error) const override;
    bool write(const QString& path, const QByteArray& bytes, QString& error) override;
};

struct picker_ma_reference {
    QString ns;
    QString path;

    bool operator==(const picker_ma_reference& other) const {
        return ns == other.ns && path == other.path;
    }
};

// One statement as read: its bytes from the end of the statement before (blanks and comments
// included) through its ';', and what the program understood of it.
struct picker_ma_statement {
    // referenceDepth: "file -rdi", Maya's note of a reference's place among the references.
    enum class kind { other, prologue, fileInfo, node, reference, referenceDepth };
    kind type = kind::other;
    QByteArray text;
    // Where the statement itself begins in text, after the blanks and comments before it.
    int bodyStart = 0;
    int line = 0;
    // The fileInfo key, the created node's name, the reference's namespace.
    QString name;
    // The fileInfo value, the reference's path.
    QString value;
    // The reference's path as one quoted string in text, so that it can be rewritten; -1 when
    // it is written otherwise.
    int valueStart = -1;
    int valueEnd = -1;
};

// A scene file statement by statement; the bytes of all of them and the tail are the file.
struct picker_ma_source {
    QList<picker_ma_statement> statements;
    // Blanks and comments after the last statement ("// End of ...").
    QByteArray tail;
    // What the file ends its lines with; new statements end theirs the same way.
    QByteArray newline = QByteArrayLiteral("\n");

    bool isEmpty() const { return statements.isEmpty() && tail.isEmpty(); }
};

struct picker_ma_scene {
    // The scene's own nodes, in the order they were created.
    QStringList nodes;
    QList<picker_ma_reference> references;
    // Nodes the references brought in, namespaced ("hero:L_hand_ctrl"); never written back.
    QStringList referencedNodes;
    // How many references were loaded, at every depth.
    int referencesLoaded = 0;
    QList<QPair<QString, QString>> fileInfo;
    // The file the scene was read from; empty for a scene made here.
    picker_ma_source source;
};

struct picker_ma_result {
    // "FILE:LINE: message", or "FILE: message" when no line is to blame; when set nothing was
    // read and the scene is as it was.
    QString error;
    // The scene was read, but not all of what it references: a reference cycle, a damaged
    // reference, a limit reached. What was read before is kept.
    QStringList errors;
    // References that could not be found; the scene loads without them.
    QStringList warnings;
    bool ok() const { return error.isEmpty(); }
};

// Reads a scene and, through its references, their nodes. On failure the scene is untouched.
picker_ma_result readMayaAscii(const QString& path, picker_ma_scene& scene,
                               const picker_ma_files& files = picker_ma_disk());
// The same over bytes already read; path names the file in messages and anchors references.
picker_ma_result parseMayaAscii(const QByteArray& bytes, const QString& path,
                                picker_ma_scene& scene,
                                const picker_ma_files& files = picker_ma_disk());
// The scene file alone, its references neither followed nor loaded.
picker_ma_result parseMayaAsciiFile(const QByteArray& bytes, const QString& path,
                                    picker_ma_scene& scene);
// Reads a referenced file into scene.referencedNodes under ns, as "file -r" does.
picker_ma_result referenceMayaAscii(const QString& ns, const QString& path,
                                    const QString& scenePath, picker_ma_scene& scene,
                                    const picker_ma_files& files = picker_ma_disk());
// Where Maya would find a referenced file; empty when nowhere.
QString resolveReferencePath(const QString& path, const QString& scenePath,
                             const picker_ma_files& files = picker_ma_disk());

// The scene's file: the source as read with the program's changes made to it. A source read
// from a file keeps every byte the changes do not concern; a scene made here gets a header of
// its own. name, when given, is the file name the header and the last line give the scene.
// False, with error naming the statement, when a change cannot be made without losing part of
// the file (a node or a reference read from it that the scene no longer has).
bool mayaAsciiBytes(const picker_ma_scene& scene, const QString& name, QByteArray& bytes,
                    QString* error);
// Written aside and renamed into place only when whole; false with a message otherwise, the file
// left as it was.
bool writeMayaAscii(const QString& path, const picker_ma_scene& scene, const QString& name,
                    QString* error, picker_ma_files& files = picker_ma_disk());

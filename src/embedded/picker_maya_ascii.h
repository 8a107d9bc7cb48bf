#pragma once

#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

// The part of Maya ASCII this program reads and writes: the header, requires, fileInfo, the
// names of created nodes and references. Everything else in a scene Maya wrote is skipped.

struct picker_ma_reference {
    QString ns;
    QString path;

    bool operator==(const picker_ma_reference& other) const {
        return ns == other.ns && path == other.path;
    }
};

struct picker_ma_scene {
    // The scene's own nodes, in the order they were created.
    QStringList nodes;
    QList<picker_ma_reference> references;
    // Nodes the references brought in, namespaced ("hero:L_hand_ctrl"); never written back.
    QStringList referencedNodes;
    QList<QPair<QString, QString>> fileInfo;
};

struct picker_ma_result {
    // "FILE:LINE: message", or "FILE: message" when no line is to blame; empty on success.
    QString error;
    // References that could not be found or read, one message each; the scene loads without them.
    QStringList warnings;
    bool ok() const { return error.isEmpty(); }
};

// Reads a scene and, through its references, their nodes. On failure the scene is untouched.
picker_ma_result readMayaAscii(const QString& path, picker_ma_scene& scene);
// The same over bytes already read; path names the file in messages and anchors references.
picker_ma_result parseMayaAscii(const QByteArray& bytes, const QString& path,
                                picker_ma_scene& scene);
// Reads a referenced file into scene.referencedNodes under ns, as "file -r" does.
picker_ma_result referenceMayaAscii(const QString& ns, const QString& path,
                                    const QString& scenePath, picker_ma_scene& scene);
// Where Maya would find a referenced file; empty when nowhere.
QString resolveReferencePath(const QString& path, const QString& scenePath);

QByteArray mayaAsciiBytes(const picker_ma_scene& scene, const QString& fileName);
// Written aside and renamed into place only when whole; false with a message otherwise.
bool writeMayaAscii(const QString& path, const picker_ma_scene& scene, QString* error);

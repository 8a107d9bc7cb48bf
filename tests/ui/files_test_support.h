#pragma once

#include "picker_embedded_host.h"
#include "picker_file.h"
#include "picker_main.h"
#include "picker_prompt.h"
#include "picker_view.h"
#include "picker_window.h"
#include "ui_test_support.h"

#include <QBuffer>
#include <QDataStream>
#include <QFile>
#include <QImage>
#include <QStandardPaths>

#include <memory>

// Answers the window's questions from scripts, in order, and keeps what was asked. A question
// nobody scripted an answer for is answered with NoButton or no file.
class scripted_prompts {
public:
    scripted_prompts() {
        picker_set_message_hook([this](const picker_message& message) {
            messages.append(message);
            return answers.isEmpty() ? QMessageBox::NoButton : answers.takeFirst();
        });
        picker_set_file_hook([this](const picker_file_question& question) {
            questions.append(question);
            return files.isEmpty() ? QStringList() : files.takeFirst();
        });
    }
    ~scripted_prompts() {
        picker_set_message_hook(picker_message_hook());
        picker_set_file_hook(picker_file_hook());
    }
    scripted_prompts(const scripted_prompts&) = delete;
    scripted_prompts& operator=(const scripted_prompts&) = delete;

    QList<QMessageBox::StandardButton> answers;
    QList<QStringList> files;
    QList<picker_message> messages;
    QList<picker_file_question> questions;
};

const QString left_hand = QStringLiteral("hero:L_hand_ctrl");
const QString right_hand = QStringLiteral("hero:R_hand_ctrl");
const QString root = QStringLiteral("hero:root_ctrl");

// The plug-in loaded into an embedded host, its dock open on a scene of rig nodes; settings and
// the pickers config kept away from the user's.
class picker_session {
public:
    bool start() {
        QStandardPaths::setTestModeEnabled(true);
        qputenv("TALVORA_PICKER_CONFIG", QByteArray("/nonexistent/pickers.cfg"));
        host = std::make_unique<picker_embedded_host>();
        if (!picker_main::initialize(*host, &picker_window::create))
            return false;
        host->openScene(nodes(), {});
        if (!host->executeCommand(QStringLiteral("TalvoraPicker")))
            return false;
        host->processIdle();
        return window() != nullptr;
    }
    void stop() {
        if (!host)
            return;
        host->quit();
        picker_main::uninitialize();
        host.reset();
    }
    ~picker_session() { stop(); }

    static QStringList nodes() { return {QStringLiteral("persp"), left_hand, right_hand, root}; }
    picker_window* window() const { return dynamic_cast<picker_window*>(picker_main::window()); }
    QTabWidget* tabs() const { return window()->findChild<QTabWidget*>(); }
    picker_view* view(int index) const { return qobject_cast<picker_view*>(tabs()->widget(index)); }
    // Hands the tab stream to the picker as a scene's stored data is handed over.
    bool restore(const QByteArray& tabStream) {
        const host_status status =
            host->executeCommand(QStringLiteral("TalvoraPicker restore \"%1\"")
                                     .arg(QString::fromLatin1(qCompress(tabStream, 9).toBase64())));
        host->processIdle();
        return status.ok();
    }
    // The tab stream stored in the scene, raw and decoded.
    QByteArray storedTabs() const {
        return qUncompress(
            QByteArray::fromBase64(host->fileInfo(QStringLiteral("TalvoraPickerData")).toLatin1()));
    }
    picker_tab_set storedSet() const {
        picker_tab_set set;
        QDataStream in(storedTabs());
        return readTabStream(in, set).ok() ? set : picker_tab_set{-1, -1, {}};
    }
    // Queues the change's scene write, runs it and everything it queued.
    void writeScene() {
        window()->updateSceneData();
        window()->flushSceneData();
        host->processIdle();
    }

    std::unique_ptr<picker_embedded_host> host;
};

inline QList<qint16> lit_states(picker_view* view) {
    QList<qint16> states;
    for (const buttonRecord& button : *view->buttons())
        states.append(button.selected);
    return states;
}

inline QByteArray png_of(const QColor& colour, int edge = 4) {
    QImage image(edge, edge, QImage::Format_ARGB32);
    image.fill(colour);
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return png;
}

inline QRgb pixel_of(const QPixmap& pixmap, int x = 1, int y = 1) {
    return pixmap.toImage().pixel(x, y);
}

inline bool write_file(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

// One tab laid out field by field as version 4 has it: title, key and, under a key, the image
// marker and PNG file, then its buttons: one selection button per list of node names, at
// (10 b, 20), size 8.
struct laid_tab {
    QString title;
    QString key;
    QByteArray png;
    QList<QStringList> buttons;
};

inline void lay_tab_body(QDataStream& out, const laid_tab& tab) {
    out << tab.title << tab.key;
    if (!tab.key.isEmpty()) {
        out << qint32(tab.png.isEmpty() ? 0 : 1);
        out.writeRawData(tab.png.constData(), static_cast<int>(tab.png.size()));
    }
    out << qint32(tab.buttons.size());
    for (int b = 0; b < tab.buttons.size(); ++b) {
        out << qint32(b) << qint32(10 * b) << qint32(20) << qint32(8) << qint32(0) << qint32(0)
            << quint32(0xFFB22222) << quint32(0xFF000000) << QString()
            << qint32(tab.buttons.at(b).size());
        for (const QString& name : tab.buttons.at(b))
            out << name;
    }
}

inline QByteArray laid_file(qint32 version, const laid_tab& tab) {
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(7);
    out << version;
    lay_tab_body(out, tab);
    return bytes;
}

inline QByteArray laid_tabs(qint32 version, qint32 current, const QList<laid_tab>& tabs) {
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << version << qint32(tabs.size()) << current;
    for (int t = 0; t < tabs.size(); ++t) {
        out << qint32(t);
        lay_tab_body(out, tabs.at(t));
    }
    return bytes;
}

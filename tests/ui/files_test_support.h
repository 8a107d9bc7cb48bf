#pragma once

#include "picker_embedded_host.h"
#include "picker_main.h"
#include "picker_prompt.h"
#include "picker_view.h"
#include "picker_window.h"
#include "ui_test_support.h"

#include <QBuffer>
#include <QColor>
#include <QDataStream>
#include <QImage>
#include <QTabWidget>

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

// Keeps every MEL text the picker queues, also the ones already run.
class recording_host : public picker_embedded_host {
public:
    host_status executeCommandOnIdle(const QString& mel, bool displayEnabled = false) override {
        issued.append(mel);
        return picker_embedded_host::executeCommandOnIdle(mel, displayEnabled);
    }
    int issuedStartingWith(const QString& start) const {
        int count = 0;
        for (const QString& text : issued)
            count += text.startsWith(start) ? 1 : 0;
        return count;
    }
    QStringList issued;
};

// The plug-in loaded into an embedded host, its dock open on a scene of rig nodes.
class picker_session {
public:
    bool start(const QMap<QString, QString>& fileInfo = QMap<QString, QString>()) {
        host = std::make_unique<recording_host>();
        if (!picker_main::initialize(*host, &picker_window::create))
            return false;
        host->openScene(nodes(), fileInfo);
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

    static QStringList nodes() {
        return {QStringLiteral("persp"), QStringLiteral("hero:L_hand_ctrl"),
                QStringLiteral("hero:root_ctrl")};
    }
    picker_window* window() const { return dynamic_cast<picker_window*>(picker_main::window()); }
    QTabWidget* tabs() const { return window()->findChild<QTabWidget*>(); }
    picker_view* view(int index) const { return qobject_cast<picker_view*>(tabs()->widget(index)); }
    // The tab stream stored in the scene, decoded.
    QByteArray storedTabs() const {
        return qUncompress(
            QByteArray::fromBase64(host->fileInfo(QStringLiteral("TalvoraPickerData")).toLatin1()));
    }
    // Queues the change's scene write, runs it and everything it queued.
    void writeScene() {
        window()->updateSceneData();
        window()->flushSceneData();
        host->processIdle();
    }

    std::unique_ptr<recording_host> host;
};

// A button list laid out field by field: one selection button per list of node names, at
// (10 b, 20), size 8, with the fields the version has.
inline void lay_buttons(QDataStream& out, qint32 version, const QList<QStringList>& buttons) {
    out << qint32(buttons.size());
    for (int b = 0; b < buttons.size(); ++b) {
        out << qint32(b) << qint32(10 * b) << qint32(20) << qint32(8);
        if (version > 1)
            out << qint32(0) << qint32(0);
        out << quint32(0xFFB22222);
        if (version > 3)
            out << quint32(0xFF000000);
        out << QString() << qint32(buttons.at(b).size());
        for (const QString& name : buttons.at(b))
            out << name;
    }
}

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

inline QString scene_text(const QByteArray& tabStream) {
    return QString::fromLatin1(qCompress(tabStream, 9).toBase64());
}

// One tab laid out field by field: title, (from version 2) key and, under a key, the image
// marker and PNG file, then its buttons: one per list of names, at (10 b, 20), size 8.
struct laid_tab {
    QString title;
    QString key;
    QByteArray png;
    QList<QStringList> buttons;
};

inline void lay_tab_body(QDataStream& out, qint32 version, const laid_tab& tab) {
    out << tab.title;
    if (version > 1) {
        out << tab.key;
        if (!tab.key.isEmpty()) {
            out << qint32(tab.png.isEmpty() ? 0 : 1);
            out.writeRawData(tab.png.constData(), static_cast<int>(tab.png.size()));
        }
    }
    lay_buttons(out, version, tab.buttons);
}

inline QByteArray laid_file(qint32 version, const laid_tab& tab) {
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(7);
    out << version;
    lay_tab_body(out, version, tab);
    return bytes;
}

inline QByteArray laid_tabs(qint32 version, qint32 current, const QList<laid_tab>& tabs) {
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << version << qint32(tabs.size()) << current;
    for (int t = 0; t < tabs.size(); ++t) {
        out << qint32(t);
        lay_tab_body(out, version, tabs.at(t));
    }
    return bytes;
}

// The attributes laid_tab gives button b.
inline buttonAttributes laid_button(int b, const QStringList& names) {
    buttonAttributes att;
    att.pos = QPoint(10 * b, 20);
    att.size = 8;
    att.color = 0xFFB22222;
    att.tcolor = 0xFF000000;
    att.sel = names;
    return att;
}

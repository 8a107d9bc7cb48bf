#include "picker_window.h"

#include "picker_background_key.h"
#include "picker_file.h"
#include "picker_mel_quote.h"
#include "picker_stream.h"
#include "picker_tab.h"
#include "picker_view.h"

#include <QBuffer>
#include <QDataStream>
#include <QSet>
#include <QTabWidget>
#include <QTimer>
#include <QVector>

namespace {

const QString file_modified = QStringLiteral("; file -modified 1;");

QString image_entry(const QString& key) {
    return picker_mel_quote(QLatin1String(picker_scene_image_prefix) + key);
}

void issue(const QString& mel) {
    if (picker_host* host = picker_main::host())
        host->executeCommandOnIdle(mel, false);
}

} // namespace

picker_view* picker_window::view_from_record(const picker_tab_record& record) {
    auto* tab = new picker_tab(&mirror_);
    if (!record.backgroundKey.isEmpty()) {
        QPixmap image;
        image.loadFromData(record.backgroundPng, "PNG");
        // A key from someone else's file or scene could carry MEL of its own; under a key another
        // tab stores a different image with, one of the two images would be lost in the scene.
        const QString read = isPlainBackgroundKey(record.backgroundKey)
                                 ? record.backgroundKey
                                 : backgroundKeyOf(record.backgroundPng);
        QHash<QString, QByteArray> stored;
        for (int i = 0; i < tabs_->count(); ++i) {
            if (const picker_tab* other = tab_at(i); other && !other->backgroundKey().isEmpty())
                stored.insert(other->backgroundKey(), background_png(other));
        }
        const QString key = freeBackgroundKey(read, record.backgroundPng, stored);
        if (!image.isNull())
            pngs_.insert(image.cacheKey(), record.backgroundPng);
        tab->setBackground(key, image);
    }
    tab->replaceButtons(record.buttons);
    return make_view(tab);
}

QByteArray picker_window::background_png(const picker_tab* tab) {
    const QPixmap& image = tab->background();
    if (image.isNull())
        return QByteArray();
    const auto found = pngs_.constFind(image.cacheKey());
    if (found != pngs_.constEnd())
        return found.value();
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    pngs_.insert(image.cacheKey(), png);
    return png;
}

picker_tab_record picker_window::tab_record(int index) {
    picker_tab_record tab;
    tab.title = tab_title(index);
    if (const picker_tab* shown = tab_at(index)) {
        tab.backgroundKey = shown->backgroundKey();
        if (!tab.backgroundKey.isEmpty())
            tab.backgroundPng = background_png(shown);
        tab.buttons.reserve(shown->count());
        for (const buttonRecord& button : shown->buttons())
            tab.buttons.append(button.att);
    }
    return tab;
}

QVector<picker_stream_piece> picker_window::stream_pieces() {
    picker_tab_stream_pieces pieces(tabs_->count(), tabs_->currentIndex(), &sceneRecords_);
    for (int i = 0; i < tabs_->count(); ++i) {
        const picker_tab* tab = tab_at(i);
        if (tab == nullptr) {
            pieces.addTab(tab_title(i), QString(), QByteArray(), 0);
            continue;
        }
        const QString& key = tab->backgroundKey();
        pieces.addTab(tab_title(i), key, key.isEmpty() ? QByteArray() : background_png(tab),
                      qint32(tab->count()));
        for (const buttonRecord& button : tab->buttons())
            pieces.addButton(button.att);
    }
    return pieces.take();
}

void picker_window::streamTo(QDataStream& stream) {
    for (const picker_stream_piece& piece : stream_pieces())
        stream.writeRawData(piece.bytes.constData(), static_cast<int>(piece.bytes.size()));
}

void picker_window::connect_picker(picker_tab* tab) {
    connect(tab, &picker_tab::changed, this, &picker_window::updateSceneData);
    // What a button names, and so what it is found by and whether the scene has it, changes
    // with any edit.
    connect(tab, &picker_tab::changed, this, &picker_window::marks_stale);
    connect(tab, &picker_tab::buttonsReset, this, &picker_window::marks_stale);
    marks_stale();
}

void picker_window::updateSceneData() {
    if (sceneQuiet_ > 0)
        return;
    if (sceneTimer_ == nullptr) {
        sceneTimer_ = new QTimer(this);
        sceneTimer_->setSingleShot(true);
        sceneTimer_->setInterval(0);
        connect(sceneTimer_, &QTimer::timeout, this, &picker_window::flushSceneData);
    }
    scenePending_ = true;
    if (!sceneTimer_->isActive())
        sceneTimer_->start();
}

void picker_window::flushSceneData() {
    if (!scenePending_)
        return;
    scenePending_ = false;
    sceneTimer_->stop();
    const QVector<picker_stream_piece> pieces = stream_pieces();
    // Images no tab shows any more are dropped from the cache.
    QSet<qint64> shown;
    for (int i = 0; i < tabs_->count(); ++i) {
        if (const picker_tab* tab = tab_at(i))
            shown.insert(tab->background().cacheKey());
    }
    for (auto it = pngs_.begin(); it != pngs_.end();)
        it = shown.contains(it.key()) ? std::next(it) : pngs_.erase(it);

    const QByteArray text = sceneCompressor_.compress(pieces).toBase64();
    QString mel;
    mel.reserve(static_cast<int>(text.size()) + 64);
    mel += QLatin1String("fileInfo \"");
    mel += QLatin1String(picker_scene_data_key);
    mel += QLatin1String("\" \"");
    mel += QLatin1String(text);
    mel += QLatin1Char('"');
    mel += file_modified;
    issue(mel);
}

void picker_window::setImageData(const picker_tab* tab) {
    if (tab == nullptr || tab->backgroundKey().isEmpty() || sceneQuiet_ > 0)
        return;
    QByteArray bytes;
    {
        QDataStream out(&bytes, QIODevice::WriteOnly);
        writeImage(out, background_png(tab));
    }
    QString mel = QStringLiteral("fileInfo ") + image_entry(tab->backgroundKey());
    mel += QLatin1String(" \"");
    mel += QLatin1String(bytes.toBase64());
    mel += QLatin1Char('"');
    mel += file_modified;
    issue(mel);
}

void picker_window::removeImageData(const picker_tab* tab) {
    if (tab == nullptr || tab->backgroundKey().isEmpty() || sceneQuiet_ > 0)
        return;
    issue(QStringLiteral("fileInfo -remove ") + image_entry(tab->backgroundKey()) + file_modified);
}

void picker_window::fetchImageData(const picker_tab* tab) {
    if (tab == nullptr || tab->backgroundKey().isEmpty())
        return;
    issue(QStringLiteral("TalvoraPicker fetch_image `fileInfo -q ") +
          image_entry(tab->backgroundKey()) + QStringLiteral("`;"));
}

void picker_window::fetchFrontImageData() {
    fetchImageData(frontTab());
}

void picker_window::setBackgroundImage(const QString& key, const QPixmap& image) {
    // The image handed back from the scene is cut short by the directive's byte-count rule; a
    // picture that did not survive never replaces the one the tab already shows.
    if (image.isNull())
        return;
    for (int i = 0; i < tabs_->count(); ++i) {
        picker_tab* tab = tab_at(i);
        if (tab != nullptr && tab->backgroundKey() == key)
            tab->setBackground(key, image);
    }
}

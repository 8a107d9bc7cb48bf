#pragma once

#include "picker_types.h"

#include <QByteArray>
#include <QString>
#include <QVector>

#include <memory>
#include <vector>

struct z_stream_s;

struct picker_stream_piece {
    QByteArray bytes;
    bool compressed = false; // already compressed data (a PNG): deflating it again gains nothing
};

// Runs of button records as last laid out, kept between writes of the same tabs, so a run whose
// buttons did not change is handed over again instead of being laid out anew.
class picker_record_cache {
    friend class picker_tab_stream_pieces;
    struct record_run {
        QVector<buttonAttributes> buttons;
        QByteArray bytes;
    };
    // By tab, then by run within the tab.
    std::vector<std::vector<record_run>> tabs_;
};

// The tab stream cut where an edit usually leaves the bytes on either side alone: each tab's
// header, its background image, and runs of button records. Joined, the pieces are exactly the
// tab stream.
class picker_tab_stream_pieces {
public:
    // With a cache, unchanged record runs come from it; the attributes added must stay valid
    // until take().
    picker_tab_stream_pieces(qint32 tabCount, qint32 current, picker_record_cache* cache = nullptr);

    // A tab's header; its buttonCount records follow through addButton.
    void addTab(const QString& title, const QString& backgroundKey, const QByteArray& png,
                qint32 buttonCount);
    void addButton(const buttonAttributes& att);
    QVector<picker_stream_piece> take();

private:
    void cut();
    void end_run();

    QVector<picker_stream_piece> pieces_;
    QByteArray open_;
    QVector<const buttonAttributes*> run_;
    picker_record_cache* cache_;
    // Runs written so far in each tab, to drop what the cache holds past them.
    std::vector<size_t> runsPerTab_;
    qint32 buttonIndex_ = 0;
};

// Compresses pieces joined into what qCompress makes of them, each piece deflated on its own so
// that one whose bytes are the same as at the same place last time is not deflated again. The
// scene is rewritten whole after every edit; this keeps the cost to the pieces the edit touched.
class picker_piece_compressor {
public:
    picker_piece_compressor();
    ~picker_piece_compressor();
    picker_piece_compressor(const picker_piece_compressor&) = delete;
    picker_piece_compressor& operator=(const picker_piece_compressor&) = delete;

    QByteArray compress(const QVector<picker_stream_piece>& pieces);

private:
    struct deflated_piece {
        QByteArray raw;
        QByteArray deflated;
        quint32 adler = 1;
    };
    struct stream_deleter {
        void operator()(z_stream_s* stream) const;
    };

    void deflate_piece(const picker_stream_piece& piece, deflated_piece& into);

    std::unique_ptr<z_stream_s, stream_deleter> stream_;
    int level_ = -1;
    std::vector<deflated_piece> cache_;
};

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

// The tab stream cut where an edit usually leaves the bytes on either side alone: each tab's
// header, its background image, and runs of button records. Joined, the pieces are exactly the
// tab stream.
class picker_tab_stream_pieces {
public:
    picker_tab_stream_pieces(qint32 tabCount, qint32 current);

    // A tab's header; its buttonCount records follow through addButton.
    void addTab(const QString& title, const QString& backgroundKey, const QByteArray& png,
                qint32 buttonCount);
    void addButton(const buttonAttributes& att);
    QVector<picker_stream_piece> take();

private:
    void cut();

    QVector<picker_stream_piece> pieces_;
    QByteArray open_;
    qint32 tabIndex_ = 0;
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

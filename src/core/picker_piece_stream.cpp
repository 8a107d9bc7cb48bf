#include "picker_piece_stream.h"

#include "picker_file.h"
#include "picker_stream.h"

#include <QtEndian>

#include <algorithm>

#include <zlib.h>

namespace {

// About 20 KB of records: small enough that an edit to a few buttons deflates little again, big
// enough that the flush at each seam costs nothing worth counting.
constexpr qint32 records_per_piece = 128;
constexpr qint32 typical_record_bytes = 160;

// Fastest of the real levels: every edit rewrites the whole entry, and readers take any level.
constexpr int records_level = 1;
constexpr int stored_level = 0;

bool same_bytes(const QByteArray& a, const QByteArray& b) {
    return (a.constData() == b.constData() && a.size() == b.size()) || a == b;
}

} // namespace

picker_tab_stream_pieces::picker_tab_stream_pieces(qint32 tabCount, qint32 current,
                                                   picker_record_cache* cache)
    : cache_(cache) {
    appendStreamInt(open_, picker_format_version);
    appendStreamInt(open_, tabCount);
    appendStreamInt(open_, current);
    run_.reserve(records_per_piece);
}

void picker_tab_stream_pieces::addTab(const QString& title, const QString& backgroundKey,
                                      const QByteArray& png, qint32 buttonCount) {
    end_run();
    cut();
    appendStreamInt(open_, qint32(runsPerTab_.size()));
    appendStreamString(open_, title);
    appendStreamString(open_, backgroundKey);
    if (!backgroundKey.isEmpty()) {
        appendStreamInt(open_, png.isEmpty() ? 0 : 1);
        if (!png.isEmpty()) {
            cut();
            pieces_.append({png, true});
        }
    }
    appendStreamInt(open_, buttonCount);
    cut();
    runsPerTab_.push_back(0);
    buttonIndex_ = 0;
}

void picker_tab_stream_pieces::addButton(const buttonAttributes& att) {
    run_.append(&att);
    if (run_.size() == records_per_piece)
        end_run();
}

QVector<picker_stream_piece> picker_tab_stream_pieces::take() {
    end_run();
    cut();
    if (cache_ != nullptr) {
        cache_->tabs_.resize(runsPerTab_.size());
        for (size_t tab = 0; tab < runsPerTab_.size(); ++tab)
            cache_->tabs_[tab].resize(runsPerTab_[tab]);
    }
    return std::move(pieces_);
}

void picker_tab_stream_pieces::cut() {
    if (open_.isEmpty())
        return;
    pieces_.append({open_, false});
    open_.clear();
}

void picker_tab_stream_pieces::end_run() {
    if (run_.isEmpty())
        return;
    picker_record_cache::record_run* cached = nullptr;
    if (cache_ != nullptr) {
        const size_t tab = runsPerTab_.size() - 1;
        if (cache_->tabs_.size() <= tab)
            cache_->tabs_.resize(tab + 1);
        std::vector<picker_record_cache::record_run>& runs = cache_->tabs_[tab];
        if (runs.size() <= runsPerTab_[tab])
            runs.resize(runsPerTab_[tab] + 1);
        cached = &runs[runsPerTab_[tab]];
    }
    const bool unchanged = cached != nullptr && cached->buttons.size() == run_.size() &&
                           std::equal(run_.cbegin(), run_.cend(), cached->buttons.cbegin(),
                                      [](const buttonAttributes* added,
                                         const buttonAttributes& kept) { return *added == kept; });
    QByteArray bytes;
    if (unchanged) {
        bytes = cached->bytes;
    } else {
        bytes.reserve(run_.size() * typical_record_bytes);
        for (int i = 0; i < run_.size(); ++i)
            appendButtonRecord(bytes, buttonIndex_ + i, *run_.at(i));
        if (cached != nullptr) {
            cached->buttons.clear();
            for (const buttonAttributes* att : run_)
                cached->buttons.append(*att);
            cached->bytes = bytes;
        }
    }
    pieces_.append({bytes, false});
    buttonIndex_ += run_.size();
    ++runsPerTab_.back();
    run_.clear();
}

void picker_piece_compressor::stream_deleter::operator()(z_stream_s* stream) const {
    deflateEnd(stream);
    delete stream;
}

picker_piece_compressor::picker_piece_compressor() {
    auto stream = std::make_unique<z_stream_s>();
    // Raw deflate: each piece becomes blocks of one zlib stream whose header and trailer are
    // written here.
    if (deflateInit2(stream.get(), records_level, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY) ==
        Z_OK) {
        level_ = records_level;
        stream_.reset(stream.release());
    }
}

picker_piece_compressor::~picker_piece_compressor() = default;

void picker_piece_compressor::deflate_piece(const picker_stream_piece& piece,
                                            deflated_piece& into) {
    into.raw = piece.bytes;
    into.adler = static_cast<quint32>(
        adler32_z(adler32_z(0, nullptr, 0), reinterpret_cast<const Bytef*>(piece.bytes.constData()),
                  static_cast<z_size_t>(piece.bytes.size())));
    z_stream_s* z = stream_.get();
    deflateReset(z);
    const int level = piece.compressed ? stored_level : records_level;
    if (level != level_) {
        deflateParams(z, level, Z_DEFAULT_STRATEGY);
        level_ = level;
    }
    // A sync flush ends the piece on a byte boundary with no block marked last, so the pieces'
    // blocks can follow one another; the reset before each piece keeps any from referring back.
    into.deflated.resize(static_cast<int>(deflateBound(z, static_cast<uLong>(piece.bytes.size()))) +
                         16);
    z->next_in = reinterpret_cast<Bytef*>(const_cast<char*>(piece.bytes.constData()));
    z->avail_in = static_cast<uInt>(piece.bytes.size());
    z->next_out = reinterpret_cast<Bytef*>(into.deflated.data());
    z->avail_out = static_cast<uInt>(into.deflated.size());
    while (deflate(z, Z_SYNC_FLUSH) == Z_OK && z->avail_out == 0) {
        const auto done = into.deflated.size();
        into.deflated.resize(done * 2);
        z->next_out = reinterpret_cast<Bytef*>(into.deflated.data() + done);
        z->avail_out = static_cast<uInt>(into.deflated.size() - done);
    }
    into.deflated.resize(into.deflated.size() - static_cast<int>(z->avail_out));
}

QByteArray picker_piece_compressor::compress(const QVector<picker_stream_piece>& pieces) {
    QByteArray joined;
    if (!stream_) {
        for (const picker_stream_piece& piece : pieces)
            joined += piece.bytes;
        return qCompress(joined, records_level);
    }
    cache_.resize(static_cast<size_t>(pieces.size()));
    qint64 rawSize = 0;
    qint64 deflatedSize = 0;
    for (int i = 0; i < pieces.size(); ++i) {
        deflated_piece& cached = cache_[static_cast<size_t>(i)];
        if (!same_bytes(cached.raw, pieces[i].bytes) || cached.deflated.isEmpty())
            deflate_piece(pieces[i], cached);
        rawSize += pieces[i].bytes.size();
        deflatedSize += cached.deflated.size();
    }

    // qCompress's layout: the uncompressed size, then a zlib stream (header, blocks, Adler-32).
    static const char zlib_header[] = {'\x78', '\x01'};
    static const char final_empty_block[] = {'\x03', '\x00'};
    joined.reserve(static_cast<int>(4 + 2 + deflatedSize + 2 + 4));
    char word[4];
    qToBigEndian<quint32>(static_cast<quint32>(rawSize), word);
    joined.append(word, 4);
    joined.append(zlib_header, 2);
    uLong adler = adler32_z(0, nullptr, 0);
    for (int i = 0; i < pieces.size(); ++i) {
        const deflated_piece& cached = cache_[static_cast<size_t>(i)];
        joined += cached.deflated;
        adler = adler32_combine(adler, cached.adler, static_cast<z_off_t>(cached.raw.size()));
    }
    joined.append(final_empty_block, 2);
    qToBigEndian<quint32>(static_cast<quint32>(adler), word);
    joined.append(word, 4);
    return joined;
}

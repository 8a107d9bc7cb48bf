#include "picker_background_key.h"

#include <QBuffer>
#include <QCryptographicHash>

namespace {

constexpr int digest_digits = 16;

bool holdsOther(const QHash<QString, QByteArray>& stored, const QString& key,
                const QByteArray& png) {
    const auto found = stored.constFind(key);
    return found != stored.constEnd() && found.value() != png;
}

} // namespace

QString backgroundKeyOf(const QByteArray& png) {
    const QByteArray digest = QCryptographicHash::hash(png, QCryptographicHash::Sha256).toHex();
    return QString::fromLatin1(digest.left(digest_digits));
}

QString backgroundKeyOf(const QImage& image) {
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return backgroundKeyOf(png);
}

bool isPlainBackgroundKey(const QString& key) {
    if (key.isEmpty())
        return false;
    for (const QChar c : key) {
        const ushort u = c.unicode();
        const bool plain = (u >= 'a' && u <= 'z') || (u >= 'A' && u <= 'Z') ||
                           (u >= '0' && u <= '9') || u == '_' || u == '-' || u == '.';
        if (!plain)
            return false;
    }
    return true;
}

QString freeBackgroundKey(const QString& key, const QByteArray& png,
                          const QHash<QString, QByteArray>& stored) {
    if (png.isEmpty() || !holdsOther(stored, key, png))
        return key;
    const QString fresh = backgroundKeyOf(png);
    QString candidate = fresh;
    // Sixteen hex digits shared by two images: only a key made to collide gets here.
    for (int n = 2; holdsOther(stored, candidate, png); ++n)
        candidate = fresh + QLatin1Char('_') + QString::number(n);
    return candidate;
}

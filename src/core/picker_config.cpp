#include "picker_config.h"

#include <QFileInfo>
#include <QSettings>

namespace {

enum class scan_state { between, double_quoted, single_quoted, bare };

} // namespace

int tokenize(int count, const QString& line, QStringList& tokens) {
    scan_state state = scan_state::between;
    QString current;
    const int end = qMin(count, static_cast<int>(line.size()));
    for (int i = 0; i < end; ++i) {
        const QChar c = line.at(i);
        switch (state) {
        case scan_state::between:
            if (c.isSpace())
                break;
            if (c == QLatin1Char('"')) {
                state = scan_state::double_quoted;
            } else if (c == QLatin1Char('\'')) {
                state = scan_state::single_quoted;
            } else if (c == QLatin1Char('=')) {
                tokens.append(QStringLiteral("="));
            } else if (c == QLatin1Char('#')) {
                return 0;
            } else {
                current = c;
                state = scan_state::bare;
            }
            break;
        case scan_state::double_quoted:
        case scan_state::single_quoted: {
            const QChar closing =
                state == scan_state::double_quoted ? QLatin1Char('"') : QLatin1Char('\'');
            if (c == closing) {
                tokens.append(current);
                current.clear();
                state = scan_state::between;
            } else {
                current += c;
            }
            break;
        }
        case scan_state::bare:
            if (c.isSpace()) {
                tokens.append(current);
                current.clear();
                state = scan_state::between;
            } else if (c == QLatin1Char('=')) {
                // Stays a bare word on purpose: "name= path" then closes an empty word.
                tokens.append(current);
                tokens.append(QStringLiteral("="));
                current.clear();
            } else {
                current += c;
            }
            break;
        }
    }
    if (!current.isEmpty())
        tokens.append(current);
    return 0;
}

QString picker_config_path() {
    const QString fromEnvironment = qEnvironmentVariable("TALVORA_PICKER_CONFIG");
    if (!fromEnvironment.isEmpty())
        return fromEnvironment;
    const QSettings settings(QStringLiteral("Talvora"), QStringLiteral("picker"));
    return QFileInfo(settings.fileName()).absolutePath() + QStringLiteral("/pickers.cfg");
}

bool configValues(const QStringList& tokens, const QString& key, QStringList& values) {
    const QString equals = QStringLiteral("=");
    if (tokens.size() < 2 || tokens.at(0) != key || tokens.at(1) != equals)
        return false;
    values.clear();
    for (int i = 2; i < tokens.size(); ++i) {
        // The scanner splits a bare A=B at its "="; its three tokens are one value again.
        if (tokens.at(i) == equals && !values.isEmpty() && i + 1 < tokens.size()) {
            values.last() += equals + tokens.at(i + 1);
            ++i;
        } else {
            values.append(tokens.at(i));
        }
    }
    return true;
}

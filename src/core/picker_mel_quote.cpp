#include "picker_mel_quote.h"

QString picker_mel_quote(const QString& value) {
    QString quoted;
    quoted.reserve(value.size() + 2);
    quoted.append(QLatin1Char('"'));
    for (const QChar c : value) {
        if (c == QLatin1Char('\\') || c == QLatin1Char('"'))
            quoted.append(QLatin1Char('\\')).append(c);
        else if (c == QLatin1Char('\n'))
            quoted.append(QLatin1String("\\n"));
        else if (c == QLatin1Char('\r'))
            quoted.append(QLatin1String("\\r"));
        else if (c == QLatin1Char('\t'))
            quoted.append(QLatin1String("\\t"));
        else
            quoted.append(c);
    }
    quoted.append(QLatin1Char('"'));
    return quoted;
}

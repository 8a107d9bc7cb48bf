#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

// Recent pickers: menu text to file path (forward slashes).
using string_map = QMap<QString, QString>;

// Splits the first count characters of a configuration line into tokens, appended to tokens.
// Quotes group (no escapes), "=" is a token of its own, "#" between tokens starts a comment.
int tokenize(int count, const QString& line, QStringList& tokens);

// The configuration file the window reads at start: $TALVORA_PICKER_CONFIG, or else
// pickers.cfg beside the picker's own settings.
QString picker_config_path();

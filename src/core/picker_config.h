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

// Settings the configuration file holds beside its pickers, each on a line of its own key:
//   mirrorRules = L_*=R_* *_L=*_R
//   gridSize = 10
inline constexpr char picker_mirror_rules_key[] = "mirrorRules";
inline constexpr char picker_grid_size_key[] = "gridSize";
// The values of a line's tokens when it is "KEY = VALUE ...", an A=B written bare or quoted
// counting as one value; false when the line is not the key's.
bool configValues(const QStringList& tokens, const QString& key, QStringList& values);

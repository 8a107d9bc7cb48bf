#pragma once

#include <QString>

// A node name or scene key as one MEL string literal: double quotes around it, with backslashes,
// quotes and line breaks escaped, so no value can end the literal and start a statement of its
// own. Every MEL text built from such a value goes through it.
QString picker_mel_quote(const QString& value);

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

// The statements of Maya ASCII text, read over its bytes so that each keeps the exact place it
// was written at.
namespace picker_ma_lexing {

struct token {
    QString text;
    bool quoted = false;
    // A quoted token written as one string, not as pieces joined with '+'.
    bool plain = true;
    // The token as written: its first byte and one past its last.
    int start = 0;
    int end = 0;
};

struct raw_statement {
    // The statement's first byte and one past its ';'.
    int start = 0;
    int end = 0;
    int line = 0;
    QList<token> tokens;
};

class lexer {
public:
    explicit lexer(const QByteArray& bytes);

    // The next statement; false at the end of the text, and with error set ("LINE: what") when
    // the text breaks a rule or a limit.
    bool next(raw_statement& out, QString& error);

private:
    bool skipBlank(QString& error);
    bool endLine(int at, QString& error);
    bool readString(QByteArray& out, int startLine, QString& error);
    // "a" + "b" across lines reads as one string.
    bool readJoinedString(token& out, QString& error);

    const QByteArray& bytes_;
    int size_ = 0;
    int pos_ = 0;
    int line_ = 1;
    int lineStart_ = 0;
};

} // namespace picker_ma_lexing

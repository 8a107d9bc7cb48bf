#include "picker_maya_ascii_lexer.h"

#include "picker_maya_ascii.h"

namespace picker_ma_lexing {

namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\v' || c == '\f' || c == '\n';
}

} // namespace

lexer::lexer(const QByteArray& bytes) : bytes_(bytes), size_(int(bytes.size())) {}

bool lexer::endLine(int at, QString& error) {
    if (at - lineStart_ > picker_ma_limit::line_bytes) {
        error = QStringLiteral("%1: a line longer than %2 bytes")
                    .arg(line_)
                    .arg(picker_ma_limit::line_bytes);
        return false;
    }
    lineStart_ = at + 1;
    ++line_;
    return true;
}

bool lexer::skipBlank(QString& error) {
    while (pos_ < size_) {
        const char c = bytes_.at(pos_);
        if (c == '\n') {
            if (!endLine(pos_, error))
                return false;
            ++pos_;
        } else if (isBlank(c)) {
            ++pos_;
        } else if (c == '/' && pos_ + 1 < size_ && bytes_.at(pos_ + 1) == '/') {
            const int newline = int(bytes_.indexOf('\n', pos_));
            pos_ = newline < 0 ? size_ : newline;
        } else {
            return true;
        }
    }
    return true;
}

bool lexer::next(raw_statement& out, QString& error) {
    out = raw_statement();
    if (!skipBlank(error))
        return false;
    if (pos_ >= size_) {
        // The last line is measured where the text ends.
        endLine(size_, error);
        return false;
    }
    out.start = pos_;
    out.line = line_;
    while (pos_ < size_) {
        const char c = bytes_.at(pos_);
        if (c == ';') {
            out.end = ++pos_;
            return true;
        }
        token t;
        t.start = pos_;
        if (c == '"') {
            t.quoted = true;
            if (!readJoinedString(t, error))
                return false;
        } else {
            while (pos_ < size_ && !isBlank(bytes_.at(pos_)) && bytes_.at(pos_) != ';' &&
                   bytes_.at(pos_) != '"')
                ++pos_;
            t.text = QString::fromUtf8(bytes_.constData() + t.start, pos_ - t.start);
        }
        t.end = pos_;
        out.tokens.append(t);
        if (!skipBlank(error))
            return false;
    }
    error = QStringLiteral("%1: statement not ended with ';'").arg(out.line);
    return false;
}

bool lexer::readString(QByteArray& out, int startLine, QString& error) {
    ++pos_;
    while (pos_ < size_) {
        const char c = bytes_.at(pos_++);
        if (c == '"')
            return true;
        if (c == '\n')
            break;
        if (c == '\\' && pos_ < size_) {
            const char escaped = bytes_.at(pos_++);
            out += escaped == 'n' ? '\n' : escaped == 't' ? '\t' : escaped == 'r' ? '\r' : escaped;
        } else {
            out += c;
        }
        if (out.size() > picker_ma_limit::string_bytes) {
            error = QStringLiteral("%1: a string longer than %2 bytes")
                        .arg(startLine)
                        .arg(picker_ma_limit::string_bytes);
            return false;
        }
    }
    error = QStringLiteral("%1: string not closed").arg(startLine);
    return false;
}

bool lexer::readJoinedString(token& out, QString& error) {
    const int startLine = line_;
    QByteArray text;
    if (!readString(text, startLine, error))
        return false;
    for (;;) {
        const int savedPos = pos_;
        const int savedLine = line_;
        const int savedLineStart = lineStart_;
        if (!skipBlank(error))
            return false;
        if (pos_ >= size_ || bytes_.at(pos_) != '+') {
            pos_ = savedPos;
            line_ = savedLine;
            lineStart_ = savedLineStart;
            break;
        }
        ++pos_;
        if (!skipBlank(error))
            return false;
        if (pos_ >= size_ || bytes_.at(pos_) != '"') {
            error = QStringLiteral("%1: '+' must join two strings").arg(line_);
            return false;
        }
        out.plain = false;
        if (!readString(text, startLine, error))
            return false;
    }
    out.text = QString::fromUtf8(text);
    return true;
}

} // namespace picker_ma_lexing

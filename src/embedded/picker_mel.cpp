#include "picker_mel.h"

#include <algorithm>

namespace {

const QString notAnArray = QStringLiteral("(kInvalidParameter): Argument is not a string array");
const QString notAString = QStringLiteral("(kInvalidParameter): Argument is not a string");
const QString noSuchArgument = QStringLiteral("(kInvalidParameter): Argument index out of range");
// Blocks inside procedure bodies; deeper only comes from text made to be hostile.
constexpr int max_block_depth = 256;

void set_status(host_status* status, const host_status& value) {
    if (status)
        *status = value;
}

bool is_word_end(QChar c) {
    return c.isSpace() || c == QLatin1Char(';') || c == QLatin1Char('"') || c == QLatin1Char('`') ||
           c == QLatin1Char('(') || c == QLatin1Char(')') || c == QLatin1Char('{') ||
           c == QLatin1Char('}') || c == QLatin1Char(',');
}

bool is_identifier_char(QChar c) {
    return c.isLetterOrNumber() || c == QLatin1Char('_');
}

// A cursor over the text with the lexical rules shared by statements and procedure bodies.
class mel_reader {
public:
    explicit mel_reader(const QString& text) : text_(text) {}

    picker_mel_script read() {
        picker_mel_script script;
        while (script.error.isEmpty()) {
            skip_blanks_and_comments();
            if (at_end())
                break;
            if (peek() == QLatin1Char(';')) {
                ++pos_;
                continue;
            }
            picker_mel_statement statement;
            statement.line = line_at(pos_);
            if (!read_statement(statement, script.error)) {
                script.errorLine = line_at(std::min(pos_, int(text_.size())));
                break;
            }
            script.statements.append(statement);
        }
        if (!script.error.isEmpty())
            script.statements.clear();
        return script;
    }

private:
    bool at_end() const { return pos_ >= text_.size(); }

    // Positions are asked for in the order the text is read; counting goes on from the last.
    int line_at(int pos) {
        if (pos < counted_) {
            counted_ = 0;
            line_ = 1;
        }
        for (; counted_ < pos; ++counted_) {
            if (text_.at(counted_) == QLatin1Char('\n'))
                ++line_;
        }
        return line_;
    }
    QChar peek(int ahead = 0) const {
        const int at = pos_ + ahead;
        return at < text_.size() ? text_.at(at) : QChar();
    }

    void skip_blanks_and_comments() {
        while (!at_end()) {
            if (peek().isSpace()) {
                ++pos_;
            } else if (peek() == QLatin1Char('/') && peek(1) == QLatin1Char('/')) {
                while (!at_end() && peek() != QLatin1Char('\n'))
                    ++pos_;
            } else if (peek() == QLatin1Char('/') && peek(1) == QLatin1Char('*')) {
                const int close = text_.indexOf(QLatin1String("*/"), pos_ + 2);
                pos_ = close < 0 ? text_.size() : close + 2;
            } else {
                return;
            }
        }
    }

    QString read_identifier() {
        const int start = pos_;
        while (!at_end() && is_identifier_char(peek()))
            ++pos_;
        return text_.mid(start, pos_ - start);
    }

    // At an opening quote; leaves the cursor after the closing one.
    bool read_quoted(QString& value, QString& error) {
        ++pos_;
        while (!at_end()) {
            const QChar c = peek();
            ++pos_;
            if (c == QLatin1Char('"'))
                return true;
            if (c != QLatin1Char('\\')) {
                value.append(c);
                continue;
            }
            if (at_end())
                break;
            const QChar escaped = peek();
            ++pos_;
            if (escaped == QLatin1Char('n'))
                value.append(QLatin1Char('\n'));
            else if (escaped == QLatin1Char('r'))
                value.append(QLatin1Char('\r'));
            else if (escaped == QLatin1Char('t'))
                value.append(QLatin1Char('\t'));
            else
                value.append(escaped);
        }
        error = QStringLiteral("Unterminated string.");
        return false;
    }

    // At an opening backquote; quoted strings inside may hold backquotes of their own.
    bool read_backquoted(QString& command, QString& error) {
        ++pos_;
        const int start = pos_;
        while (!at_end()) {
            const QChar c = peek();
            if (c == QLatin1Char('`')) {
                command = text_.mid(start, pos_ - start);
                ++pos_;
                return true;
            }
            if (c == QLatin1Char('"')) {
                QString ignored;
                if (!read_quoted(ignored, error))
                    return false;
                continue;
            }
            ++pos_;
        }
        error = QStringLiteral("Unterminated backquote.");
        return false;
    }

    bool read_word(picker_mel_word& word, QString& error) {
        const QChar c = peek();
        if (c == QLatin1Char('"')) {
            word.type = picker_mel_word::kind::quoted;
            return read_quoted(word.text, error);
        }
        if (c == QLatin1Char('`')) {
            word.type = picker_mel_word::kind::backquoted;
            return read_backquoted(word.text, error);
        }
        if (c == QLatin1Char('$')) {
            error = QStringLiteral("Variables are not supported here.");
            return false;
        }
        const int start = pos_;
        while (!at_end() && !is_word_end(peek()))
            ++pos_;
        if (pos_ == start) {
            error = QStringLiteral("Syntax error at \"%1\".").arg(c);
            return false;
        }
        word.type = picker_mel_word::kind::bare;
        word.text = text_.mid(start, pos_ - start);
        return true;
    }

    bool read_statement(picker_mel_statement& statement, QString& error) {
        const int start = pos_;
        const QString first = read_identifier();
        if (first.isEmpty()) {
            error = QStringLiteral("Syntax error at \"%1\".").arg(peek());
            return false;
        }
        if (first == QLatin1String("global")) {
            skip_blanks_and_comments();
            if (read_identifier() == QLatin1String("proc"))
                return read_procedure(statement, error);
            pos_ = start;
            error = QStringLiteral("Only procedure definitions may be global.");
            return false;
        }
        statement.command = first;
        skip_blanks_and_comments();
        if (peek() == QLatin1Char('('))
            return read_call_arguments(statement, error);
        // print is MEL's own, with one value: a second word is the next statement run on.
        const bool oneValue = first == QLatin1String("print");
        while (true) {
            skip_blanks_and_comments();
            if (at_end() || peek() == QLatin1Char(';')) {
                if (oneValue && statement.arguments.isEmpty()) {
                    error = QStringLiteral("Syntax error: print needs a value.");
                    return false;
                }
                return true;
            }
            if (oneValue && !statement.arguments.isEmpty()) {
                const int nextStart = pos_;
                picker_mel_word next;
                read_word(next, error);
                pos_ = nextStart;
                error = QStringLiteral("Syntax error at \"%1\": is a ';' missing before it?")
                            .arg(next.text.left(40));
                return false;
            }
            picker_mel_word word;
            if (!read_word(word, error))
                return false;
            statement.arguments.append(word);
        }
    }

    // name("a", "b"): a comma-separated list in parentheses, then the end of the statement.
    bool read_call_arguments(picker_mel_statement& statement, QString& error) {
        ++pos_;
        skip_blanks_and_comments();
        bool expectArgument = peek() != QLatin1Char(')');
        while (expectArgument) {
            skip_blanks_and_comments();
            picker_mel_word word;
            if (!read_word(word, error))
                return false;
            statement.arguments.append(word);
            skip_blanks_and_comments();
            expectArgument = peek() == QLatin1Char(',');
            if (expectArgument)
                ++pos_;
        }
        if (peek() != QLatin1Char(')')) {
            error = QStringLiteral("Syntax error: missing \")\" after the arguments of %1.")
                        .arg(statement.command);
            return false;
        }
        ++pos_;
        skip_blanks_and_comments();
        if (!at_end() && peek() != QLatin1Char(';')) {
            error = QStringLiteral("Syntax error after %1(...).").arg(statement.command);
            return false;
        }
        return true;
    }

    // After "global proc": the return type, the name and the parameter list are read, the body
    // is only skipped.
    bool read_procedure(picker_mel_statement& statement, QString& error) {
        const int open = text_.indexOf(QLatin1Char('('), pos_);
        if (open < 0) {
            error = QStringLiteral("Syntax error in a procedure definition.");
            return false;
        }
        int nameEnd = open;
        while (nameEnd > pos_ && text_.at(nameEnd - 1).isSpace())
            --nameEnd;
        int nameStart = nameEnd;
        while (nameStart > pos_ && is_identifier_char(text_.at(nameStart - 1)))
            --nameStart;
        statement.definedProcedure = text_.mid(nameStart, nameEnd - nameStart);
        const int close = text_.indexOf(QLatin1Char(')'), open);
        if (statement.definedProcedure.isEmpty() || close < 0) {
            error = QStringLiteral("Syntax error in a procedure definition.");
            return false;
        }
        pos_ = close + 1;
        skip_blanks_and_comments();
        if (peek() != QLatin1Char('{')) {
            error = QStringLiteral("Procedure %1 has no body.").arg(statement.definedProcedure);
            return false;
        }
        return skip_block(error);
    }

    bool skip_block(QString& error) {
        int depth = 0;
        while (true) {
            skip_blanks_and_comments();
            if (at_end())
                break;
            const QChar c = peek();
            if (c == QLatin1Char('"')) {
                QString ignored;
                if (!read_quoted(ignored, error))
                    return false;
                continue;
            }
            ++pos_;
            if (c == QLatin1Char('{') && ++depth > max_block_depth) {
                error = QStringLiteral("Blocks nested more than %1 deep.").arg(max_block_depth);
                return false;
            }
            if (c == QLatin1Char('}') && --depth == 0)
                return true;
        }
        error = QStringLiteral("Unterminated procedure body.");
        return false;
    }

    const QString& text_;
    int pos_ = 0;
    int counted_ = 0;
    int line_ = 1;
};

} // namespace

unsigned picker_mel_arg_list::length(host_status* status) const {
    set_status(status, host_status());
    return static_cast<unsigned>(slots_.size());
}

QString picker_mel_arg_list::asString(unsigned index, host_status* status) const {
    if (index >= static_cast<unsigned>(slots_.size())) {
        set_status(status, host_status::failure(noSuchArgument));
        return QString();
    }
    const picker_mel_value& slot = slots_.at(static_cast<int>(index));
    if (slot.isArray) {
        set_status(status, host_status::failure(notAString));
        return QString();
    }
    set_status(status, host_status());
    return slot.items.value(0);
}

QStringList picker_mel_arg_list::asStringArray(unsigned& index, host_status* status) const {
    if (index >= static_cast<unsigned>(slots_.size())) {
        set_status(status, host_status::failure(noSuchArgument));
        return QStringList();
    }
    const picker_mel_value& slot = slots_.at(static_cast<int>(index));
    if (!slot.isArray) {
        set_status(status, host_status::failure(notAnArray));
        return QStringList();
    }
    set_status(status, host_status());
    return slot.items;
}

picker_mel_script picker_mel_parse(const QString& text) {
    return mel_reader(text).read();
}

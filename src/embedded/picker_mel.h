#pragma once

#include "picker_host.h"

#include <QString>
#include <QStringList>
#include <QVector>

// A MEL value: one string, or a string array.
struct picker_mel_value {
    bool isArray = false;
    QStringList items;

    static picker_mel_value string(const QString& text) { return {false, {text}}; }
    static picker_mel_value array(const QStringList& items) { return {true, items}; }
};

// Command arguments held as slots, each a string or a whole string array, read the way the
// host's argument list reads them: a string slot is no array and an array slot is no string.
class picker_mel_arg_list : public picker_arg_list {
public:
    picker_mel_arg_list() = default;
    explicit picker_mel_arg_list(const QVector<picker_mel_value>& argSlots) : slots_(argSlots) {}

    unsigned length(host_status* status = nullptr) const override;
    QString asString(unsigned index, host_status* status = nullptr) const override;
    QStringList asStringArray(unsigned& index, host_status* status = nullptr) const override;

private:
    QVector<picker_mel_value> slots_;
};

// One piece of a command statement as written.
struct picker_mel_word {
    enum class kind { bare, quoted, backquoted };
    kind type = kind::bare;
    // Bare and backquoted words verbatim; quoted words with their escapes resolved.
    QString text;
};

// A statement: a command with its arguments, or a global procedure definition.
struct picker_mel_statement {
    // The line the statement starts on, from 1.
    int line = 0;
    // Set for a "global proc" definition, whose body is not kept.
    QString definedProcedure;
    QString command;
    QVector<picker_mel_word> arguments;
};

struct picker_mel_script {
    QVector<picker_mel_statement> statements;
    // Empty when the whole text was understood; nothing of a text with an error runs.
    QString error;
    // Where the error was found, from 1.
    int errorLine = 0;
};

// Reads the small MEL subset that the picker itself issues: statements split on ';', comments,
// command syntax with bare, quoted and backquoted words, the call form name("a", "b"), global
// procedure definitions, and print with its one value.
picker_mel_script picker_mel_parse(const QString& text);

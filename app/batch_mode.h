#pragma once

#include <QString>
#include <QStringList>

class picker_embedded_host;

// What happens between a user's actions: window events handled (the picker's scene write waits
// on a zero timer) and the host's idle queue run empty, until neither has anything left.
void settle_host(picker_embedded_host& host);

// Nobody is at the screen: every question takes its default answer, and says so on stderr.
void answer_prompts_unattended();

// Runs each statement in order, the idle queue emptied after each as between a user's actions,
// printing the script log to stdout (errors go to stderr). Stops at the first statement that
// fails; the value is the program's exit code.
int run_batch(picker_embedded_host& host, const QStringList& statements);

#pragma once

#include <QList>
#include <QString>

class picker_embedded_host;

// What happens between a user's actions: window events handled (the picker's scene write waits
// on a zero timer) and the host's idle queue run empty, until neither has anything left.
void settle_host(picker_embedded_host& host);

// Nobody is at the screen: every question takes its default answer, and says so on stderr.
void answer_prompts_unattended();

// The offscreen platform's notices about what it cannot do for windows nobody sees are dropped;
// every other message still reaches stderr.
void quiet_platform_notices();

// MEL to run in batch mode: a -c statement, or the text of a --script file and its name.
struct batch_script {
    QString mel;
    // Named with the line in the script's errors; empty for -c.
    QString source;
};

// Runs each script in order, the idle queue emptied after each as between a user's actions.
// What the host prints goes to stdout, each statement's result after its own output, warnings
// and errors to stderr. Stops at the first statement that fails; the value is the program's
// exit code.
int run_batch(picker_embedded_host& host, const QList<batch_script>& scripts);

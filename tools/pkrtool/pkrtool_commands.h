#pragma once

#include <QStringList>

class QIODevice;

enum pkrtool_exit : int { pkrtool_ok = 0, pkrtool_failed = 1, pkrtool_usage = 2 };

// Runs one command line (without the program name) and returns the exit status.
int runPkrtool(const QStringList& arguments, QIODevice& out, QIODevice& err);

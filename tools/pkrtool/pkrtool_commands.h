#pragma once

#include "pkrtool_cli.h"

#include <QStringList>

class QIODevice;

// Runs one command line (without the program name) and returns the exit status.
int runPkrtool(const QStringList& arguments, QIODevice& out, QIODevice& err);

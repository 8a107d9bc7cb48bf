#pragma once

#include "pkrtool_cli.h"

#include <QStringList>

// pkrtool mirror: the sided buttons' copies on the other side of the picker.
int runMirror(const pkrtool_run& run, const QStringList& arguments);

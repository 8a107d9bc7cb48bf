#pragma once

#include <QStringList>

class QIODevice;

// pkrtool scene SCENE.ma: the pickers a Maya ASCII scene stores, one line per tab.
int runScene(const QStringList& arguments, QIODevice& out, QIODevice& err);
// pkrtool extract SCENE.ma -o DIR: each of those tabs as a picker file in DIR.
int runExtract(const QStringList& arguments, QIODevice& out, QIODevice& err);

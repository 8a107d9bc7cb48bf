#pragma once

#include <QStringList>

class QIODevice;

// pkrtool scene SCENE.ma: the pickers a Maya ASCII scene stores, one line per tab.
int runScene(const QStringList& arguments, QIODevice& out, QIODevice& err);
// pkrtool extract SCENE.ma -o DIR: each of those tabs as a picker file in DIR.
int runExtract(const QStringList& arguments, QIODevice& out, QIODevice& err);
// pkrtool store SCENE.ma --picker FILE.pkr ... [-o OUT.ma]: the pickers stored in the scene as
// the window stores its tabs, replacing any it had.
int runStore(const QStringList& arguments, QIODevice& out, QIODevice& err);

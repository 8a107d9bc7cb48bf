#pragma once

#include <QStringList>

class pkrtool_run;

// pkrtool scene SCENE.ma [--json]: the pickers a Maya ASCII scene stores, one line per tab.
int runScene(const pkrtool_run& run, const QStringList& arguments);
// pkrtool extract SCENE.ma -o DIR: each of those tabs as a picker file in DIR, all or none.
int runExtract(const pkrtool_run& run, const QStringList& arguments);
// pkrtool store SCENE.ma --picker FILE.pkr ... [-o OUT.ma]: the pickers stored in the scene as
// the window stores its tabs, replacing any it had, every other byte of the scene kept.
int runStore(const pkrtool_run& run, const QStringList& arguments);

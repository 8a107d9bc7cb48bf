#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

// The rig the standalone program opens: a character under the "hero:" namespace, and a picker
// for it stored in the scene the way the plug-in stores its tabs.
QStringList demo_scene_nodes();
// fileInfo entries of the demo scene.
QMap<QString, QString> demo_scene_file_info();

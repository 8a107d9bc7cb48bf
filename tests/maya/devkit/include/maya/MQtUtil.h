#pragma once

#include <maya/MApiNamespace.h>
#include <maya/MString.h>

#include <QtCore/QString>

class QAction;
class QObject;
class QWidget;

OPENMAYA_MAJOR_NAMESPACE_OPEN

class MQtUtil {
public:
    static QWidget* mainWindow();
    static QString toQString(const MString& text);
    static MString toMString(const QString& text);
};

OPENMAYA_MAJOR_NAMESPACE_CLOSE

// Stand-in OpenMayaUI: string conversion and a main window the tests choose.
#include "maya_fake.h"

#include <maya/MQtUtil.h>

#include <QByteArray>
#include <QPointer>
#include <QWidget>

namespace {
QPointer<QWidget>& mainWindowSlot() {
    static QPointer<QWidget> window;
    return window;
}
} // namespace

void maya_fake::setMainWindow(QWidget* window) {
    mainWindowSlot() = window;
}

OPENMAYA_MAJOR_NAMESPACE_OPEN

QWidget* MQtUtil::mainWindow() {
    return mainWindowSlot();
}

QString MQtUtil::toQString(const MString& text) {
    return QString::fromUtf8(text.asUTF8());
}

MString MQtUtil::toMString(const QString& text) {
    const QByteArray utf8 = text.toUtf8();
    MString result;
    result.setUTF8(utf8.constData());
    return result;
}

OPENMAYA_MAJOR_NAMESPACE_CLOSE

#include "pkrtool_render.h"

#include "picker_file.h"
#include "picker_view.h"
#include "pkrtool_commands.h"

#include <QApplication>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QRegularExpression>
#include <QSaveFile>

#include <cstdio>

namespace {

const char render_usage[] =
    "usage: pkrtool render FILE.pkr -o OUT.png [--size WxH] [--zoom Z | --frame] "
    "[--select NAME...]\n";

struct render_arguments {
    QString input;
    QString output;
    QSize size{1024, 768};
    double zoom = 0.0; // 0: framed
    QStringList select;
    QString error;
};

void writeText(QIODevice& device, const QString& text) {
    device.write(text.toUtf8());
}

QSize parseSize(const QString& text) {
    static const QRegularExpression pattern(QStringLiteral("^(\\d{1,5})x(\\d{1,5})$"));
    const QRegularExpressionMatch match = pattern.match(text);
    if (!match.hasMatch())
        return QSize();
    const QSize size(match.captured(1).toInt(), match.captured(2).toInt());
    // QImage refuses anything larger; a zero edge has nothing to draw.
    if (size.width() < 1 || size.height() < 1 || size.width() > 16384 || size.height() > 16384)
        return QSize();
    return size;
}

render_arguments parseRender(const QStringList& arguments) {
    render_arguments parsed;
    bool framed = false;
    bool zoomed = false;
    for (int i = 0; i < arguments.size() && parsed.error.isEmpty(); ++i) {
        const QString& argument = arguments.at(i);
        const bool hasValue = i + 1 < arguments.size();
        if (argument == QLatin1String("-o") || argument == QLatin1String("--output")) {
            if (hasValue)
                parsed.output = arguments.at(++i);
            else
                parsed.error = QStringLiteral("%1 needs a file name").arg(argument);
        } else if (argument == QLatin1String("--size")) {
            parsed.size = hasValue ? parseSize(arguments.at(++i)) : QSize();
            if (!parsed.size.isValid())
                parsed.error = QStringLiteral("--size wants WIDTHxHEIGHT, each 1 to 16384");
        } else if (argument == QLatin1String("--zoom")) {
            bool ok = false;
            parsed.zoom = hasValue ? arguments.at(++i).toDouble(&ok) : 0.0;
            if (!ok || parsed.zoom <= 0.0)
                parsed.error = QStringLiteral("--zoom wants a number above 0");
            zoomed = true;
        } else if (argument == QLatin1String("--frame")) {
            framed = true;
        } else if (argument == QLatin1String("--select")) {
            while (i + 1 < arguments.size() && !arguments.at(i + 1).startsWith(QLatin1Char('-')))
                parsed.select << arguments.at(++i);
        } else if (argument.startsWith(QLatin1Char('-')) || !parsed.input.isEmpty()) {
            parsed.error = QStringLiteral("unexpected argument '%1'").arg(argument);
        } else {
            parsed.input = argument;
        }
    }
    if (!parsed.error.isEmpty())
        return parsed;
    if (framed && zoomed)
        parsed.error = QStringLiteral("--zoom and --frame exclude each other");
    else if (parsed.input.isEmpty())
        parsed.error = QStringLiteral("no picker file given");
    else if (parsed.output.isEmpty())
        parsed.error = QStringLiteral("no output given (-o OUT.png)");
    return parsed;
}

// The view as the window shows it: the same buttons, background and lit states.
void loadView(picker_view& view, const picker_tab_record& tab, const QStringList& select) {
    if (!tab.backgroundPng.isEmpty()) {
        QPixmap image;
        image.loadFromData(tab.backgroundPng, "PNG");
        view.setBackground(tab.backgroundKey, image);
    }
    for (const buttonAttributes& att : tab.buttons)
        view.push_button(att, -1);
    view.conform_to_set(button_set::fromStringList(select));
}

} // namespace

int runRender(const QStringList& arguments, QIODevice& out, QIODevice& err) {
    const render_arguments parsed = parseRender(arguments);
    if (!parsed.error.isEmpty()) {
        writeText(err, QStringLiteral("pkrtool render: %1\n").arg(parsed.error));
        err.write(render_usage);
        return pkrtool_usage;
    }
    QFile file(parsed.input);
    if (!file.open(QIODevice::ReadOnly)) {
        writeText(err, QStringLiteral("pkrtool render: cannot open '%1': %2\n")
                           .arg(parsed.input, file.errorString()));
        return pkrtool_failed;
    }
    picker_tab_record tab;
    const picker_read_result read = readPickerFile(file, tab);
    if (!read.ok()) {
        writeText(err, QStringLiteral("pkrtool render: '%1' is not a picker file: %2\n")
                           .arg(parsed.input, read.error));
        return pkrtool_failed;
    }

    picker_view view;
    view.resize(parsed.size);
    loadView(view, tab, parsed.select);
    if (parsed.zoom > 0.0) {
        view.setZoom(static_cast<float>(parsed.zoom), QPoint(0, 0));
    } else {
        // As "Frame View" does it, without the glide.
        view.frame_view();
        while (view.animating())
            view.animate_zoom();
    }

    QImage image(parsed.size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        // The help links belong to the window, not to a picture of the picker.
        view.paint(painter, QRect(QPoint(0, 0), parsed.size), false);
    }
    QSaveFile target(parsed.output);
    if (!target.open(QIODevice::WriteOnly) || !image.save(&target, "PNG") || !target.commit()) {
        writeText(err, QStringLiteral("pkrtool render: cannot write '%1': %2\n")
                           .arg(parsed.output, target.errorString()));
        return pkrtool_failed;
    }
    writeText(out, QStringLiteral("%1: %2 x %3, zoom %4\n")
                       .arg(parsed.output)
                       .arg(parsed.size.width())
                       .arg(parsed.size.height())
                       .arg(view.zoom()));
    return pkrtool_ok;
}

int renderMain(int argc, char* argv[]) {
    // Thumbnails are made on build machines and in pipelines, where no display may exist.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY") &&
        qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QFile out;
    QFile err;
    out.open(stdout, QIODevice::WriteOnly);
    err.open(stderr, QIODevice::WriteOnly);
    return runRender(QApplication::arguments().mid(2), out, err);
}

#include "pkrtool_render.h"

#include "picker_file.h"
#include "picker_view.h"
#include "pkrtool_cli.h"
#include "pkrtool_commands.h"

#include <QApplication>
#include <QBuffer>
#include <QCommandLineParser>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QRegularExpression>

namespace {

// WIDTHxHEIGHT within what QImage takes; invalid otherwise.
QSize parseSize(const QString& text) {
    static const QRegularExpression pattern(QStringLiteral("^(\\d{1,5})x(\\d{1,5})$"));
    const QRegularExpressionMatch match = pattern.match(text);
    if (!match.hasMatch())
        return QSize();
    const QSize size(match.captured(1).toInt(), match.captured(2).toInt());
    if (size.width() < 1 || size.height() < 1 || size.width() > 16384 || size.height() > 16384)
        return QSize();
    return size;
}

// "--select a b c" names three nodes, as "--select a --select b --select c" does: every
// argument after a --select's own, up to the next option, is one more name.
QStringList spreadSelectNames(const QStringList& arguments) {
    const QRegularExpression selectPattern(QStringLiteral("^--?select(=.*)?$"));
    QStringList spread;
    bool naming = false;
    for (int i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments.at(i);
        if (argument.startsWith(QLatin1Char('-'))) {
            spread << argument;
            naming = selectPattern.match(argument).hasMatch();
            // The first name after a bare --select is the option's own value.
            if (naming && !argument.contains(QLatin1Char('=')) && i + 1 < arguments.size())
                spread << arguments.at(++i);
        } else {
            if (naming)
                spread << QStringLiteral("--select");
            spread << argument;
        }
    }
    return spread;
}

// The view as the window shows it: the same buttons, background and lit states.
void loadView(picker_view& view, const picker_tab_record& tab, const QStringList& select) {
    if (!tab.backgroundPng.isEmpty()) {
        QPixmap image;
        image.loadFromData(tab.backgroundPng, "PNG");
        view.tab()->setBackground(tab.backgroundKey, image);
    }
    view.tab()->replaceButtons(tab.buttons);
    view.tab()->conform_to_set(button_set::fromStringList(select));
}

} // namespace

int runRender(const QStringList& arguments, QIODevice& out, QIODevice& err) {
    QCommandLineParser parser;
    const QCommandLineOption output = outputOption();
    const QCommandLineOption sizeOption(QStringLiteral("size"), QString(), QStringLiteral("WxH"),
                                        QStringLiteral("1024x768"));
    const QCommandLineOption zoomOption(QStringLiteral("zoom"), QString(), QStringLiteral("Z"));
    const QCommandLineOption frameOption(QStringLiteral("frame"));
    const QCommandLineOption selectOption(QStringLiteral("select"), QString(),
                                          QStringLiteral("NAME"));
    parser.addOptions({output, sizeOption, zoomOption, frameOption, selectOption});
    if (!parseCommand(parser, spreadSelectNames(arguments), err))
        return pkrtool_usage;
    if (!parser.isSet(output))
        return usageError(err, QStringLiteral("render needs -o OUT.png"));
    const QSize size = parseSize(parser.value(sizeOption));
    if (!size.isValid())
        return usageError(err, QStringLiteral("--size wants WIDTHxHEIGHT, each 1 to 16384"));
    if (parser.isSet(zoomOption) && parser.isSet(frameOption))
        return usageError(err, QStringLiteral("--zoom and --frame exclude each other"));
    double zoom = 0.0;
    if (parser.isSet(zoomOption)) {
        bool read = false;
        zoom = parser.value(zoomOption).toDouble(&read);
        if (!read || zoom <= 0.0)
            return usageError(err, QStringLiteral("--zoom wants a number above 0"));
    }

    picker_tab_record tab;
    qint32 version = 0;
    if (!readPicker(parser.positionalArguments().first(), tab, version, err))
        return pkrtool_failed;

    picker_view view;
    view.resize(size);
    loadView(view, tab, parser.values(selectOption));
    if (zoom > 0.0) {
        view.setZoom(static_cast<float>(zoom), QPoint(0, 0));
    } else {
        // As "Frame View" does it, without the glide.
        view.frame_view();
        while (view.animating())
            view.animate_zoom();
    }

    QImage image(size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        // The help links belong to the window, not to a picture of the picker.
        view.paint(painter, QRect(QPoint(0, 0), size), false);
    }
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    if (!writeFile(parser.value(output), png, err))
        return pkrtool_failed;
    writeText(out, QStringLiteral("%1: %2 x %3, zoom %4\n")
                       .arg(parser.value(output))
                       .arg(size.width())
                       .arg(size.height())
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
    return runRender(QApplication::arguments().mid(1), out, err);
}

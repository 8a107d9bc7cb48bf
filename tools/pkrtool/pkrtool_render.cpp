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
#include <QSet>

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

// The view as the window shows it: the same buttons and background.
void loadView(picker_view& view, const picker_tab_record& tab) {
    if (!tab.backgroundPng.isEmpty()) {
        QPixmap image;
        image.loadFromData(tab.backgroundPng, "PNG");
        view.tab()->setBackground(tab.backgroundKey, image);
    }
    view.tab()->replaceButtons(tab.buttons);
}

// As "Frame View" does it, without the glide: on the lit buttons when there are any.
void frame(picker_view& view) {
    view.frame_view();
    while (view.animating())
        view.animate_zoom();
}

// The names no selection button holds, in the order given.
QStringList strangers(const picker_tab_record& tab, const QStringList& names) {
    QSet<QString> held;
    for (const buttonAttributes& att : tab.buttons) {
        if (att.type == buttonAttributes::Selection)
            held.unite(QSet<QString>(att.sel.cbegin(), att.sel.cend()));
    }
    QStringList missing;
    for (const QString& name : names) {
        if (!held.contains(name) && !missing.contains(name))
            missing.append(name);
    }
    return missing;
}

} // namespace

int runRender(const pkrtool_run& run, const QStringList& arguments) {
    QCommandLineParser parser;
    const QCommandLineOption output = outputOption();
    const QCommandLineOption sizeOption(QStringLiteral("size"), QString(), QStringLiteral("WxH"),
                                        QStringLiteral("1024x768"));
    const QCommandLineOption zoomOption(QStringLiteral("zoom"), QString(), QStringLiteral("Z"));
    const QCommandLineOption frameOption(QStringLiteral("frame"));
    const QCommandLineOption frameSelectionOption(QStringLiteral("frame-selection"));
    const QCommandLineOption selectOption(QStringLiteral("select"), QString(),
                                          QStringLiteral("NAME"));
    const QCommandLineOption scaleOption(QStringLiteral("scale"), QString(), QStringLiteral("F"),
                                         QStringLiteral("1"));
    parser.addOptions({output, sizeOption, zoomOption, frameOption, frameSelectionOption,
                       selectOption, scaleOption});
    int exitCode = pkrtool_ok;
    if (!run.parse(parser, spreadSelectNames(arguments), exitCode))
        return exitCode;
    if (!parser.isSet(output))
        return run.usage(QStringLiteral("render needs -o OUT.png"));
    const QString input = parser.positionalArguments().first();
    const QString target = parser.value(output);
    if (const QString mistake = run.sameFileMistake(input, target); !mistake.isEmpty())
        return run.usage(mistake);
    const QSize size = parseSize(parser.value(sizeOption));
    if (!size.isValid())
        return run.usage(QStringLiteral("--size wants WIDTHxHEIGHT, each 1 to 16384"));
    if (int(parser.isSet(zoomOption)) + int(parser.isSet(frameOption)) +
            int(parser.isSet(frameSelectionOption)) >
        1)
        return run.usage(
            QStringLiteral("--zoom, --frame and --frame-selection exclude each other"));
    const QStringList select = parser.values(selectOption);
    if (parser.isSet(frameSelectionOption) && select.isEmpty())
        return run.usage(QStringLiteral("--frame-selection needs --select NAME"));
    // The device pixel ratio of a screen the window would be on: the picture has that many
    // pixels for each of the window's.
    bool scaleRead = false;
    const double scale = parser.value(scaleOption).toDouble(&scaleRead);
    const QSize pixels(qRound(size.width() * scale), qRound(size.height() * scale));
    if (!scaleRead || !(scale >= 0.25 && scale <= 8.0))
        return run.usage(QStringLiteral("--scale wants a number from 0.25 to 8"));
    if (pixels.width() > 16384 || pixels.height() > 16384)
        return run.usage(QStringLiteral("--size times --scale is over 16384 pixels"));
    double zoom = 0.0;
    if (parser.isSet(zoomOption)) {
        bool read = false;
        zoom = parser.value(zoomOption).toDouble(&read);
        if (!read || zoom <= 0.0)
            return run.usage(QStringLiteral("--zoom wants a number above 0"));
    }

    picker_tab_record tab;
    qint32 version = 0;
    if (!run.readPicker(input, tab, version))
        return pkrtool_failed;
    const QStringList missing = strangers(tab, select);
    if (!missing.isEmpty())
        run.warn(QStringLiteral("no button holds %1").arg(missing.join(QStringLiteral(", "))));

    picker_view view;
    view.resize(size);
    loadView(view, tab);
    // Framed before the names are lit, unless the framing is to be on them.
    const button_set lit = button_set::fromStringList(select);
    if (zoom > 0.0)
        view.setZoom(static_cast<float>(zoom), QPoint(0, 0));
    else if (!parser.isSet(frameSelectionOption))
        frame(view);
    view.tab()->conform_to_set(lit);
    if (parser.isSet(frameSelectionOption))
        frame(view);

    // The surface a window's backing store has, so that the picture is what the window shows.
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        // The help links belong to the window, not to a picture of the picker.
        view.paint(painter, QRect(QPoint(0, 0), size), false);
    }
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    image.convertToFormat(QImage::Format_ARGB32).save(&buffer, "PNG");
    if (!run.writeOutput(target, png))
        return pkrtool_failed;
    run.report(QStringLiteral("%1: %2 x %3, zoom %4\n")
                   .arg(target == QLatin1String("-") ? QStringLiteral("standard output") : target)
                   .arg(pixels.width())
                   .arg(pixels.height())
                   .arg(view.zoom()),
               target == QLatin1String("-"));
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
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(pkrtoolArgument(argv[i]));
    return runRender(pkrtool_run(arguments.first(), out, err), arguments);
}

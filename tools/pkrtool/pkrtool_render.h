#pragma once

#include <QStringList>

class QIODevice;

// pkrtool render FILE.pkr -o OUT.png [--size WxH] [--zoom Z | --frame] [--select NAME ...]
// Draws the picker with the window's own view code. Needs a QApplication; the arguments start
// with the command word.
int runRender(const QStringList& arguments, QIODevice& out, QIODevice& err);

// The whole program for the render command: a GUI application on the offscreen platform when
// there is no display.
int renderMain(int argc, char* argv[]);

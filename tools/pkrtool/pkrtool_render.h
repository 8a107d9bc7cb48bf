#pragma once

#include <QStringList>

class pkrtool_run;

// pkrtool render FILE.pkr -o OUT.png [--size WxH] [--scale F] [--zoom Z | --frame |
// --frame-selection] [--select NAME ...]. Draws the picker with the window's own view code. Needs a
// QApplication; the arguments start with the command word.
int runRender(const pkrtool_run& run, const QStringList& arguments);

// The whole program for the render command: a GUI application on the offscreen platform when
// there is no display.
int renderMain(int argc, char* argv[]);

#include "pkrtool_commands.h"
#include "pkrtool_render.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>

int main(int argc, char* argv[]) {
    // Drawing needs a GUI application; every other command stays on QtCore.
    if (argc > 1 && qstrcmp(argv[1], "render") == 0)
        return renderMain(argc, argv);
    QCoreApplication application(argc, argv);
    QFile out;
    QFile err;
    out.open(stdout, QIODevice::WriteOnly);
    err.open(stderr, QIODevice::WriteOnly);
    // The bytes of each argument as given: a file name need not be UTF-8.
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(pkrtoolArgument(argv[i]));
    return runPkrtool(arguments, out, err);
}

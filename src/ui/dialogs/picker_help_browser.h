#pragma once

#include <QString>

class QWidget;

// Opens one of the picker's help pages ("quick-start.html") in the desktop's browser, from the
// copy installed with the program or module; where no browser opens it, the page shows in a
// window of the picker's own, from the copy built into it.
void open_help_page(QWidget* parent, const QString& page);

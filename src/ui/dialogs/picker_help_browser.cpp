#include "picker_help_browser.h"

#include "picker_main.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDialog>
#include <QDir>
#include <QFileInfo>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

// Resources of a static library are registered by hand, and only from the global namespace.
static void picker_help_init_resources() {
    Q_INIT_RESOURCE(picker_help);
}

namespace {

// Where the installed pages sit: beside the standalone program, or in the Maya module's docs.
QString installed_page(const QString& page) {
    QStringList folders;
    const picker_host* host = picker_main::host();
    const QString loaded = host != nullptr ? host->loadPath() : QString();
    if (!loaded.isEmpty())
        folders << loaded + QStringLiteral("/help") << loaded + QStringLiteral("/../../docs/help");
    folders << QCoreApplication::applicationDirPath() + QStringLiteral("/help");
    for (const QString& folder : std::as_const(folders)) {
        const QFileInfo file(QDir(folder), page);
        if (file.exists())
            return file.canonicalFilePath();
    }
    return QString();
}

void show_built_in(QWidget* parent, const QString& page) {
    picker_help_init_resources();
    auto* window = new QDialog(parent);
    window->setAttribute(Qt::WA_DeleteOnClose);
    auto* browser = new QTextBrowser(window);
    browser->setOpenExternalLinks(true);
    browser->setSource(QUrl(QStringLiteral("qrc:/help/") + page));
    window->setWindowTitle(browser->documentTitle());
    auto* layout = new QVBoxLayout(window);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(browser);
    window->resize(560, 620);
    window->show();
}

} // namespace

void open_help_page(QWidget* parent, const QString& page) {
    const QString installed = installed_page(page);
    if (!installed.isEmpty() && QDesktopServices::openUrl(QUrl::fromLocalFile(installed)))
        return;
    show_built_in(parent, page);
}

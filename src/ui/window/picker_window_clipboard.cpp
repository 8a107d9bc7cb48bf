#include "picker_edit_cmd.h"
#include "picker_tab.h"
#include "picker_view.h"
#include "picker_window.h"

#include <QApplication>
#include <QByteArray>
#include <QClipboard>
#include <QDataStream>
#include <QIODevice>
#include <QMimeData>

#include <memory>

void copyButtonsToClipboard(const QList<buttonAttributes>& buttons) {
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    writeButtonAttributes(out, buttons);

    QClipboard* clipboard = QApplication::clipboard();
    clipboard->clear(QClipboard::Clipboard);
    auto mime = std::make_unique<QMimeData>();
    mime->setData(QLatin1String(picker_mime_type), bytes);
    clipboard->setMimeData(mime.release(), QClipboard::Clipboard);
}

void handle_paste(picker_view* view, bool inplace) {
    if (view == nullptr)
        return;
    const QMimeData* mime = QApplication::clipboard()->mimeData(QClipboard::Clipboard);
    if (mime == nullptr || !mime->hasFormat(QLatin1String(picker_mime_type)))
        return;
    const QByteArray bytes = mime->data(QLatin1String(picker_mime_type));
    QDataStream in(bytes);
    // Foreign or damaged data reads as no buttons; the paste step is still recorded.
    const button_att_list buttons = readButtonAttributes(in);
    const paste_placement placement{view->mapToPicker(view->rect().center()), view->rect()};
    view->tab()->undoer()->push(
        std::make_unique<paste_buttons_cmd>(view->tab(), buttons, inplace, placement).release());
}

void picker_window::copy_buttons() {
    const picker_tab* tab = frontTab();
    if (tab != nullptr && tab->any_selected())
        copyButtonsToClipboard(tab->getButtons());
}

void picker_window::cut_buttons() {
    picker_tab* tab = frontTab();
    if (tab == nullptr || !tab->any_selected())
        return;
    // The command records the selection when built; the clipboard is filled before the push
    // removes the buttons.
    auto cut = std::make_unique<delete_buttons_cmd>(tab, true);
    copyButtonsToClipboard(cut->buttons());
    tab->undoer()->push(cut.release());
}

void picker_window::paste_buttons() {
    handle_paste(frontPicker(), false);
}

void picker_window::paste_inplace_buttons() {
    handle_paste(frontPicker(), true);
}

#include "picker_mirror_dialog.h"

#include "picker_prompt.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <cmath>

namespace {

// The pairs of the text, or why one does not read.
QString readSwaps(const QString& text, picker_color_swaps& swaps) {
    swaps.clear();
    const QStringList pairs = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (const QString& pair : pairs) {
        QPair<QRgb, QRgb> swap;
        const QString error = parseColorSwap(pair, swap);
        if (!error.isEmpty())
            return error;
        swaps.append(swap);
    }
    return QString();
}

QString hexOf(QRgb color) {
    return QStringLiteral("#%1").arg(color & RGB_MASK, 6, 16, QLatin1Char('0')).toUpper();
}

} // namespace

QString colorSwapsText(const picker_color_swaps& swaps) {
    QStringList pairs;
    for (const auto& swap : swaps)
        pairs.append(hexOf(swap.first) + QLatin1Char('=') + hexOf(swap.second));
    return pairs.join(QLatin1Char(' '));
}

bool ask_mirror_choice(QWidget* parent, picker_mirror_choice& choice) {
    QDialog dialog(parent);
    dialog.setWindowTitle(QStringLiteral("Mirror Buttons"));
    auto* axis = new QDoubleSpinBox(&dialog);
    axis->setObjectName(QStringLiteral("axis"));
    axis->setDecimals(1);
    axis->setSingleStep(0.5);
    axis->setRange(-1e6, 1e6);
    axis->setValue(choice.axisTwice / 2.0);
    axis->setToolTip(QStringLiteral("The copies go as far the other side of this x, in halves"));
    auto* colors = new QLineEdit(colorSwapsText(choice.swaps), &dialog);
    colors->setObjectName(QStringLiteral("colors"));
    colors->setPlaceholderText(QStringLiteral("#RRGGBB=#RRGGBB ..."));
    colors->setToolTip(QStringLiteral("Colours the copies swap, both ways"));
    auto* problem = new QLabel(&dialog);
    problem->setStyleSheet(QStringLiteral("color: #d04040"));
    problem->hide();
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    buttons->button(QDialogButtonBox::Ok)->setText(QStringLiteral("Mirror"));
    auto* form = new QFormLayout(&dialog);
    form->addRow(QStringLiteral("Axis x:"), axis);
    form->addRow(QStringLiteral("Swap colours:"), colors);
    form->addRow(problem);
    form->addRow(buttons);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, [&] {
        const QString error = readSwaps(colors->text(), choice.swaps);
        problem->setText(error);
        problem->setVisible(!error.isEmpty());
        if (error.isEmpty())
            dialog.accept();
    });
    if (picker_exec(dialog) != QDialog::Accepted)
        return false;
    // Whatever was typed, the axis lands on a half: copies keep whole positions.
    choice.axisTwice = static_cast<int>(std::lround(axis->value() * 2.0));
    // A hook may accept without the button: the pairs are read here as well.
    return readSwaps(colors->text(), choice.swaps).isEmpty();
}

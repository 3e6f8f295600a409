#include "ui/main/CellBox.h"

#include <QKeyEvent>
#include <QPainter>
#include <QPen>

#include "ui/common/HexBox.h"

namespace tavinor {

CellBox::CellBox(const QString& name, const QString& accessibleName, QWidget* parent, Blank blank)
    : HexBox(name, accessibleName, 2, parent, blank) {
    setToolTip(accessibleName);
    connect(this, &QLineEdit::textChanged, this, &CellBox::compare);
}

void CellBox::showCell(std::optional<std::uint8_t> byte) {
    if (cell_ == byte) return;
    cell_ = byte;
    compare();
}

void CellBox::compare() {
    const QString text = warning();
    if (text == accessibleDescription()) return;
    differs_ = !text.isEmpty();
    setAccessibleDescription(text);
    setToolTip(differs_ ? text : accessibleName());
    update();
}

QString CellBox::warning() const {
    if (!cell_) return {};
    const QString held = hexString(*cell_, 2);
    const std::optional<QString> written = normalText();
    if (!written) return QStringLiteral("La casilla contiene %1; este texto no se puede escribir").arg(held);
    if (*written == held || written->trimmed().isEmpty()) return {};
    return QStringLiteral("La casilla contiene %1; al salir de este cuadro se escribirá %2")
        .arg(held, *written);
}

/// Blanks that write nothing stay.
void CellBox::keyPressEvent(QKeyEvent* event) {
    const std::optional<QString> written = normalText();
    const bool writes = cell_ && !(written && written->trimmed().isEmpty());
    if (event->key() != Qt::Key_Escape || !writes) {
        HexBox::keyPressEvent(event);
        return;
    }
    showValue(*cell_);
    selectAll();
}

void CellBox::paintEvent(QPaintEvent* event) {
    HexBox::paintEvent(event);
    if (!differs_) return;
    QPainter painter(this);
    QPen pen(palette().color(QPalette::Text), 2, Qt::SolidLine, Qt::FlatCap);
    pen.setDashPattern({2, 2});
    painter.setPen(pen);
    painter.drawRect(rect().adjusted(1, 1, -1, -1));
}

}  // namespace tavinor

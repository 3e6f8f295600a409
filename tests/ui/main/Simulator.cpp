#include "tests/ui/main/Simulator.h"

#include <QFile>
#include <QLabel>
#include <QListWidget>
#include <QTest>
#include <QTimer>
#include <utility>

#include "tests/support/RealInput.h"

namespace tavinor {

namespace {

constexpr qsizetype bytesPerRecord = 32;
constexpr int columns = 16;

}  // namespace

QString hexDigits(int value, int digits) {
    return QString::number(value, 16).toUpper().rightJustified(digits, '0');
}

QByteArray hexRecords(int address, const QByteArray& bytes) {
    QByteArray file;
    for (qsizetype from = 0; from < bytes.size(); from += bytesPerRecord) {
        const QByteArray data = bytes.mid(from, bytesPerRecord);
        const int place = address + static_cast<int>(from);
        QByteArray record;
        record += static_cast<char>(data.size());
        record += static_cast<char>(place >> 8);
        record += static_cast<char>(place & 0xFF);
        record += '\0';
        record += data;
        int sum = 0;
        for (const char byte : record) sum += static_cast<unsigned char>(byte);
        record += static_cast<char>(-sum & 0xFF);
        file += ':' + record.toHex().toUpper() + "\r\n";
    }
    return file;
}

Simulator::Simulator(std::unique_ptr<RunPace> pace) : window(std::move(pace)) {
    if (!showActive(&window)) qFatal("the main window does not become active");
}

QWidget* Simulator::findWidget(const QString& name) const {
    QWidget*& known = found_[name];
    for (QWidget* widget : known == nullptr ? window.findChildren<QWidget*>(name) : QList<QWidget*>()) {
        if (widget->window() == &window) known = widget;
    }
    return known;
}

void Simulator::press(const QString& buttonName) const {
    clickIn(button(buttonName));
}

void Simulator::type(const QString& boxName, const QString& text) const {
    HexBox* target = box(boxName);
    clickIn(target);
    pressKey(target, Qt::Key_A, Qt::ControlModifier);
    pressKey(target, Qt::Key_Delete);
    typeText(target, text);
}

void Simulator::enter(const QString& boxName, const QString& text) const {
    type(boxName, text);
    leaveBox();
}

void Simulator::leaveBox() const {
    clickIn(find<QListWidget>("pila")->viewport());
}

QString Simulator::cell(const QString& gridName, int address) const {
    const QAbstractItemModel* model = grid(gridName)->model();
    return model->index(address / columns, address % columns).data().toString();
}

int Simulator::currentAddress(const QString& gridName) const {
    const QModelIndex current = grid(gridName)->currentIndex();
    return current.row() * columns + current.column();
}

void Simulator::clickCell(const QString& gridName, int address) const {
    QTableView* view = grid(gridName);
    const QModelIndex index = view->model()->index(address / columns, address % columns);
    view->scrollTo(index);
    clickAt(view->viewport(), view->visualRect(index).center());
}

QStringList Simulator::rows() const {
    QStringList texts;
    for (int row = 0; row < listing()->count(); ++row) texts.append(listing()->item(row)->text());
    return texts;
}

int Simulator::rowOf(int address) const {
    int row = listing()->count() - 1;
    while (row >= 0 && rowAddress(row) != address) --row;
    return row;
}

int Simulator::selectedAddress() const {
    return listing()->currentRow() < 0 ? -1 : rowAddress(listing()->currentRow());
}

QPoint Simulator::placeOfRow(int row) const {
    listing()->scrollToItem(listing()->item(row));
    return listing()->visualItemRect(listing()->item(row)).center();
}

void Simulator::clickRow(int row) const {
    clickAt(listing()->viewport(), placeOfRow(row));
}

QStringList Simulator::stackLines() const {
    const auto* pila = find<QListWidget>("pila");
    QStringList lines;
    for (int line = 0; line < pila->count(); ++line) lines.append(pila->item(line)->text());
    return lines;
}

QStringList Simulator::entryRow() const {
    return {text("txtDIR"), text("INSCO"), text("INSOP1"), text("INSOP2"), find<QLabel>("INS")->text()};
}

QString Simulator::writeFile(const QString& name, const QByteArray& content) const {
    const QString path = folder_.filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        qFatal("cannot write %s", qPrintable(path));
    }
    return path;
}

void Simulator::load(int address, const QByteArray& bytes) {
    dialogs.expectMessage("Carga correcta");
    window.loadHexFile(writeFile("program.hex", hexRecords(address, bytes) + endRecord));
    if (!QTest::qWaitForWindowActive(&window)) qFatal("the main window does not become active again");
}

void Simulator::runWith(const QList<std::function<void()>>& actions) {
    doNext(actions);
    press("Ejecutar");
}

void Simulator::doNext(const QList<std::function<void()>>& actions) {
    QTimer::singleShot(10, &window, [this, actions] {
        if (actions.isEmpty()) {
            if (running()) press("Ejecutar");
            return;
        }
        actions.first()();
        doNext(actions.mid(1));
    });
}

bool Simulator::running() const {
    return button("Ejecutar")->text() == QStringLiteral("&Parar");
}

void Simulator::runWith(const std::function<void()>& during) const {
    constexpr int aGoodNumberOfInstructionsLater = 10;  // milliseconds
    QTimer::singleShot(aGoodNumberOfInstructionsLater, &window, [this, during] {
        during();
        if (running()) press("Ejecutar");
    });
    press("Ejecutar");
}

}  // namespace tavinor

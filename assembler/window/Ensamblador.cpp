#include "assembler/window/Ensamblador.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <cstdint>

#include "assembler/Ensambla.h"
#include "assembler/ListingWriter.h"
#include "assembler/window/ErrorHighlighter.h"
#include "assembler/window/PaneFeeder.h"
#include "assembler/window/PathLabel.h"
#include "ui/common/Fonts.h"
#include "ui/common/MemoryGuard.h"
#include "ui/common/MessageBoxes.h"
#include "ui/common/Naming.h"
#include "ui/common/Paths.h"
#include "ui/common/RequiredMemory.h"
#include "ui/common/ScrollingContent.h"
#include "ui/common/UnwrappedText.h"

namespace tavinor {

namespace {

/// What a source of so many bytes takes at the most, in the assembler's tables, its listing and the pane:
/// measured with the shortest lines and with the longest.
std::uint64_t memoryOf(std::uint64_t size) {
    constexpr std::uint64_t ofAByte = 4;
    constexpr std::uint64_t ofALine = 230;
    return size * ofAByte + std::min<std::uint64_t>(size, maximumLines) * ofALine;
}

/// A screen reader says the path, and then what it is the path of.
PathLabel* pathLabel(const char* name, const char* description, QWidget* parent) {
    auto* label = new PathLabel(parent);
    label->setObjectName(QString::fromLatin1(name));
    label->setAccessibleDescription(QString::fromUtf8(description));
    return label;
}

QPlainTextEdit* pane(QPlainTextEdit* text, const char* name, const char* spoken) {
    named(text, QString::fromLatin1(name), QString::fromUtf8(spoken));
    text->setReadOnly(true);
    text->setUndoRedoEnabled(false);
    text->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    text->setTabChangesFocus(true);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    useFont(text, fixedFont, [text] {
        const QFontMetrics metrics(text->font());
        text->setTabStopDistance(8 * metrics.horizontalAdvance(' '));
        text->setMinimumSize(24 * metrics.horizontalAdvance('0'), 4 * metrics.lineSpacing());
    });
    return text;
}

}  // namespace

Ensamblador::Ensamblador(QWidget* parent)
    : QDialog(parent),
      file1(pathLabel("file1", "Fichero fuente", this)),
      file2(pathLabel("file2", "Fichero HEX", this)),
      file3(pathLabel("file3", "Fichero de listado", this)),
      filelst(pane(new UnwrappedText(this), "filelst", "Listado")),
      filehex(pane(new QPlainTextEdit(this), "filehex", "Informe de errores o registros HEX")),
      Label1(new QLabel(this)),
      cerrar(named(new QPushButton(QStringLiteral("&Cerrar"), this), QStringLiteral("cerrar"),
                   QStringLiteral("Cerrar"))) {
    setObjectName(QStringLiteral("Ensamblador"));
    Label1->setObjectName(QStringLiteral("Label1"));
    setWindowTitle(applicationTitle());
    if (parent != nullptr) setWindowIcon(parent->windowIcon());
    filelst->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    filehex->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    new ErrorHighlighter(filehex->document());
    layOut();
    connect(cerrar, &QPushButton::clicked, this, &QDialog::accept);
}

void Ensamblador::layOut() {
    file2->hide();
    file3->hide();
    useFont(Label1, [] { return arialFont(1.3, true); });
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(Label1, 1);
    bottom->addWidget(cerrar);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(file1);
    layout->addWidget(filelst, 10);
    layout->addWidget(filehex, 3);
    layout->addLayout(bottom);
    // Room for lines as one writes them, where the screen has it.
    const QFontMetrics metrics(filelst->font());
    resize(QSize(88 * metrics.horizontalAdvance('0'), 40 * metrics.lineSpacing())
               .boundedTo(roomOnScreen(*this)));
}

void Ensamblador::assemble(const QString& source, const QString& hex, const QString& listing) {
    file1->showPath(source);
    file2->showPath(hex);
    file3->showPath(listing);
    filelst->clear();
    filehex->clear();
    Label1->clear();
    cerrar->setEnabled(false);
    // A window manager tells too late where it has put the window: the first box would open elsewhere.
    adjustPosition(parentWidget());
    QTimer::singleShot(0, this, &Ensamblador::run);  // once the window is on the screen
    exec();
}

bool Ensamblador::running() const {
    return !cerrar->isEnabled();
}

void Ensamblador::run() {
    const bool whole = guardMemory(this, [this] { assembleFiles(); });
    if (!whole && running()) end(QStringLiteral("Ensamblado incorrecto"));
}

void Ensamblador::assembleFiles() {
    const auto size = static_cast<std::uint64_t>(QFileInfo(file1->text()).size());
    if (size <= maximumSourceSize) requireMemory(memoryOf(size));  // a longer one is refused
    PaneFeeder feeder(filelst, filehex, this);
    const AssemblyResult result = Ensambla(toPath(file1->text()), toPath(file2->text()), feeder);
    feeder.finish();
    showOutcome(result);
    if (!file3->text().isEmpty()) creafilelst(result.listing, result.encoding, toPath(file3->text()), feeder);
}

void Ensamblador::showOutcome(const AssemblyResult& result) {
    if (result.cancelled) return end(QStringLiteral("Ensamblado cancelado"));
    if (result.assembled) {
        end(QStringLiteral("Ensamblado correcto"));
        QApplication::beep();
        return;
    }
    const QString outcome = QStringLiteral("Ensamblado incorrecto");
    end(outcome);
    filehex->moveCursor(QTextCursor::Start);  // the first error in view
    showMessage(this, outcome);
    filehex->setFocus();
}

void Ensamblador::end(const QString& outcome) {
    cerrar->setEnabled(true);
    cerrar->setAccessibleDescription(outcome);  // a screen reader says it when the button gets the focus
    Label1->setText(outcome);
    cerrar->setFocus();
}

void Ensamblador::closeEvent(QCloseEvent* event) {
    event->ignore();
    if (!running()) accept();
}

void Ensamblador::reject() {
    if (!running()) QDialog::reject();
}

}  // namespace tavinor

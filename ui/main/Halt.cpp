#include "ui/main/Halt.h"

#include <QApplication>
#include <QCloseEvent>
#include <QEventLoop>
#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>
#include <QScopedValueRollback>
#include <QScreen>
#include <QVBoxLayout>
#include <algorithm>
#include <limits>

#include "ui/common/FocusGate.h"
#include "ui/common/Fonts.h"
#include "ui/common/Naming.h"
#include "ui/common/ScrollingContent.h"

namespace tavinor {

namespace {

struct OptionName {
    const char* caption;
    const char* accessible;
};
/// By the way out.
constexpr std::array<OptionName, Halt::waysOut.size()> optionNames{{
    {"RESET", "Salir con RESET"},
    {"TRAP", "Salir con TRAP"},
    {"RST5.5", "Salir con RST 5.5"},
    {"RST6.5", "Salir con RST 6.5"},
    {"RST7.5", "Salir con RST 7.5"},
    {"INTR", "Salir con INTR"},
}};

QLabel* label(const char* name, const char* text, QWidget* parent) {
    auto* made = new QLabel(QString::fromUtf8(text), parent);
    made->setObjectName(QString::fromLatin1(name));
    return made;
}

/// The place nearest to `wanted` on `screen` where nothing of `kept` is covered; `wanted` where there is
/// none.
QPoint freePlace(const QRect& wanted, const QRect& screen, const QList<QRect>& kept) {
    QList<int> lefts{wanted.left(), screen.left(), screen.right() + 1 - wanted.width()};
    QList<int> tops{wanted.top(), screen.top(), screen.bottom() + 1 - wanted.height()};
    for (const QRect& rect : kept) {
        lefts << rect.right() + 1 << rect.left() - wanted.width();
        tops << rect.bottom() + 1 << rect.top() - wanted.height();
    }
    QPoint best = wanted.topLeft();
    int least = std::numeric_limits<int>::max();
    for (const int left : lefts) {
        for (const int top : tops) {
            const QRect place({left, top}, wanted.size());
            const int distance = (place.topLeft() - wanted.topLeft()).manhattanLength();
            if (distance >= least || !screen.contains(place)) continue;
            const auto covered = [&place](const QRect& rect) { return place.intersects(rect); };
            if (std::any_of(kept.begin(), kept.end(), covered)) continue;
            best = place.topLeft();
            least = distance;
        }
    }
    return best;
}

}  // namespace

Halt::Halt(QWidget* parent)
    : QDialog(parent),
      Label1(label("Label1", "Programa Parado por instrucción HLT", this)),
      Label2(label("Label2", "Seleccione modo de salida", this)),
      Label33(label("Label33", "Vector:", this)),
      txtVec(new HexBox(QStringLiteral("txtVec"), QStringLiteral("Vector de INTR"), 2, this)),
      eje(new CommandCheckBox(QStringLiteral("eje"), QStringLiteral("Continuar ejecución"),
                              QStringLiteral("Continuar ejecución"), this)),
      aceptar(new CommandButton(QStringLiteral("aceptar"), QStringLiteral("Aceptar"),
                                QStringLiteral("Aceptar"), this)) {
    setObjectName(QStringLiteral("Halt"));
    setWindowTitle(applicationTitle());
    setWindowModality(Qt::ApplicationModal);
    layOut();
    setRunning(false);
    connect(txtVec, &HexBox::left, this, [this] { emit vectorLeft(txtVec->text()); });
    connect(aceptar, &CommandButton::command, this, &Halt::aceptar_Click);
}

void Halt::layOut() {
    Label33->setBuddy(txtVec);
    useFont(Label1, [] { return arialFont(1.2, true); });
    useFont(Label2, [] { return arialFont(1.0, false); });
    auto* content = new QWidget(this);
    auto* layout = new QVBoxLayout(content);
    layout->addWidget(Label1);
    layout->addWidget(Label2);
    for (const WayOut wayOut : waysOut) {
        opt[static_cast<std::size_t>(wayOut)] = makeOption(wayOut);
        if (wayOut != WayOut::intr) layout->addWidget(option(wayOut));
    }
    auto* intrRow = new QHBoxLayout;
    intrRow->addWidget(option(WayOut::intr));
    intrRow->addStretch();
    intrRow->addWidget(Label33);
    intrRow->addWidget(txtVec);
    layout->addLayout(intrRow);
    layout->addSpacing(8);
    layout->addWidget(eje);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(aceptar);
    layout->addLayout(buttons);
    aceptar->setDefault(true);

    for (std::size_t i = 1; i < opt.size(); ++i) setTabOrder(opt[i - 1], opt[i]);
    setTabOrder(option(WayOut::intr), txtVec);
    setTabOrder(txtVec, eje);
    setTabOrder(eje, aceptar);
    auto* around = new QVBoxLayout(this);
    around->setContentsMargins(0, 0, 0, 0);
    around->addWidget(new ScrollingContent(content, nullptr, this));
    around->setSizeConstraint(QLayout::SetFixedSize);
}

/// Its lower edge is the listing's, and what it has no room for there lies beyond the left edge of the
/// window, as far as the screen allows. Its frame is not known before it is shown; the main window's is.
QPoint Halt::firstPlace(const QRect& listing, const QList<QRect>& readable) const {
    const QWidget* owner = parentWidget()->window();
    const QSize whole = sizeHint() + owner->frameGeometry().size() - owner->size();
    const QRect available = owner->screen()->availableGeometry();
    const QRect over = listing.isEmpty() ? QRect(available.bottomLeft(), QSize(1, 1)) : listing;
    const int left =
        std::min({over.left(), over.right() + 1 - whole.width(), available.right() + 1 - whole.width()});
    const int top = std::min(over.bottom(), available.bottom()) + 1 - whole.height();
    const QPoint wanted(std::max(left, available.left()), std::max(top, available.top()));
    // The frame is not known yet: under X11 what lies within it comes to this place, and the frame beyond.
    const QPoint beyond = owner->geometry().topLeft() - owner->frameGeometry().topLeft();
    const QSize both = whole + QSize(beyond.x(), beyond.y());
    return freePlace({wanted - beyond, both}, available, readable) + beyond;
}

void Halt::ask(const QRect& listing, const QList<QRect>& readable) {
    QEventLoop loop;
    const QScopedValueRollback<QEventLoop*> mine(showing_, &loop);
    move(place_.value_or(firstPlace(listing, readable)));
    show();
    // Shown again before the window system has noticed that it was hidden, the dialog would count as
    // inactive, and its box could be typed in without ever being entered.
    QApplication::setActiveWindow(this);
    loop.exec();
}

/// Selected once for each showing, not again when a message box over the dialog closes.
void Halt::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (event->spontaneous()) return;
    select(WayOut::reset);
    option(WayOut::reset)->setFocus();
}

QRadioButton* Halt::makeOption(WayOut wayOut) {
    const auto index = static_cast<std::size_t>(wayOut);
    const OptionName& name = optionNames[index];
    auto* made = named(new QRadioButton(QString::fromLatin1(name.caption), this),
                       QStringLiteral("opt%1").arg(index), QString::fromLatin1(name.accessible));
    made->setFocusPolicy(Qt::StrongFocus);
    connect(made, &QRadioButton::toggled, this, [this, wayOut](bool checked) {
        if (checked) opt_Click(wayOut);
    });
    return made;
}

void Halt::select(WayOut wayOut) {
    selected_ = wayOut;
    option(wayOut)->setChecked(true);
}

/// An assistive tool selects an option without moving the focus. It is taken back until the vector box has
/// let go of the focus.
void Halt::opt_Click(WayOut wayOut) {
    if (wayOut == selected_) return;
    option(selected_)->setChecked(true);
    if (FocusGate::of(this).pass(option(wayOut))) select(wayOut);
}

void Halt::closeEvent(QCloseEvent* event) {
    event->ignore();
}

void Halt::aceptar_Click() {
    QEventLoop* showing = showing_;
    place_ = pos();
    hide();
    emit chosen(selected_);
    if (showing != nullptr) showing->quit();
}

void Halt::allow(const RequestsAllowed& allowed) {
    option(WayOut::rst55)->setEnabled(allowed.rst55);
    option(WayOut::rst65)->setEnabled(allowed.rst65);
    option(WayOut::rst75)->setEnabled(allowed.rst75);
    option(WayOut::intr)->setEnabled(allowed.intr);
}

void Halt::setRunning(bool running) {
    eje->showChecked(running);
    eje->setEnabled(running);
}

bool Halt::continues() const {
    return eje->isChecked();
}

}  // namespace tavinor

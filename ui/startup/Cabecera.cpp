#include "ui/startup/Cabecera.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLinearGradient>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>
#include <string_view>

#include "ui/common/Application.h"
#include "ui/common/Fonts.h"
#include "ui/common/MessageBoxes.h"
#include "ui/common/Naming.h"
#include "ui/startup/Update.h"
#include "ui/startup/UpdateCheck.h"

namespace tavinor {

namespace {

constexpr int splashMilliseconds = 1500;
constexpr std::u16string_view authorship = u"Tavinor - Simulador didáctico del 8085";

// The window has colours of its own, the same on a light and on a dark desktop.
constexpr QColor topColour(0x1B, 0x2A, 0x41);
constexpr QColor bottomColour(0x0C, 0x18, 0x21);
constexpr QColor edgeColour(0x3A, 0x86, 0xA8);
constexpr QColor textColour(0xF4, 0xF7, 0xFA);
constexpr QColor mutedColour(0xB8, 0xC7, 0xD6);

QLabel* label(const char* name, const QString& text, const QColor& colour, double scale, QWidget* parent) {
    auto* made = new QLabel(text, parent);
    made->setObjectName(QString::fromLatin1(name));
    made->setTextFormat(Qt::PlainText);
    QPalette palette = made->palette();
    palette.setColor(QPalette::WindowText, colour);
    made->setPalette(palette);
    useFont(made, [scale] { return desktopFont(scale, scale > 2); });
    return made;
}

}  // namespace

Cabecera::Cabecera(QWidget* parent) : Cabecera(ownVersion(), builtInUpdateSource(), parent) {}

Cabecera::Cabecera(const Version& own, const UpdateSource& updates, QWidget* parent)
    : QDialog(parent),
      own_(own),
      updates_(updates),
      lblVersion(label("lblVersion", {}, textColour, 1.2, this)),
      Label3(label("Label3", {}, mutedColour, 1.0, this)),
      OK(named(new QPushButton(QStringLiteral("OK"), this), QStringLiteral("OK"),
               QStringLiteral("Cerrar esta ventana"))),
      Timer1(new QTimer(this)) {
    setObjectName(QStringLiteral("Cabecera"));
    setWindowTitle(applicationTitle());
    Timer1->setObjectName(QStringLiteral("Timer1"));
    Timer1->setInterval(splashMilliseconds);
    layOut();
    Form_Load();
    connect(OK, &QPushButton::clicked, this, &Cabecera::OK_Click);
    connect(Timer1, &QTimer::timeout, this, &Cabecera::Timer1_Timer);
}

void Cabecera::Form_Load() {
    lblVersion->setText(QStringLiteral("vers. ") + own_.text());
    // Letter by letter, though a whole text would look the same: see behaviour.md, Start-up: window.
    QString line;
    for (const char16_t letter : authorship) line += QChar(letter);
    Label3->setText(line);
}

void Cabecera::layOut() {
    constexpr int iconSize = 112;
    auto* icon = named(new QLabel(this), QStringLiteral("icono"), QStringLiteral("Icono de Tavinor"));
    icon->setPixmap(applicationIcon().pixmap(QSize(iconSize, iconSize), devicePixelRatioF()));
    auto* texts = new QVBoxLayout;
    texts->addStretch();
    texts->addWidget(label("lblTitle", applicationTitle(), textColour, 2.8, this));
    texts->addWidget(
        label("lblPurpose", QStringLiteral("Simulador del microprocesador 8085"), mutedColour, 1.2, this));
    texts->addSpacing(12);
    texts->addWidget(lblVersion);
    texts->addStretch();
    auto* top = new QHBoxLayout;
    top->addWidget(icon);
    top->addSpacing(20);
    top->addLayout(texts, 1);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(Label3, 1);
    bottom->addWidget(OK);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(28, 28, 28, 20);
    layout->addLayout(top, 1);
    layout->addSpacing(20);
    layout->addLayout(bottom);
    // The same size with and without the button.
    layout->setSizeConstraint(QLayout::SetFixedSize);
    QSizePolicy policy = OK->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    OK->setSizePolicy(policy);
    OK->setDefault(true);
}

void Cabecera::paintEvent(QPaintEvent* event) {
    Q_UNUSED(event)
    QPainter painter(this);
    QLinearGradient gradient(0, 0, 0, height());
    gradient.setColorAt(0, topColour);
    gradient.setColorAt(1, bottomColour);
    painter.fillRect(rect(), gradient);
    painter.setPen(edgeColour);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void Cabecera::present(Face face) {
    const bool okVisible = face == Face::about;
    OK->setVisible(okVisible);
    OK->setEnabled(face != Face::farewell);
    setWindowFlags(okVisible ? Qt::Dialog | Qt::WindowCloseButtonHint
                             : Qt::SplashScreen | Qt::FramelessWindowHint);
    Timer1->start();
    if (okVisible) return;
    adjustSize();
    move(QGuiApplication::primaryScreen()->availableGeometry().center() - rect().center());
    QDialog::show();
}

void Cabecera::showSplash() {
    present(Face::splash);
    if (check_ != nullptr) return;
    check_ = new UpdateCheck(updates_.address, own_, this);
    connect(check_, &UpdateCheck::updateFound, this, &Cabecera::offer);
    check_->start();
}

void Cabecera::showAbout() {
    present(Face::about);
    OK->setFocus();
    exec();
}

void Cabecera::showFarewell() {
    present(Face::farewell);
}

void Cabecera::OK_Click() {
    accept();
}

void Cabecera::Timer1_Timer() {
    Timer1->stop();
    if (!OK->isHidden()) return;
    if (!OK->isEnabled()) {
        emit ended();
        return;
    }
    delete check_;
    check_ = nullptr;
    emit splashOver();
    hide();
}

/// The main window waits behind the splash until the question is answered.
void Cabecera::offer(const Update& update) {
    Timer1->stop();
    const QString question = QStringLiteral(
                                 "Hay actualizaciones disponibles\r\n(Versión actual: %1 - Versión nueva: "
                                 "%2)\r\n¿Desea descargarla ahora?")
                                 .arg(own_.text(), update.version.text());
    if (!askYesNo(this, question)) {
        Timer1->start();
        return;
    }
    if (!download(updates_.updaterPath, update.address)) {
        showMessage(this, QStringLiteral("No se ha podido abrir la descarga:\r\n") + update.address);
    }
    emit ended();
}

/// Only the timer closes the splash or the farewell screen.
void Cabecera::closeEvent(QCloseEvent* event) {
    if (OK->isHidden()) {
        event->ignore();
    } else {
        QDialog::closeEvent(event);
    }
}

void Cabecera::reject() {
    if (!OK->isHidden()) QDialog::reject();
}

}  // namespace tavinor

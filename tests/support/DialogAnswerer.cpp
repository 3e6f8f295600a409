#include "tests/support/DialogAnswerer.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include "tests/support/RealInput.h"

namespace tavinor {

namespace {

void failTheTest(const QString& complaint) {
    QTest::qFail(qPrintable(complaint), __FILE__, __LINE__);
}

constexpr int settlingTime = 60;  // milliseconds
const QString progress = QStringLiteral("progreso");

bool onAScreen() {
    return QGuiApplication::platformName() != QStringLiteral("offscreen");
}

QString normalLineEnds(QString text) {
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    return text.replace('\r', '\n');
}

QString describe(const QWidget* window) {
    const auto* box = qobject_cast<const QMessageBox*>(window);
    return QStringLiteral("%1 \"%2\" %3")
        .arg(window->objectName(), window->windowTitle(), box == nullptr ? QString() : box->text());
}

/// A window that has closed by itself, as one that shows progress does, had no need to.
bool becomesActive(const QWidget* window) {
    return QTest::qWaitFor([window] { return window->windowHandle()->isActive() || !window->isVisible(); });
}

}  // namespace

DialogAnswerer::DialogAnswerer(Report report) : report_(report ? std::move(report) : failTheTest) {
    qApp->installEventFilter(this);
}

DialogAnswerer::~DialogAnswerer() {
    for (const Expectation& expectation : expected_) {
        report_(QStringLiteral("this dialog did not come: ") + expectation.what);
    }
}

void DialogAnswerer::expectMessage(const QString& text, Qt::Alignment alignment) {
    expected_.push_back({text, [this, text, alignment](QWidget* window) {
                             auto* box = qobject_cast<QMessageBox*>(window);
                             if (box == nullptr) return false;
                             answerMessageBox(*box, text, QMessageBox::Ok, QMessageBox::Ok, alignment);
                             return true;
                         }});
}

void DialogAnswerer::expectQuestion(const QString& text, QMessageBox::StandardButtons buttons,
                                    QMessageBox::StandardButton answer) {
    expected_.push_back({text, [this, text, buttons, answer](QWidget* window) {
                             auto* box = qobject_cast<QMessageBox*>(window);
                             if (box == nullptr) return false;
                             answerMessageBox(*box, text, buttons, answer, Qt::AlignLeft);
                             return true;
                         }});
}

void DialogAnswerer::expectFileDialog(const ExpectedFileDialog& expected, const QString& path) {
    expected_.push_back({expected.title, [this, expected, path](QWidget* window) {
                             auto* dialog = qobject_cast<QFileDialog*>(window);
                             if (dialog == nullptr) return false;
                             answerFileDialog(*dialog, expected, path);
                             return true;
                         }});
}

void DialogAnswerer::expectWindow(const QString& objectName, std::function<void(QWidget*)> action) {
    expected_.push_back({objectName, [objectName, action = std::move(action)](QWidget* window) {
                             if (window->objectName() != objectName) return false;
                             action(window);
                             return true;
                         }});
}

bool DialogAnswerer::eventFilter(QObject* watched, QEvent* event) {
    const bool shown = event->type() == QEvent::Show && !event->spontaneous();
    const bool hidden = event->type() == QEvent::Hide && !event->spontaneous();
    if ((shown || hidden) && watched->isWidgetType()) {
        auto* window = static_cast<QWidget*>(watched);
        if (window->isWindow() && window->isModal()) {
            // Once its own event loop turns, the window is complete and can be used as a user would.
            if (shown) QTimer::singleShot(0, window, [this, window] { serve(window); });
            if (hidden) giveTheFocusBack(window);
        }
    }
    return QObject::eventFilter(watched, event);
}

/// A dialog may have come while a button of the mouse was down: a user does not answer it like that.
void DialogAnswerer::letGoOfTheMouse(QWidget* window) {
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton}) {
        if (QGuiApplication::mouseButtons().testFlag(button)) {
            QTest::mouseRelease(window->windowHandle(), button, Qt::NoModifier, QPoint(1, 1));
        }
    }
}

/// Without a screen there is no window manager that activates the parent of a closed dialog.
void DialogAnswerer::giveTheFocusBack(QWidget* dialog) {
    QWidget* parent = dialog->parentWidget();
    if (parent == nullptr || onAScreen()) return;
    QTimer::singleShot(0, parent->window(), &QWidget::activateWindow);
}

/// Progress comes where the machine happens to be slow. Unless a test is about it, the user waits.
bool DialogAnswerer::mayBeLeftAlone(const QWidget* window) const {
    return window->objectName() == progress && (expected_.empty() || expected_.front().what != progress);
}

void DialogAnswerer::serve(QWidget* window) {
    if (mayBeLeftAlone(window)) return;
    ++count_;
    letGoOfTheMouse(window);
    // A window manager passes the focus about for a while; a user does not answer before it has settled.
    if (onAScreen()) QTest::qWait(settlingTime);
    if (!becomesActive(window)) report_(QStringLiteral("inactive: ") + describe(window));
    if (expected_.empty()) {
        report_(QStringLiteral("unexpected: ") + describe(window));
        dismiss(window);
        return;
    }
    const Expectation next = std::move(expected_.front());
    expected_.pop_front();
    if (!next.answer(window)) {
        report_(QStringLiteral("expected \"%1\", but there came %2").arg(next.what, describe(window)));
        dismiss(window);
    }
}

void DialogAnswerer::check(bool good, const QString& complaint) {
    if (!good) report_(complaint);
}

void DialogAnswerer::answerMessageBox(QMessageBox& box, const QString& text,
                                      QMessageBox::StandardButtons buttons,
                                      QMessageBox::StandardButton answer, Qt::Alignment alignment) {
    check(box.windowTitle() == QStringLiteral("Tavinor"),
          QStringLiteral("message box titled \"%1\"").arg(box.windowTitle()));
    check(box.text() == normalLineEnds(text),
          QStringLiteral("message box says \"%1\", expected \"%2\"").arg(box.text(), text));
    check(box.informativeText().isEmpty() && box.detailedText().isEmpty(),
          QStringLiteral("message box says more than its text: ") + describe(&box));
    check(box.standardButtons() == buttons,
          QStringLiteral("message box with buttons 0x%1").arg(box.standardButtons().toInt(), 0, 16));
    check(box.icon() == QMessageBox::NoIcon, QStringLiteral("message box with an icon: ") + describe(&box));
    check(box.textFormat() == Qt::PlainText, QStringLiteral("message box not plain: ") + describe(&box));
    if (const auto* label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"))) {
        check((label->alignment() & Qt::AlignHorizontal_Mask) == alignment,
              QStringLiteral("message box aligned otherwise: ") + describe(&box));
    }
    QAbstractButton* button = box.button(answer);
    if (answer == QMessageBox::NoButton) {
        pressKey(&box, Qt::Key_Escape);
    } else if (button != nullptr) {
        clickIn(button);
    }
    if (box.isVisible()) {
        report_(QStringLiteral("message box cannot be answered so: ") + describe(&box));
        dismiss(&box);
    }
}

void DialogAnswerer::answerFileDialog(QFileDialog& dialog, const ExpectedFileDialog& expected,
                                      const QString& path) {
    auto* name = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    auto* buttons = dialog.findChild<QDialogButtonBox*>();
    if (name == nullptr || buttons == nullptr) {
        report_(QStringLiteral("not Qt's own file dialog: ") + describe(&dialog));
        dismiss(&dialog);
        return;
    }
    check(dialog.objectName() == QStringLiteral("fileDialog"),
          QStringLiteral("file dialog without its name"));
    check(dialog.windowTitle() == expected.title, QStringLiteral("file dialog titled \"%1\", expected \"%2\"")
                                                      .arg(dialog.windowTitle(), expected.title));
    check(dialog.nameFilters() == expected.filters,
          QStringLiteral("file dialog with filters \"%1\"").arg(dialog.nameFilters().join('|')));
    check(
        name->text() == expected.presetName,
        QStringLiteral("file dialog presets \"%1\", expected \"%2\"").arg(name->text(), expected.presetName));
    check((dialog.acceptMode() == QFileDialog::AcceptSave) == expected.saving,
          QStringLiteral("file dialog of the other kind: ") + describe(&dialog));
    // Typed letter by letter, the completer's list would come between; what is accepted is the same.
    name->setText(path);
    QPushButton* accept = buttons->button(expected.saving ? QDialogButtonBox::Save : QDialogButtonBox::Open);
    QPushButton* press = path.isEmpty() ? buttons->button(QDialogButtonBox::Cancel) : accept;
    if (press != nullptr) clickIn(press);
    if (dialog.isVisible()) {
        report_(QStringLiteral("file dialog did not take \"%1\"").arg(path));
        dismiss(&dialog);
    }
}

void DialogAnswerer::dismiss(QWidget* window) {
    if (auto* dialog = qobject_cast<QDialog*>(window)) dialog->reject();
    if (window->isVisible()) window->close();
    // A window that refuses to go would keep its event loop turning for ever.
    if (window->isVisible()) qFatal("no way to end %s", qPrintable(describe(window)));
}

}  // namespace tavinor

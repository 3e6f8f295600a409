#include "ui/common/Fonts.h"

#include <QApplication>
#include <QEvent>
#include <QFontDatabase>
#include <QStringList>
#include <QWidget>

namespace tavinor {

namespace {

/// A widget with a font of its own does not hear that the desktop's has changed; its parent does.
class FontKeeper : public QObject {
  public:
    FontKeeper(QWidget* widget, const std::function<QFont()>& font, const std::function<void()>& fit)
        : QObject(widget), widget_(widget), font_(font), fit_(fit) {
        if (widget->parentWidget() != nullptr) widget->parentWidget()->installEventFilter(this);
        apply();
    }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::FontChange) apply();
        return QObject::eventFilter(watched, event);
    }

  private:
    void apply() {
        widget_->setFont(font_());
        if (fit_) fit_();
    }

    QWidget* widget_;
    std::function<QFont()> font_;
    std::function<void()> fit_;
};

}  // namespace

QFont fixedFont() {
    // Fonts with a slashed or dotted zero, by system: Linux, Windows, macOS.
    static const QStringList preferred{"DejaVu Sans Mono", "Cascadia Mono", "Consolas", "Menlo"};
    const QStringList installed = QFontDatabase::families();
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    for (const QString& family : preferred) {
        if (installed.contains(family)) {
            font.setFamily(family);
            break;
        }
    }
    font.setFixedPitch(true);
    font.setStyleHint(QFont::Monospace);
    font.setPointSizeF(QApplication::font().pointSizeF());
    return font;
}

QFont arialFont(double scale, bool bold) {
    QFont font(QStringLiteral("Arial"));
    font.setStyleHint(QFont::SansSerif);
    font.setPointSizeF(QApplication::font().pointSizeF() * scale);
    font.setBold(bold);
    return font;
}

QFont desktopFont(double scale, bool bold) {
    QFont font = QApplication::font();
    font.setPointSizeF(font.pointSizeF() * scale);
    font.setBold(bold);
    return font;
}

void useFont(QWidget* widget, const std::function<QFont()>& font, const std::function<void()>& fit) {
    new FontKeeper(widget, font, fit);
}

}  // namespace tavinor

#pragma once

#include <QPlainTextEdit>
#include <QResizeEvent>

namespace tavinor {

/// A text box for millions of lines, which are not wrapped.
class UnwrappedText : public QPlainTextEdit {
  public:
    explicit UnwrappedText(QWidget* parent) : QPlainTextEdit(parent) {
        setLineWrapMode(QPlainTextEdit::NoWrap);
    }

  protected:
    /// At another width Qt would lay out every line anew, and keep half a kilobyte for each. These lines are
    /// the same at any width.
    void resizeEvent(QResizeEvent* event) override {
        QResizeEvent sameWidth(event->size(), QSize(event->size().width(), event->oldSize().height()));
        QPlainTextEdit::resizeEvent(&sameWidth);
    }
};

}  // namespace tavinor

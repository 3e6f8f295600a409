#pragma once

#include <QLineEdit>

namespace tavinor {

/// The box for the text to find: all selected whenever it gets the focus, and Enter searches, also where the
/// dialog's button is disabled.
class PatternBox : public QLineEdit {
    Q_OBJECT

  public:
    PatternBox(const QString& name, const QString& accessibleName, QWidget* parent);

  signals:
    void entered();

  protected:
    void focusInEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;

  private:
    void noteEdit();

    QString noted_;               // the text before the last change
    bool selectOnPress_ = false;  // the press that gave the focus keeps the whole text selected
};

}  // namespace tavinor

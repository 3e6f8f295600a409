#pragma once

#include <QCheckBox>
#include <QPushButton>
#include <QString>

/// Buttons and check boxes that act only when the hexadecimal box with the focus has let go of it. Qt
/// presses a button by its access key, by Enter in a dialog or by an assistive tool without moving
/// the focus; here every such press leaves the box first, and a refused box stops it.
namespace tavinor {

class CommandButton : public QPushButton {
    Q_OBJECT

  public:
    CommandButton(const QString& name, const QString& accessibleName, const QString& caption,
                  QWidget* parent);

  signals:
    /// The user pressed the button, and no box refused.
    void command();

  protected:
    void nextCheckState() override;
    bool event(QEvent* event) override;

  private:
    bool allowed_ = false;
};

class CommandCheckBox : public QCheckBox {
    Q_OBJECT

  public:
    CommandCheckBox(const QString& name, const QString& accessibleName, const QString& caption,
                    QWidget* parent);

    /// Shows a state, which the user has not chosen: no `changedByUser`.
    void showChecked(bool checked);

  signals:
    /// The user changed the state, and no box refused.
    void changedByUser(bool checked);

  private:
    void noteToggle(bool checked);

    bool showing_ = false;
};

/// A check box that only shows: it can be focused and read, not changed.
class DisplayCheckBox : public QCheckBox {
    Q_OBJECT

  public:
    DisplayCheckBox(const QString& name, const QString& accessibleName, const QString& caption,
                    QWidget* parent);

    void showChecked(bool checked);

  protected:
    void nextCheckState() override {}
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

  private:
    bool shown_ = false;
};

}  // namespace tavinor

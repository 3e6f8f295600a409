#pragma once

#include <QLabel>

namespace tavinor {

/// A label for a path. One that is too long for it is shown with its middle left out, and in full in the tool
/// tip; it never makes the window wider.
class PathLabel : public QLabel {
    Q_OBJECT

  public:
    explicit PathLabel(QWidget* parent);

    void showPath(const QString& path);

  protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace tavinor

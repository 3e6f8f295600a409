#pragma once

#include <QMessageBox>
#include <QObject>
#include <QString>
#include <deque>
#include <functional>

class QFileDialog;

namespace tavinor {

/// What a file dialog must show before it is answered.
struct ExpectedFileDialog {
    QString title;
    QStringList filters;  ///< The filters' texts, in order.
    QString presetName;
    bool saving = false;
};

/// Answers the modal windows that an action opens, while the action waits for them.
///
/// It is armed before the action with what must come, in order. Each dialog is checked (title, text, buttons,
/// no icon) and answered by a real click or key. A dialog that differs, that was not expected or that does
/// not come fails the test; every dialog is answered all the same, so that no test hangs on one. Only
/// progress that was not expected is left alone.
class DialogAnswerer : public QObject {
  public:
    using Report = std::function<void(const QString&)>;

    /// `report` is what a failure does; by default it fails the running Qt test.
    explicit DialogAnswerer(Report report = {});
    /// Fails when an expected dialog has not come.
    ~DialogAnswerer() override;

    /// A message box with OK alone, which is pressed. Line ends in `text` may be given in any form.
    void expectMessage(const QString& text, Qt::Alignment alignment = Qt::AlignLeft);
    /// A message box with `buttons`; `answer` is pressed, or Esc for `QMessageBox::NoButton`.
    void expectQuestion(const QString& text, QMessageBox::StandardButtons buttons,
                        QMessageBox::StandardButton answer);
    /// A file dialog, in which `path` is typed and accepted; an empty one presses Cancel.
    void expectFileDialog(const ExpectedFileDialog& expected, const QString& path);
    /// Any other modal window, by its objectName; `action` must end it.
    void expectWindow(const QString& objectName, std::function<void(QWidget*)> action);

    /// Whether everything expected so far has come.
    [[nodiscard]] bool allCame() const { return expected_.empty(); }
    /// How many modal windows have come.
    [[nodiscard]] int count() const { return count_; }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    struct Expectation {
        QString what;
        std::function<bool(QWidget*)> answer;  // false: it is another kind of window
    };

    [[nodiscard]] bool mayBeLeftAlone(const QWidget* window) const;
    void serve(QWidget* window);
    static void letGoOfTheMouse(QWidget* window);
    static void giveTheFocusBack(QWidget* dialog);
    void check(bool good, const QString& complaint);
    void answerMessageBox(QMessageBox& box, const QString& text, QMessageBox::StandardButtons buttons,
                          QMessageBox::StandardButton answer, Qt::Alignment alignment);
    void answerFileDialog(QFileDialog& dialog, const ExpectedFileDialog& expected, const QString& path);
    void dismiss(QWidget* window);

    Report report_;
    std::deque<Expectation> expected_;
    int count_ = 0;
};

}  // namespace tavinor

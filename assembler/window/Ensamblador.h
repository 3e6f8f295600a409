#pragma once

#include <QDialog>
#include <QString>

class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace tavinor {

class PathLabel;
struct AssemblyResult;

/// The assembler's window: it assembles a source as soon as it is shown, shows the listing and the error
/// report or the HEX records growing, says how it ended and writes the listing file. It cannot be closed
/// before. See behaviour.md, Assembler window: an assembly.
class Ensamblador : public QDialog {
    Q_OBJECT

  public:
    explicit Ensamblador(QWidget* parent);

    /// Shows the window over its parent, assembles `source` into `hex` and writes `listing` (none when
    /// empty); returns when the window has been closed. Once for each window. An assembly that takes long can
    /// be cancelled.
    void assemble(const QString& source, const QString& hex, const QString& listing);

  protected:
    void closeEvent(QCloseEvent* event) override;
    void reject() override;

  private:
    void layOut();
    void run();
    void assembleFiles();
    void showOutcome(const AssemblyResult& result);
    void end(const QString& outcome);
    [[nodiscard]] bool running() const;

    PathLabel *file1 = nullptr, *file2 = nullptr, *file3 = nullptr;
    QPlainTextEdit *filelst = nullptr, *filehex = nullptr;
    QLabel* Label1 = nullptr;
    QPushButton* cerrar = nullptr;
};

}  // namespace tavinor

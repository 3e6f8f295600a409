#pragma once

#include <QByteArray>
#include <QDialog>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QString>
#include <QStringList>
#include <functional>

#include "tests/support/DialogAnswerer.h"
#include "tests/support/TemporaryFolder.h"
#include "ui/main/Principal.h"

namespace tavinor {

/// What the assembler's window shows.
struct Shown {
    QString source;
    QString listing;
    QString report;
    QString outcome;
    QString focus;  ///< The name of the control that has the focus.

    static Shown by(const QDialog& window);
};

/// Someone in front of the main window, with a folder for sources, who assembles with real clicks and keys.
class AssemblerUser {
  public:
    using Look = std::function<void(QDialog& window)>;

    AssemblerUser();

    [[nodiscard]] QString path(const QString& name) const;
    void write(const QString& name, const QByteArray& bytes);
    [[nodiscard]] QByteArray read(const QString& name) const;
    [[nodiscard]] QStringList files() const;
    /// Lets any user write into the folder.
    void allowAllUsers() const;

    /// What happens while the assembly runs, and once it has ended, before the window is closed.
    Look during;
    Look afterwards;
    /// How the window is closed; by a click on its button unless something else is given.
    Look closing;

    /// Presses "Ensam", chooses the source and closes the window once the assembly has ended. `boxes` are the
    /// messages that come meanwhile. Returns what the window showed at the end.
    Shown assemble(const QString& name, const QStringList& boxes = {});
    /// The same with a window made for these paths, without the command.
    Shown assemblePaths(const QString& source, const QString& hex, const QString& listing,
                        const QStringList& boxes = {});
    /// Presses "Ensam" and chooses a path that no window opens for; an empty one cancels the file dialog.
    void choose(const QString& path, const QStringList& boxes = {});
    void expectFileDialog(const QString& path);

    [[nodiscard]] Principal& principal() { return principal_; }
    [[nodiscard]] DialogAnswerer& dialogs() { return dialogs_; }

  private:
    void expectBoxes(const QStringList& boxes);
    void expectAssembly(const QStringList& boxes);
    void whenEnded(QDialog& window, int loopLevel);
    void end(QDialog& window);

    test::TemporaryFolder folder_;
    Principal principal_;
    DialogAnswerer dialogs_;
    Shown shown_;
};

QPlainTextEdit* listingPane(const QDialog& window);
QPlainTextEdit* reportPane(const QDialog& window);
QPushButton* closeButton(const QDialog& window);

/// What pressing the close box of the window's frame does.
void pressCloseBox(QDialog& window);

/// Lines, each with an end.
QString lines(const QStringList& texts, const QString& lineEnd = QStringLiteral("\n"));

}  // namespace tavinor

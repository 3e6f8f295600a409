#pragma once

#include <QDialog>

class QAction;
class QCheckBox;
class QLabel;

namespace tavinor {

class CommandButton;
class PatternBox;
class SourceEdit;

/// The editor's find dialog. It is hidden, not destroyed, between uses: what was searched for, and where it
/// was found last, are still there the next time. See behaviour.md, Editor: find dialog.
class Busqueda : public QDialog {
    Q_OBJECT

  public:
    /// `Buscarsiguiente` is the editor's command to repeat the search: it is enabled by a match.
    Busqueda(SourceEdit* texto, QAction* Buscarsiguiente, QWidget* parent);

    /// Shows the dialog for typing.
    void showForTyping();
    /// Selects the next occurrence in the editor's text, or says that there is none.
    void Buscar_Click();

  protected:
    bool event(QEvent* event) override;

  private:
    void layOut();
    void cadena_Change();
    void search();
    bool selectFrom(qsizetype start);

    SourceEdit* texto_ = nullptr;
    QAction* Buscarsiguiente_ = nullptr;
    PatternBox* cadena = nullptr;
    QCheckBox* may = nullptr;
    CommandButton *Buscar = nullptr, *cancel = nullptr;
    QLabel* dirini = nullptr;  // position of the last match, counted from 1, or empty
};

}  // namespace tavinor

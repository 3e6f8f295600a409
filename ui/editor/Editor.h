#pragma once

#include <QMainWindow>
#include <QPointer>
#include <QString>
#include <chrono>
#include <optional>

#include "ui/common/WorkProgress.h"
#include "ui/editor/KnownContents.h"
#include "ui/editor/SourceFile.h"

class QAction;
class QLabel;
class QMenu;

namespace tavinor {

class Busqueda;
class RescueCopy;
class SourceEdit;

/// The editor for assembly sources: one text at a time, and a question before changes are lost. Between uses
/// it is hidden and holds nothing. See behaviour.md, Editor: files.
class Editor : public QMainWindow {
    Q_OBJECT

  public:
    explicit Editor(QWidget* parent = nullptr);
    ~Editor() override;

    /// The main window's command: brings the open editor forward, or asks for a file and shows it.
    void openFromPrincipal(QWidget* principal);
    /// A source that was dropped on the main window, or on the editor itself: opens it as `Abrir` does once
    /// the file has been chosen.
    void openDropped(const QString& path, QWidget* principal);
    /// Closes the editor as any close does. False when it stays open: the text has not been saved.
    bool mayClose() { return close(); }
    /// How long saving may take before it shows how far it is.
    void setPatience(std::chrono::milliseconds patience) { patience_ = patience; }
    /// Leaves the text, if it has not been saved and has a name, beside the file of that name. A copy of
    /// another text that is there keeps its contents, under another name. Only reads what the editor holds:
    /// the program may be ending in the middle of anything.
    void rescue();

  protected:
    bool event(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

  private:
    void makeMenus();
    void Nuevo_Click();
    void Abrir_Click();
    void guardar_Click();
    void guardarcomo_Click();
    void Buscar_Click();
    void Buscarsiguiente_Click();
    void refreshEdicion();

    void bringForward();
    /// True when the text may go: nothing changed, or the user has saved it or gives it up. The text that the
    /// question is about is in view, also when the window was minimised.
    bool askToSave();
    /// Another path in `filename`, and its caption. The text stays.
    void setFilename(const QString& path);
    /// @throws std::bad_alloc with the old text, or with none and no name
    void open(const QString& path);
    /// Shows what was read of the file in `filename`. True when the text counts as changed from the
    /// beginning: it is that of a rescue copy.
    bool filename_Change(const SourceFile& file);
    /// `encoding` is the source's, if that could be read.
    bool loadRescueCopy(const RescueCopy& copy, const TextEncoding* encoding);
    /// Shows a file that another program has changed, if there is nothing to lose.
    void readAgain();
    /// True when the file on disk is the one that is known, or the user gives it up.
    bool mayOverwrite();
    void showCaption();
    void clearText();
    /// False when the text was not saved: an error, or the user has cancelled it. Then the old file is as it
    /// was, and the text is changed as before.
    bool write(const QString& path);
    bool writeText(const QString& path);
    /// The encoding that a text is saved in; nothing when the user does not want it to be another one.
    std::optional<TextEncoding> encodingFor(const QString& text);
    /// The window that questions belong to.
    [[nodiscard]] QWidget* front();

    SourceEdit* texto = nullptr;
    QLabel *filename = nullptr, *filepath = nullptr;
    QMenu *Archivo = nullptr, *Edicion = nullptr, *Buscarvacio = nullptr;
    QAction *Nuevo = nullptr, *Abrir = nullptr, *guardar = nullptr, *guardarcomo = nullptr, *Salir = nullptr;
    QAction *Cortar = nullptr, *Copiar = nullptr, *Pegar = nullptr, *Buscar = nullptr,
            *Buscarsiguiente = nullptr;
    Busqueda* busqueda_ = nullptr;
    QPointer<QWidget> principal_;
    QString caption_;
    TextEncoding encoding_ = TextEncoding::utf8;
    KnownContents known_;
    bool changed_ = false;
    bool busyWithFile_ = false;  // reading or saving, maybe asking about it
    bool copyIsOurs_ = false;    // the rescue copy that is there holds what this text was before
    std::chrono::milliseconds patience_ = WorkProgress::usualPatience;
};

}  // namespace tavinor

#pragma once

#include <QMainWindow>
#include <QString>
#include <chrono>

#include "ui/common/WorkProgress.h"

class QAction;

namespace tavinor {

class Simulation;
class TraceFile;
class TraceView;

/// The window of a simulation's trace. Its rows are there whether or not it is shown, until it is closed or
/// cleared; hiding it keeps them. See behaviour.md, Trace window: rows.
class Listapasos : public QMainWindow {
    Q_OBJECT

  public:
    explicit Listapasos(Simulation& simulation, QWidget* parent = nullptr);
    ~Listapasos() override;

    /// Shows the window in front of the others.
    void open();
    /// Shows the rows that were recorded since the last time. To be called at the pace of the screen.
    void bringUpToDate();
    /// How long saving may take before it shows how far it is.
    void setPatience(std::chrono::milliseconds patience) { patience_ = patience; }

  signals:
    /// The trace is empty now: there is nothing to go back to.
    void cleared();

  protected:
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    void makeMenus();
    void clear();
    void salvar_Click();
    void borrar_Click();
    void cerrar_Click();
    /// True when the window may close: its rows will be lost.
    bool Form_QueryUnload();
    void save(const QString& path);
    bool writeAll(TraceFile& file);

    Simulation& simulation_;
    std::chrono::milliseconds patience_ = WorkProgress::usualPatience;
    TraceView* lista = nullptr;
    QAction* salvar = nullptr;
    QAction* borrar = nullptr;
    QAction* cerrar = nullptr;
};

}  // namespace tavinor

#pragma once

#include <QMainWindow>
#include <QString>
#include <chrono>

#include "ui/common/WorkProgress.h"
#include "ui/trace/TraceRecorder.h"

class QAction;

namespace tavinor {

class TraceFile;
class TraceView;

/// The window of the trace. It records whether or not it is shown, and keeps its rows until it is closed or
/// cleared; hiding it keeps them.
class Listapasos : public QMainWindow {
    Q_OBJECT

  public:
    explicit Listapasos(TraceStore::MemoryProbe memory = availableMemory, QWidget* parent = nullptr);
    ~Listapasos() override;

    /// Records; to be called before and after each instruction.
    [[nodiscard]] TraceRecorder& recorder() { return recorder_; }

    /// Shows the window in front of the others.
    void open();
    /// Shows the rows that were recorded since the last time. To be called at the pace of the screen.
    void bringUpToDate();
    /// How long saving may take before it shows how far it is.
    void setPatience(std::chrono::milliseconds patience) { patience_ = patience; }

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

    TraceRecorder recorder_;
    std::chrono::milliseconds patience_ = WorkProgress::usualPatience;
    TraceView* lista;
    QAction* salvar = nullptr;
    QAction* borrar = nullptr;
    QAction* cerrar = nullptr;
};

}  // namespace tavinor

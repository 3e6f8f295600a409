#pragma once

#include <QMainWindow>
#include <QString>
#include <cstdint>
#include <memory>
#include <new>
#include <optional>

#include "machine/RuntimeError.h"
#include "simulation/Simulation.h"
#include "ui/common/KeyRepeats.h"
#include "ui/common/MemoryGuard.h"
#include "ui/main/Halt.h"
#include "ui/main/Run.h"
#include "ui/main/ShownState.h"
#include "ui/main/WayBackCommands.h"

class QAction;
class QLabel;

namespace tavinor {

class BytePanel;
class CommandBar;
class Editor;
class EntryPanel;
class HistoryMenu;
class InterruptPanel;
class Listapasos;
class ListingPanel;
class RegisterPanel;
class StackPanel;

/// The window of the simulator. It has the simulation, wires the panels that show it, and carries out what
/// they announce. The window is running exactly while `Ejecutar` reads "&Parar".
///
/// In a run the widgets wait until the user could look: until an event is handed to a handler, the screen is
/// to be painted, or the halt dialog opens.
class Principal : public QMainWindow, private HaltHandler, private RunWindow {
    Q_OBJECT

  public:
    explicit Principal(std::unique_ptr<RunPace> pace = std::make_unique<ClockPace>());
    ~Principal() override;

    [[nodiscard]] const MachineState& machine() const { return simulation_.machine(); }
    [[nodiscard]] const Breakpoints& breakpoints() const { return simulation_.breakpoints(); }
    [[nodiscard]] const Trace& trace() const { return simulation_.trace(); }

    /// Loads a HEX file as `CargarHEX` does once the file has been chosen, and shows how it ended; where the
    /// user has cancelled it, nothing is said.
    void loadHexFile(const QString& path);

    /// Stops a run, if one is going, as the button does.
    void stopRun();
    /// The system asks for the end: a run stops, and the editor closes as any close does. False when the user
    /// would rather go on.
    bool agreesToEnd();
    /// Leaves unsaved text of the editor beside its source.
    void rescue() const;

  signals:
    /// The user asks what program this is.
    void aboutRequested();
    /// The window has closed for good: the program says goodbye and ends.
    void closed();

  protected:
    bool event(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    bool focusNextPrevChild(bool next) override;

  private:
    // What the simulation asks of its window.
    void haltComes() override;
    void halt() override;

    // What a run asks of its window.
    [[nodiscard]] bool running() const override;
    void stop() override;
    Executed executeSome(std::int64_t most) override;
    void bringUpToDate() override;
    /// The same, and the trace window, which otherwise follows at the pace of the screen.
    void showAll() override;

    LoadResult load(const QString& path);
    void showLoaded(const LoadResult& result);
    void Form_Load();
    /// Fills every cell of both grids with "00", whatever the machine holds. The cells are empty before.
    void llenagrd();
    void layOut();
    void makeMenus();
    void connectCommands();
    void connectPanels();

    void Ejecutar_Click();
    void Eje_paso_Click();
    void CargarHEX_Click();
    void Ensamblar_Click();
    void Editar_Click();
    /// A file that was dropped on the window: a command like that of a button.
    void openDropped(const QString& path, const QString& kind);
    void about_Click();
    void listains_Click();
    void Reset_Click();
    void Trap_Click();
    void Rst55_Click();
    void Rst65_Click();
    void Rst75_Click();
    void Intr_Click();
    /// Carries out a way back, and tells what it did. The window's other commands leave the focused box; this
    /// one only where it was typed in.
    template <typename Way>
    void goBack(const Way& way);
    /// True when the window may close: never while a run is going, and not before the editor has closed. See
    /// behaviour.md, Main window: runs.
    bool Form_QueryUnload();
    void carryOut(Halt::WayOut wayOut);

    /// The texts of the register boxes while one of them is being typed in.
    [[nodiscard]] std::optional<RegisterTexts> typedTexts() const;
    /// Refreshes every view.
    void regen();
    /// The bytes that both grids show follow what was written.
    void showWritten();
    void showRegisters();
    void allowWaysBack();

    void enterMemoryByte(std::int32_t address, int byte);
    void enterSelectedByte(std::int32_t address, int byte);
    void enterPortByte(std::int32_t address, int byte);
    /// `address` is 0..65537; a byte past FFFF is stored in its mirror cell and then fails.
    void enterInstructionByte(std::int32_t address, int byte);
    void enterRegisters(const Registers& registers);
    void enterPointer();
    void enterInterrupts(const InterruptState& state);
    void enterSerialInput(bool SID);

    /// Runs an event procedure. An error of the machine, or a lack of memory, ends it there, stops a run,
    /// refreshes the views and is shown in a message box.
    template <typename Procedure>
    void guarded(const Procedure& procedure) {
        try {
            procedure();
            run_.endWhereMemoryIsOut();
        } catch (const RuntimeError& error) {
            recover(errorText(error));
        } catch (const std::bad_alloc&) {
            recover(memoryOutText());
        }
    }
    static QString errorText(const RuntimeError& error);
    void recover(const QString& message);

    Simulation simulation_{*this};
    ShownValues shown_;
    Run run_;
    KeyRepeats keyRepeats_;
    bool viewsBehind_ = false;

    // In the order of the screen, which is the order of Tab.
    CommandBar* commands_ = nullptr;
    ListingPanel* listing_ = nullptr;
    EntryPanel* entry_ = nullptr;
    RegisterPanel* registers_ = nullptr;
    StackPanel* stack_ = nullptr;
    InterruptPanel* interrupts_ = nullptr;
    BytePanel* memory_ = nullptr;
    BytePanel* ports_ = nullptr;
    Halt* halt_ = nullptr;
    std::unique_ptr<Editor> editor_;  // a window of its own, not one in front of this one
    std::unique_ptr<Listapasos> trace_;
    QAction* listains = nullptr;
    HistoryMenu* history_ = nullptr;
    WayBackCommands waysBack_{simulation_, this};
    QLabel* state_ = nullptr;  // the status line
};

}  // namespace tavinor

#pragma once

#include <QDialog>
#include <cstdint>

#include "ui/startup/BuildOptions.h"
#include "ui/startup/Update.h"

class QLabel;
class QPushButton;
class QTimer;

namespace tavinor {

class UpdateCheck;

/// The window that opens the program, tells about it, and says goodbye. Its role is the state of `OK`:
/// hidden and enabled for the splash, visible for the about box, hidden and disabled for the farewell screen.
/// See behaviour.md, Start-up: window.
class Cabecera : public QDialog {
    Q_OBJECT

  public:
    explicit Cabecera(QWidget* parent = nullptr);
    /// With another version and update source than those of the build.
    Cabecera(const Version& own, const UpdateSource& updates, QWidget* parent = nullptr);

    /// Start-up: asks for updates meanwhile, and ends by its timer with `splashOver`.
    void showSplash();
    /// About box: returns when the user has closed it.
    void showAbout();
    /// Goodbye: ends by its timer with `ended`.
    void showFarewell();

  signals:
    /// The splash is over: the main window is to be shown. The splash goes away by itself afterwards.
    void splashOver();
    /// The program is to end.
    void ended();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void reject() override;

  private:
    void Form_Load();
    void layOut();
    void OK_Click();
    void Timer1_Timer();
    enum class Face : std::uint8_t { splash, about, farewell };
    void present(Face face);
    void offer(const Update& update);

    Version own_;
    UpdateSource updates_;
    QLabel *lblVersion = nullptr, *Label3 = nullptr;
    QPushButton* OK = nullptr;
    QTimer* Timer1 = nullptr;
    UpdateCheck* check_ = nullptr;
};

}  // namespace tavinor

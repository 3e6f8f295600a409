#pragma once

#include <QMenu>

namespace tavinor {

/// The menu "&Historial": the ways back.
class HistoryMenu : public QMenu {
    Q_OBJECT

  public:
    explicit HistoryMenu(QWidget* parent);

    /// Enables the commands, or disables them where there is nothing to undo or nothing may be undone.
    void allow(bool back);

    QAction *pasoAtras = nullptr, *atrasPunto = nullptr, *atrasCasilla = nullptr, *alPrincipio = nullptr;

  private:
    QAction* add(const char* name, const char* text, const QKeySequence& key);
};

}  // namespace tavinor

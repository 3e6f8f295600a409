#pragma once

#include <QFileDialog>
#include <QString>

class QLineEdit;

namespace tavinor {

/// Qt's own file dialog, which reads the name field in our way: Qt takes quotes for a list of names, and a
/// pattern for a name.
class FileDialog : public QFileDialog {
    Q_OBJECT

  public:
    /// `suffix`: see `understand`.
    FileDialog(QWidget* parent, const QString& title, QString suffix);

    /// The file that was accepted.
    [[nodiscard]] QString chosen() const { return chosen_; }

    /// Shows the files that fit `pattern`; "*.*" means all, also those without a dot.
    void showFitting(const QString& pattern);
    void presetName(const QString& name);

    void accept() override;
    void reject() override;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void readName();
    void choose(const QString& path);
    void takeDropped(const QString& path);

    QString suffix_;
    QString begin_;  // the folder that is shown first
    QString chosen_;
    QLineEdit* name_ = nullptr;
};

}  // namespace tavinor

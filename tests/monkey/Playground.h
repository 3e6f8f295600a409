#pragma once

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace tavinor::monkey {

/// A folder with good and bad files to open, and names to save under; also the home and the current folder as
/// long as it lives. Nothing is written elsewhere.
class Playground {
  public:
    Playground();

    [[nodiscard]] const QStringList& programs() const { return programs_; }
    [[nodiscard]] const QStringList& sources() const { return sources_; }
    [[nodiscard]] const QStringList& targets() const { return targets_; }

  private:
    QString write(const QString& name, const QByteArray& content);
    void copyExamples();
    void writePrograms();
    void writeSources();

    QTemporaryDir folder_;
    QStringList programs_, sources_, targets_;
};

}  // namespace tavinor::monkey

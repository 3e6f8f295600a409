#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>

namespace tavinor::monkey {

/// What the monkey has done, so that a failure can be understood and played again. Every end that is not a
/// good one (a broken rule, a finding of the sanitizers, a warning of Qt, a step that does not end)
/// tells it.
class Diary {
  public:
    Diary(std::uint64_t seed, int steps);
    ~Diary();
    Diary(const Diary&) = delete;
    Diary& operator=(const Diary&) = delete;

    /// A new step begins.
    void beginStep();
    /// What is about to be done.
    void note(const QString& deed);
    [[noreturn]] void fail(const QString& complaint) const;
    void tell() const;

    [[nodiscard]] int step() const { return step_; }
    [[nodiscard]] bool over() const { return step_ >= steps_; }

  private:
    std::uint64_t seed_;
    int steps_;
    int step_ = 0;
    QStringList deeds_;
};

}  // namespace tavinor::monkey

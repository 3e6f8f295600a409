#pragma once

#include <QList>

class QTextDocument;

namespace tavinor {

/// The characters that do not belong into a source and have come into its text all the same: keys, input
/// methods and assistive tools put them there on ways of their own.
class ForeignCharacters {
  public:
    explicit ForeignCharacters(QTextDocument* document) : document_(document) {}

    /// Looks for them among `added` characters that came to `position`.
    void note(int position, int added);
    /// They have gone again.
    void forget() { positions_.clear(); }
    /// Puts what belongs into a source in their places, as a part of the step of undo that they came with.
    void replace();

  private:
    QTextDocument* document_ = nullptr;
    QList<int> positions_;
};

}  // namespace tavinor

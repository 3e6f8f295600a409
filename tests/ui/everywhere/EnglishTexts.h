#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

namespace tavinor {

/// Tells what in a text is English.
///
/// Two things are: a whole text, or a key's name, that Qt's catalogue translates into something
/// else; and a word of the English dictionary that is no Spanish word and none of the program's own.
class EnglishTexts {
  public:
    /// Reads the catalogues and the dictionaries. Ends the test program when one is missing.
    EnglishTexts();

    /// The English parts of `text`, none when it is Spanish.
    [[nodiscard]] QStringList in(const QString& text) const;

  private:
    [[nodiscard]] bool isWord(const QString& word) const;

    QSet<QString> sources_;  // of the catalogues, where their translation differs
    QSet<QString> english_;
    QSet<QString> spanish_;
};

}  // namespace tavinor

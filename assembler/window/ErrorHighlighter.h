#pragma once

#include <QSyntaxHighlighter>

namespace tavinor {

/// Makes the errors of a report stand out: the lines that give number and message are bold, and in the colour
/// of errors.
class ErrorHighlighter : public QSyntaxHighlighter {
    Q_OBJECT

  public:
    using QSyntaxHighlighter::QSyntaxHighlighter;

  protected:
    void highlightBlock(const QString& text) override;
};

}  // namespace tavinor

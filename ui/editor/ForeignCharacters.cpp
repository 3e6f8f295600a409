#include "ui/editor/ForeignCharacters.h"

#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <algorithm>
#include <utility>

#include "ui/editor/SourceCharacters.h"

namespace tavinor {

void ForeignCharacters::note(int position, int added) {
    QTextBlock block = document_->findBlock(position);
    for (; block.isValid() && block.position() < position + added; block = block.next()) {
        const QString text = block.text();
        for (int i = std::max(position - block.position(), 0); i < text.size(); ++i) {
            if (isForeignToSource(text[i])) positions_.append(block.position() + i);
        }
    }
}

/// Not while the user goes back: what was replaced is there again until the next undo, and replacing it once
/// more would leave no way further back.
void ForeignCharacters::replace() {
    const QList<int> positions = std::exchange(positions_, {});
    if (positions.isEmpty() || document_->isRedoAvailable()) return;
    QTextCursor cursor(document_);
    cursor.joinPreviousEditBlock();
    for (const int position : positions) {
        cursor.setPosition(position);
        cursor.setPosition(position + 1, QTextCursor::KeepAnchor);
        cursor.insertText(sourceCharacters(document_->characterAt(position)));
    }
    cursor.endEditBlock();
}

}  // namespace tavinor

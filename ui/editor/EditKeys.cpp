#include "ui/editor/EditKeys.h"

#include <QKeyEvent>
#include <algorithm>
#include <array>

namespace tavinor {

namespace {

bool isModifier(int key) {
    return key == Qt::Key_Control || key == Qt::Key_Alt || key == Qt::Key_AltGr || key == Qt::Key_Shift ||
           key == Qt::Key_Meta;
}

}  // namespace

bool needsWholeText(const QEvent& event) {
    switch (event.type()) {
        case QEvent::KeyPress: return !isModifier(static_cast<const QKeyEvent&>(event).key());
        case QEvent::InputMethod:
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
        case QEvent::ContextMenu: return true;
        default: return false;
    }
}

bool removesSelection(const QKeyEvent& event) {
    constexpr std::array removing{QKeySequence::Backspace, QKeySequence::Delete,
                                  QKeySequence::DeleteStartOfWord, QKeySequence::DeleteEndOfWord,
                                  QKeySequence::DeleteEndOfLine};
    return (event.key() == Qt::Key_Backspace && (event.modifiers() & ~Qt::ShiftModifier) == 0) ||
           std::any_of(removing.begin(), removing.end(), [&event](auto key) { return event.matches(key); });
}

bool replacesSelection(const QKeyEvent& event) {
    const QString text = event.text();
    return event.matches(QKeySequence::InsertParagraphSeparator) ||
           (!text.isEmpty() && (text[0].isPrint() || text[0] == '\t') &&
            (event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == 0);
}

}  // namespace tavinor

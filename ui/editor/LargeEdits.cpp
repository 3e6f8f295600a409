#include "ui/editor/LargeEdits.h"

#include <QCoreApplication>
#include <QPlainTextEdit>
#include <QScopedValueRollback>
#include <QTextBlock>
#include <QTextDocument>
#include <algorithm>
#include <new>

#include "ui/common/RequiredMemory.h"
#include "ui/editor/SourceLimits.h"
#include "ui/editor/TextPieces.h"

namespace tavinor {

namespace {

// Qt does this much in one go before the user notices.
constexpr int fewLines = 20'000;
constexpr qsizetype fewCharacters = qsizetype{1024} * 1024;

int lengthOf(const QTextCursor& selection) {
    return selection.selectionEnd() - selection.selectionStart();
}

/// How many line ends are selected.
int linesOf(const QTextCursor& selection) {
    const QTextDocument* document = selection.document();
    return document->findBlock(selection.selectionEnd()).blockNumber() -
           document->findBlock(selection.selectionStart()).blockNumber();
}

/// What Qt's history takes for so many lines that are removed, measured.
std::uint64_t memoryOfRemoving(const QTextCursor& selection) {
    constexpr std::uint64_t ofALine = 128;
    return static_cast<std::uint64_t>(linesOf(selection)) * ofALine;
}

/// The lines at the end of a selection.
QTextCursor lastLinesOf(const QTextCursor& selection) {
    const QTextDocument* document = selection.document();
    const int last = document->findBlock(selection.selectionEnd()).blockNumber();
    const int first = document->findBlockByNumber(std::max(last - TextPieces::mostLines, 0)).position();
    QTextCursor lines = selection;
    lines.setPosition(std::max(first, selection.selectionStart()));
    lines.setPosition(selection.selectionEnd(), QTextCursor::KeepAnchor);
    return lines;
}

}  // namespace

LargeEdits::LargeEdits(QPlainTextEdit* box) : QObject(box), box_(box) {
    connect(box, &QPlainTextEdit::textChanged, this, &LargeEdits::noteChange);
}

bool LargeEdits::isLarge(QStringView text) {
    return text.size() > fewCharacters || text.count(u'\n') > fewLines;
}

bool LargeEdits::isLarge(const QTextCursor& selection) {
    return lengthOf(selection) > fewCharacters || linesOf(selection) > fewLines;
}

int LargeEdits::state() const {
    return box_->document()->availableUndoSteps();
}

void LargeEdits::replace(const QTextCursor& removed, QTextCursor place, const QString& text) {
    const double all = lengthOf(removed) + static_cast<double>(text.size());
    const auto portion = [this, removed, place, pieces = TextPieces(text), all]() mutable {
        if (removed.hasSelection()) {
            lastLinesOf(removed).removeSelectedText();
        } else if (!pieces.areAllTaken()) {
            place.insertText(pieces.next());
            box_->setTextCursor(place);
        }
        return 1 - (lengthOf(removed) + static_cast<double>(pieces.left())) / all;
    };
    change(memoryOfRemoving(removed) + memoryOf(extentOf(text)), portion);
}

void LargeEdits::removeSelection(const std::function<void()>& rest) {
    const QTextCursor removed = box_->textCursor();
    const double all = lengthOf(removed);
    const auto portion = [removed, all] {
        lastLinesOf(removed).removeSelectedText();
        return 1 - lengthOf(removed) / all;
    };
    change(memoryOfRemoving(removed), portion, rest);
}

void LargeEdits::change(std::uint64_t memory, const Portion& portion, const std::function<void()>& rest) {
    try {
        requireMemory(memory);
    } catch (const std::bad_alloc&) {
        emit memoryOut();
        return;
    }
    const int before = state();
    if (!carryOut(portion)) {
        goTo(before);
        box_->document()->clearUndoRedoStacks(QTextDocument::RedoStack);
        return;
    }
    rest();
    // It is less when another text has come meanwhile.
    if (state() > before) runs_.append({before, state()});
    box_->ensureCursorVisible();
}

/// False when the user has cancelled it, or memory has run out.
bool LargeEdits::carryOut(const Portion& portion) {
    try {
        const QScopedValueRollback current(portion_, portion);
        WorkProgress progress(box_->window(),
                              {QStringLiteral("Cambiando el texto..."), QStringLiteral("Parte cambiada")},
                              patience_);
        while (portion_) {
            const double done = portion_();
            if (done >= 1) break;
            QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
            if (!progress.goesOn(done)) return false;
        }
        return true;
    } catch (const std::bad_alloc&) {
        emit memoryOut();
        return false;
    }
}

void LargeEdits::finish() {
    while (portion_ && portion_() < 1) {
    }
    portion_ = nullptr;
}

void LargeEdits::forget() {
    portion_ = nullptr;
    runs_.clear();
}

void LargeEdits::undo() {
    walkOn(true);
}

void LargeEdits::redo() {
    walkOn(false);
}

/// One step of Qt's after the other, until one does not lead into a run.
void LargeEdits::walkOn(bool back) {
    const QScopedValueRollback walking(walking_, true);
    const int before = state();
    const auto step = [this, back] {
        const int here = state();
        back ? box_->undo() : box_->redo();
        const auto run = std::find_if(runs_.begin(), runs_.end(), [now = state()](const Run& each) {
            return each.from < now && now < each.to;
        });
        if (state() == here || run == runs_.end()) return 1.0;
        return (back ? run->to - state() : state() - run->from) / static_cast<double>(run->to - run->from);
    };
    if (!carryOut(step)) goTo(before);
}

/// Takes back what was cancelled. An assistive tool may have written meanwhile: then it ends where the way
/// does.
void LargeEdits::goTo(int target) {
    const QScopedValueRollback walking(walking_, true);
    const QScopedValueRollback<Portion> current(portion_, [this, target] {
        const int here = state();
        if (here > target) box_->undo();
        if (here < target) box_->redo();
        return state() == here || state() == target ? 1 : 0;
    });
    while (portion_ && portion_() < 1) {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    }
}

/// What is typed in the place of something undone leaves nothing to redo.
void LargeEdits::noteChange() {
    while (!walking_ && !runs_.isEmpty() && runs_.last().from >= rest_) runs_.removeLast();
    rest_ = state();
}

}  // namespace tavinor

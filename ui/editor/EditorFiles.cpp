// How a text comes from its file into the editor and goes back.

#include <QFileInfo>
#include <QLabel>
#include <QScopedValueRollback>
#include <new>
#include <optional>
#include <string>

#include "ui/common/MessageBoxes.h"
#include "ui/common/RequiredMemory.h"
#include "ui/editor/Editor.h"
#include "ui/editor/RescueCopy.h"
#include "ui/editor/SourceEdit.h"
#include "ui/editor/SourceLimits.h"

namespace tavinor {

namespace {

WorkTexts saveTexts() {
    return {QStringLiteral("Guardando el fichero..."), QStringLiteral("Parte guardada")};
}

QString whyNotRead(const SourceFile& file) {
    return file.state == SourceFile::State::tooLarge ? file.text : QStringLiteral("Error abriendo fichero");
}

/// As if the file had been read line by line. A save adds one more: see behaviour.md, Editor: files.
QString withLastLineEnd(const QString& text) {
    return text.endsWith('\n') ? text : text + '\n';
}

}  // namespace

/// The file is read before anything changes: where there is too little memory for it, the old text stays.
void Editor::open(const QString& path) {
    const QScopedValueRollback<bool> busy(busyWithFile_, true);
    KnownContents known;
    known.note(path);
    const SourceFile file = readSource(path);
    setFilename(path);
    known_ = known;
    try {
        changed_ = filename_Change(file);
    } catch (const std::bad_alloc&) {
        clearText();
        setFilename({});
        throw;
    }
}

/// A file that exists but cannot be read leaves the text without a name, so that no save puts an empty text
/// in its place. An empty file has nothing to lose and keeps its name.
bool Editor::filename_Change(const SourceFile& file) {
    clearText();
    const QString path = filename->text();
    const RescueCopy copy(path);
    if (copy.isNewer() && askYesNo(front(), QStringLiteral("Hay una copia de rescate más reciente.\r\n"
                                                           "¿Desea abrirla?"))) {
        return loadRescueCopy(copy, file.state == SourceFile::State::read ? &file.encoding : nullptr);
    }
    if (!QFileInfo::exists(path)) {
        const QString question =
            QStringLiteral("El fichero ") + path + QStringLiteral(" no existe\r\n¿Desea crearlo?");
        if (!askYesNo(front(), question)) setFilename({});
        return false;
    }
    if (file.state != SourceFile::State::read) {
        if (file.state != SourceFile::State::empty) setFilename({});
        showMessage(front(), whyNotRead(file));
        return false;
    }
    encoding_ = file.encoding;
    texto->setSource(withLastLineEnd(file.text));
    return false;
}

/// The text is shown to the letter. It goes on in the source's encoding, of which the copy tells only where
/// it has no character that the other one lacks.
bool Editor::loadRescueCopy(const RescueCopy& copy, const TextEncoding* encoding) {
    const SourceFile rescued = readSource(copy.path());
    if (rescued.state == SourceFile::State::failed || rescued.state == SourceFile::State::tooLarge) {
        setFilename({});
        showMessage(front(), whyNotRead(rescued));
        return false;
    }
    encoding_ = encoding != nullptr ? *encoding : rescued.encoding;
    texto->setSource(rescued.text);
    copyIsOurs_ = true;
    return true;
}

/// What has gone, or cannot be read, is left to the next save.
void Editor::readAgain() {
    if (changed_ || busyWithFile_ || !isVisible() || !known_.differFrom(filename->text())) return;
    const QScopedValueRollback<bool> busy(busyWithFile_, true);
    KnownContents now;
    now.note(filename->text());
    const SourceFile file = readSource(filename->text());
    if (file.state != SourceFile::State::read) return;
    texto->setSourceInPlace(withLastLineEnd(file.text));
    encoding_ = file.encoding;
    known_ = now;
}

bool Editor::mayOverwrite() {
    const QScopedValueRollback<bool> busy(busyWithFile_, true);
    const QString& path = filename->text();
    if (!known_.differFrom(path)) return true;
    const QString question = QStringLiteral("El fichero ") + path +
                             QStringLiteral(" ha cambiado en el disco\r\n¿Desea sobreescribirlo?");
    changed_ = true;  // not what is on disk, also while the question is open
    return askYesNo(this, question, DefaultAnswer::no);
}

bool Editor::write(const QString& path) {
    const QScopedValueRollback<bool> busy(busyWithFile_, true);
    try {
        return writeText(path);
    } catch (const Cancelled&) {
        return false;
    }
}

bool Editor::writeText(const QString& path) {
    if (texto->size() > smallSource) requireMemory(memoryOfSaving(texto->size()));
    const QString text = texto->source().append('\n');
    const int revision = texto->document()->revision();
    const std::optional<TextEncoding> encoding = encodingFor(text);
    if (!encoding) return false;
    std::optional<std::string> written;
    {
        WorkProgress progress(this, saveTexts(), patience_);
        written = writeSource(path, text, *encoding, progress);
    }
    if (!written) {
        showMessage(this, QStringLiteral("Error guardando fichero"));
        return false;
    }
    changed_ = texto->document()->revision() != revision;  // a tool may have written meanwhile
    encoding_ = *encoding;
    copyIsOurs_ = false;
    known_.noteWritten(*written);
    RescueCopy(path).remove();
    return true;
}

std::optional<TextEncoding> Editor::encodingFor(const QString& text) {
    const bool possible = [&] {
        WorkProgress progress(this, saveTexts(), patience_);
        return canEncodeSource(text, encoding_, progress);
    }();
    if (possible) return encoding_;
    const bool unicode = askYesNo(this, QStringLiteral("El texto contiene caracteres que no existen en la "
                                                       "codificación del fichero (Windows-1252)\r\n"
                                                       "¿Desea guardarlo en UTF-8?"));
    return unicode ? std::optional(TextEncoding::utf8) : std::nullopt;
}

/// Where it fails there is nothing left to try.
void Editor::rescue() {
    if (!changed_ || filename->text().isEmpty()) return;
    const auto text = [this](const auto& take) { texto->handOut(take); };
    using Earlier = RescueCopy::Earlier;
    const RescueCopy copy(filename->text());
    if (copy.write(text, encoding_, copyIsOurs_ ? Earlier::replaced : Earlier::kept)) copyIsOurs_ = true;
}

}  // namespace tavinor

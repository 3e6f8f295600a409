#include "ui/common/FileDialog.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QCompleter>
#include <QDialogButtonBox>
#include <QDropEvent>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QLineEdit>
#include <QPushButton>
#include <utility>

#include "ui/common/FileDrops.h"
#include "ui/common/MessageBoxes.h"
#include "ui/common/TypedName.h"

namespace tavinor {

FileDialog::FileDialog(QWidget* parent, const QString& title, QString suffix)
    : QFileDialog(parent, title), suffix_(std::move(suffix)) {
    setObjectName(QStringLiteral("fileDialog"));
    setOptions(DontUseNativeDialog | DontConfirmOverwrite);
    setFileMode(AnyFile);
    begin_ = directory().path();
    readName();
    // Qt would move files that are dropped on the list into the folder that it shows.
    for (const char* name : {"listView", "treeView"}) {
        findChild<QAbstractItemView*>(QString::fromLatin1(name))
            ->setDragDropMode(QAbstractItemView::NoDragDrop);
    }
}

/// Qt follows the name field too, to mark files in the list and to say whether its button can be pressed. Its
/// idea of the name is another one, so it is made to stop.
void FileDialog::readName() {
    name_ = findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    name_->installEventFilter(this);
    disconnect(name_, &QLineEdit::textChanged, this, nullptr);
    connect(name_, &QLineEdit::textChanged, this, [this](const QString& text) {
        const auto which = acceptMode() == AcceptSave ? QDialogButtonBox::Save : QDialogButtonBox::Open;
        if (QPushButton* button = findChild<QDialogButtonBox*>()->button(which)) {
            button->setEnabled(!text.isEmpty());
        }
    });
    // It would put the extension of another kind of files, "*" even, into the name.
    disconnect(findChild<QComboBox*>(QStringLiteral("fileTypeCombo")), &QComboBox::activated, this, nullptr);
}

void FileDialog::presetName(const QString& name) {
    name_->setText(name);
    name_->selectAll();
}

void FileDialog::showFitting(const QString& pattern) {
    if (auto* files = findChild<QFileSystemModel*>()) {
        files->setNameFilters({pattern == QStringLiteral("*.*") ? QStringLiteral("*") : pattern});
    }
}

void FileDialog::accept() {
    name_->completer()->popup()->hide();
    const TypedName typed = understand(name_->text(), directory(), suffix_);
    switch (typed.kind) {
        case TypedName::Kind::nothing: name_->selectAll(); break;
        case TypedName::Kind::folder:
            setDirectory(typed.path);
            name_->setFocus();  // without a name the button is disabled, and would hand the focus to
                                // "Cancelar"
            name_->clear();
            break;
        case TypedName::Kind::pattern:
            setDirectory(typed.path);
            showFitting(typed.pattern);
            presetName(typed.pattern);
            break;
        case TypedName::Kind::refused:
            showMessage(this, QStringLiteral("Un nombre de fichero no puede tener comillas"));
            break;
        case TypedName::Kind::file: choose(typed.path); break;
    }
}

/// A file that is dropped on the name field is chosen; Qt would put its address in. Other texts go in.
bool FileDialog::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    const bool drag = type == QEvent::DragEnter || type == QEvent::DragMove || type == QEvent::Drop;
    if (watched != name_ || !drag) return QFileDialog::eventFilter(watched, event);
    auto& drop = static_cast<QDropEvent&>(*event);
    if (!carriesFiles(*drop.mimeData())) return false;
    const QString path = draggedFile(*drop.mimeData());
    if (answerDrag(drop, !path.isEmpty()) && type == QEvent::Drop) takeDropped(path);
    return true;
}

void FileDialog::takeDropped(const QString& path) {
    const QFileInfo file(path);
    setDirectory(file.isDir() ? file.filePath() : file.path());
    name_->setFocus();
    presetName(file.isDir() ? QString() : file.fileName());
}

/// The next dialog begins in the folder of this file, also where it was given by its whole path.
void FileDialog::choose(const QString& path) {
    chosen_ = path;
    const QFileInfo folder(QFileInfo(path).path());
    if (folder.isDir()) setDirectory(folder.filePath());
    // Not QFileDialog's, which reads the name field in its own way.
    QDialog::accept();  // NOLINT(bugprone-parent-virtual-call)
}

/// Qt keeps each folder that was entered for the next dialog, chosen from or not.
void FileDialog::reject() {
    setDirectory(begin_);
    QFileDialog::reject();
}

}  // namespace tavinor

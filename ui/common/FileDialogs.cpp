#include "ui/common/FileDialogs.h"

#include <QChildEvent>
#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QHeaderView>
#include <QListView>
#include <QMessageBox>
#include <QSettings>
#include <QStringList>
#include <QTreeView>
#include <algorithm>

#include "ui/common/FileDialog.h"
#include "ui/common/FileDialogContents.h"
#include "ui/common/ScrollingContent.h"

namespace tavinor {

namespace {

/// Qt's file dialog writes its size and folders to the user's home when it closes. Nothing of this
/// program is persisted, so its settings get a place where nothing can be written. (On Windows they go to the
/// registry, where this has no effect.)
void keepSettingsOutOfTheHome() {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral(":/none"));
}

struct NameFilter {
    QString text;
    QString pattern;
};

QList<NameFilter> nameFilters(const QString& filter) {
    const QStringList parts = filter.split('|');
    QList<NameFilter> filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) filters.append({parts[i], parts[i + 1]});
    return filters;
}

/// Shows the filters' texts to the letter and filters by their patterns, which Qt would otherwise
/// take from the parentheses of the text: there "*.*" would leave out the files without a dot.
void installFilters(FileDialog& dialog, const QList<NameFilter>& filters) {
    QStringList texts;
    for (const NameFilter& filter : filters) texts.append(filter.text);
    dialog.setNameFilters(texts);
    const auto apply = [&dialog, filters](const QString& text) {
        for (const NameFilter& filter : filters) {
            if (filter.text == text) dialog.showFitting(filter.pattern);
        }
    };
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, apply);
    if (!texts.isEmpty()) apply(texts.first());
}

/// Qt's own questions, about a file to be deleted, take a name that looks like markup for markup.
class PlainQuestions : public QObject {
  public:
    using QObject::QObject;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::ChildPolished) {
            auto* box = qobject_cast<QMessageBox*>(static_cast<QChildEvent*>(event)->child());
            if (box != nullptr) box->setTextFormat(Qt::PlainText);
        }
        return QObject::eventFilter(watched, event);
    }
};

/// Qt gives all this room for English texts.
void makeRoomForTexts(QFileDialog& dialog) {
    constexpr int letters = 122;  // of a row of details: name, size, kind, date, and the places beside them
    constexpr int nameLetters = 45;  // so that a long name leaves the rest in view
    const int letter = dialog.fontMetrics().averageCharWidth();
    const QSize wanted(letters * letter, dialog.height());
    dialog.resize(wanted.boundedTo(roomOnScreen(dialog)));
    if (auto* types = dialog.findChild<QComboBox*>(QStringLiteral("fileTypeCombo"))) {
        types->setSizeAdjustPolicy(QComboBox::AdjustToContents);
        types->setSizePolicy(QSizePolicy::MinimumExpanding, QSizePolicy::Fixed);
    }
    if (auto* details = dialog.findChild<QTreeView*>(QStringLiteral("treeView"))) {
        details->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
        details->header()->setMaximumSectionSize(nameLetters * letter);
    }
}

/// Qt makes the side bar as wide as the first of its places, and cuts the others.
void makeRoomForPlaces(QFileDialog& dialog) {
    constexpr int mostLetters = 36;  // of a name that leaves the files in view
    auto* bar = dialog.findChild<QListView*>(QStringLiteral("sidebar"));
    if (bar == nullptr) return;
    const int letter = dialog.fontMetrics().averageCharWidth();
    const int names = bar->sizeHintForColumn(0) + letter + 2 * bar->frameWidth();
    bar->setMinimumWidth(std::min(names, mostLetters * letter));
}

std::optional<QString> askFile(QWidget* parent, const FileDialogTexts& texts, QFileDialog::AcceptMode mode) {
    keepSettingsOutOfTheHome();
    FileKinds kinds;
    FileDialog dialog(parent, texts.title, texts.defaultSuffix);
    dialog.setIconProvider(&kinds);
    dialog.setAcceptMode(mode);
    dialog.setSidebarUrls(places(QCoreApplication::applicationDirPath()));
    dialog.setProxyModel(new FileDetails(&dialog));
    installFilters(dialog, nameFilters(texts.filter));
    makeRoomForTexts(dialog);
    makeRoomForPlaces(dialog);
    dialog.installEventFilter(new PlainQuestions(&dialog));
    dialog.presetName(texts.initialName);
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    return QDir::toNativeSeparators(dialog.chosen());
}

}  // namespace

std::optional<QString> askFileToOpen(QWidget* parent, const FileDialogTexts& texts) {
    return askFile(parent, texts, QFileDialog::AcceptOpen);
}

std::optional<QString> askFileToSave(QWidget* parent, const FileDialogTexts& texts) {
    return askFile(parent, texts, QFileDialog::AcceptSave);
}

}  // namespace tavinor

#include "tests/ui/everywhere/ShownTexts.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QAction>
#include <QComboBox>
#include <QFileDialog>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QProgressBar>
#include <QTabBar>
#include <QTreeView>

namespace tavinor {

namespace {

class Collector {
  public:
    void addAll(const QWidget& window) {
        add(window, "title", window.windowTitle());
        addWidget(window);
        for (const QWidget* widget : window.findChildren<QWidget*>()) {
            if (widget->isVisible() && widget->window() == &window) addWidget(*widget);
        }
    }
    [[nodiscard]] const QList<ShownText>& texts() const { return texts_; }

  private:
    void add(const QObject& owner, const char* kind, const QString& text) {
        if (text.trimmed().isEmpty()) return;
        texts_.append(
            {QStringLiteral("%1 \"%2\", %3").arg(owner.metaObject()->className(), owner.objectName(), kind),
             text});
    }

    void addWidget(const QWidget& widget) {
        if (!showsAPath(widget)) add(widget, "tool tip", widget.toolTip());
        add(widget, "status tip", widget.statusTip());
        add(widget, "explanation", widget.whatsThis());
        addCaption(widget);
        for (const QAction* action : widget.actions()) addAction(*action);
        if (const auto* combo = qobject_cast<const QComboBox*>(&widget)) addChoices(*combo);
        if (const auto* header = qobject_cast<const QHeaderView*>(&widget)) addHeader(*header);
        if (const auto* files = qobject_cast<const QTreeView*>(&widget)) addFiles(*files);
        addSpoken(widget);
    }

    void addCaption(const QWidget& widget) {
        const auto* label = qobject_cast<const QLabel*>(&widget);
        if (label != nullptr && !showsAPath(widget)) add(widget, "label", label->text());
        if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
            add(widget, "caption", button->text());
        }
        if (const auto* group = qobject_cast<const QGroupBox*>(&widget)) add(widget, "group", group->title());
        if (const auto* bar = qobject_cast<const QProgressBar*>(&widget)) add(widget, "bar", bar->text());
        if (const auto* box = qobject_cast<const QLineEdit*>(&widget)) {
            add(widget, "placeholder", box->placeholderText());
        }
        if (const auto* menu = qobject_cast<const QMenu*>(&widget)) add(widget, "menu", menu->title());
        if (const auto* tabs = qobject_cast<const QTabBar*>(&widget)) {
            for (int i = 0; i < tabs->count(); ++i) add(widget, "tab", tabs->tabText(i));
        }
    }

    void addAction(const QAction& action) {
        add(action, "command", action.text());
        add(action, "tool tip of the command", action.toolTip());
        add(action, "key", action.shortcut().toString(QKeySequence::NativeText));
    }

    void addChoices(const QComboBox& combo) {
        if (showsAPath(combo)) return;
        for (int i = 0; i < combo.count(); ++i) add(combo, "choice", combo.itemText(i));
    }

    /// Headers at the side are addresses.
    void addHeader(const QHeaderView& header) {
        if (header.orientation() == Qt::Vertical) return;
        for (int i = 0; i < header.count(); ++i) {
            if (header.isSectionHidden(i)) continue;
            add(header, "header", header.model()->headerData(i, Qt::Horizontal).toString());
        }
    }

    /// Sizes, types and dates of a file dialog; not the names.
    void addFiles(const QTreeView& files) {
        const QAbstractItemModel* model = files.model();
        for (int row = 0; row < model->rowCount(files.rootIndex()); ++row) {
            for (int column = 1; column < model->columnCount(files.rootIndex()); ++column) {
                add(files, "cell", model->index(row, column, files.rootIndex()).data().toString());
            }
        }
    }

    void addSpoken(const QWidget& widget) {
        QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(const_cast<QWidget*>(&widget));
        if (spoken == nullptr) return;
        if (!showsAPath(widget)) add(widget, "name", spoken->text(QAccessible::Name));
        add(widget, "description", spoken->text(QAccessible::Description));
        add(widget, "help", spoken->text(QAccessible::Help));
        add(widget, "accelerator", spoken->text(QAccessible::Accelerator));
        QAccessibleActionInterface* actions = spoken->actionInterface();
        if (actions == nullptr) return;
        for (const QString& name : actions->actionNames()) {
            add(widget, "action", actions->localizedActionName(name));
            add(widget, "what the action does", actions->localizedActionDescription(name));
        }
    }

    /// Then its texts are no language.
    static bool showsAPath(const QWidget& widget) {
        return widget.objectName() == QStringLiteral("lookInCombo") || widget.inherits("tavinor::PathLabel");
    }

    QList<ShownText> texts_;
};

}  // namespace

QList<ShownText> shownTexts(const QWidget& window) {
    Collector collector;
    collector.addAll(window);
    return collector.texts();
}

}  // namespace tavinor

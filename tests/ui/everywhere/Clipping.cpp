#include "tests/ui/everywhere/Clipping.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QScrollBar>
#include <QSizeGrip>
#include <QStyleOptionComboBox>
#include <QStyleOptionFrame>
#include <QTableView>
#include <QTreeView>

#include "ui/common/HexBox.h"
#include "ui/trace/TraceView.h"

namespace tavinor {

namespace {

constexpr int innerMarginOfALineEdit = 2;

QString describe(const QWidget& widget) {
    return QStringLiteral("%1 \"%2\"").arg(widget.metaObject()->className(), widget.objectName());
}

QString inNumbers(const QSize& size) {
    return QStringLiteral("%1x%2").arg(size.width()).arg(size.height());
}

class Inspector {
  public:
    void inspect(const QWidget& window) {
        inspectOne(window);
        for (const QWidget* widget : window.findChildren<QWidget*>()) {
            if (widget->isVisible() && widget->window() == &window) inspectOne(*widget);
        }
    }
    [[nodiscard]] const QStringList& complaints() const { return complaints_; }

  private:
    void needs(const QWidget& widget, const QString& text, const QSize& there, const QSize& needed) {
        if (there.width() >= needed.width() && there.height() >= needed.height()) return;
        complaints_.append(QStringLiteral("%1 \"%2\": %3, needs %4")
                               .arg(describe(widget), text, inNumbers(there), inNumbers(needed)));
    }

    void inspectOne(const QWidget& widget) {
        checkCaption(widget);
        if (const auto* box = qobject_cast<const HexBox*>(&widget)) checkDigits(*box);
        if (const auto* combo = qobject_cast<const QComboBox*>(&widget)) checkChoice(*combo);
        if (const auto* header = qobject_cast<const QHeaderView*>(&widget)) checkHeader(*header);
        if (const auto* table = qobject_cast<const QTableView*>(&widget)) checkCells(*table);
        if (const auto* list = qobject_cast<const QListWidget*>(&widget)) checkRows(*list);
        if (const auto* files = qobject_cast<const QTreeView*>(&widget)) checkFiles(*files);
        if (const auto* trace = qobject_cast<const TraceView*>(&widget)) checkTrace(*trace);
        if (const auto* bar = qobject_cast<const QMenuBar*>(&widget)) checkActions(*bar, *bar);
        if (const auto* menu = qobject_cast<const QMenu*>(&widget)) checkActions(*menu, *menu);
        checkChildren(widget);
    }

    void checkCaption(const QWidget& widget) {
        const auto* label = qobject_cast<const QLabel*>(&widget);
        // A label that shortens its text by itself tells the whole one in its tool tip.
        if (label != nullptr && !label->text().isEmpty() && label->toolTip().isEmpty()) {
            const QSize needed =
                label->wordWrap() ? QSize(0, label->heightForWidth(label->width())) : label->sizeHint();
            needs(*label, label->text(), label->size(), needed);
        }
        if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
            const bool tool = button->inherits("QToolButton");  // with an icon alone
            const QSize needed = tool ? button->iconSize() : button->sizeHint();
            needs(*button, button->text(), button->size(), needed);
        }
        if (const auto* group = qobject_cast<const QGroupBox*>(&widget)) {
            needs(*group, group->title(), group->size(), group->minimumSizeHint());
        }
    }

    void checkDigits(const HexBox& box) {
        QStyleOptionFrame option;
        option.initFrom(&box);
        option.lineWidth = box.style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &option, &box);
        const QRect room = box.style()->subElementRect(QStyle::SE_LineEditContents, &option, &box);
        const QFontMetrics metrics(box.font());
        const QString widest(box.digits(), 'D');
        needs(box, widest, room.size() - QSize(2 * innerMarginOfALineEdit, 0),
              {metrics.horizontalAdvance(widest), metrics.height()});
    }

    /// The path in a file dialog's list of places may be any length.
    void checkChoice(const QComboBox& combo) {
        if (combo.objectName() == QStringLiteral("lookInCombo")) return;
        QStyleOptionComboBox option;
        option.initFrom(&combo);
        option.frame = combo.hasFrame();
        const QRect room =
            combo.style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, &combo);
        const QFontMetrics metrics(combo.font());
        needs(combo, combo.currentText(), room.size(),
              {metrics.horizontalAdvance(combo.currentText()), metrics.height()});
    }

    void checkHeader(const QHeaderView& header) {
        const QFontMetrics metrics(header.font());
        const bool across = header.orientation() == Qt::Horizontal;
        const int thickness = across ? header.height() : header.width();
        for (int i = 0; i < header.count(); ++i) {
            if (header.isSectionHidden(i)) continue;
            const QString text = header.model()->headerData(i, header.orientation()).toString();
            const QSize there =
                across ? QSize(header.sectionSize(i), thickness) : QSize(thickness, header.sectionSize(i));
            needs(header, text, there, {metrics.horizontalAdvance(text), metrics.height()});
        }
    }

    void checkCells(const QTableView& table) {
        const QFontMetrics metrics(table.font());
        const QSize needed(metrics.horizontalAdvance(QStringLiteral("DD")) + 4, metrics.height());
        for (int column = 0; column < table.model()->columnCount(); ++column) {
            needs(table, QStringLiteral("cell"), {table.columnWidth(column), table.rowHeight(0)}, needed);
        }
        checkNoBar(table);
    }

    void checkRows(const QListWidget& list) {
        const QSize needed(list.sizeHintForColumn(0), list.fontMetrics().height());
        needs(list, QStringLiteral("rows"), {list.viewport()->width(), list.sizeHintForRow(0)}, needed);
        checkNoBar(list);
    }

    /// Unless the screen is too small for a row of details.
    void checkFiles(const QTreeView& files) {
        if (files.screen()->availableSize().width() > 120 * files.fontMetrics().averageCharWidth()) {
            checkNoBar(files);
        }
    }

    /// Every column can be read, and all of them are there unless the screen is too small.
    void checkTrace(const TraceView& trace) {
        const QFontMetrics metrics(trace.font());
        int column = 0;
        for (const auto& header : traceHeader) {
            const QString text = QString::fromUtf8(header.data(), static_cast<qsizetype>(header.size()));
            needs(trace, text, trace.cellRect({trace.firstRow(), column++}).size(),
                  {metrics.horizontalAdvance(text), metrics.height()});
        }
        if (trace.sizeHint().width() < trace.screen()->availableSize().width()) checkNoBar(trace);
    }

    void checkNoBar(const QAbstractScrollArea& area) {
        const int hidden = area.horizontalScrollBar()->maximum();
        if (hidden == 0) return;
        complaints_.append(QStringLiteral("%1: %2 out of view").arg(describe(area)).arg(hidden));
    }

    template <typename Menu>
    void checkActions(const QWidget& widget, const Menu& menu) {
        needs(widget, QStringLiteral("menu"), widget.size(), {widget.sizeHint().width(), 0});
        for (QAction* action : widget.actions()) {
            if (!action->isVisible() || widget.rect().contains(menu.actionGeometry(action))) continue;
            complaints_.append(
                QStringLiteral("%1: \"%2\" has no place").arg(describe(widget), action->text()));
        }
    }

    /// What a layout has placed: inside its parent, and beside each other.
    void checkChildren(const QWidget& parent) {
        if (parent.layout() == nullptr) return;
        QList<const QWidget*> children;
        for (const QObject* child : parent.children()) {
            const auto* widget = qobject_cast<const QWidget*>(child);
            if (widget == nullptr || widget->isWindow() || !widget->isVisible()) continue;
            if (qobject_cast<const QSizeGrip*>(widget) != nullptr) continue;  // lies over a corner
            if (!parent.rect().contains(widget->geometry())) {
                complaints_.append(describe(*widget) + QStringLiteral(" reaches out of ") + describe(parent));
            }
            for (const QWidget* other : children) {
                if (!widget->geometry().intersects(other->geometry())) continue;
                complaints_.append(describe(*widget) + QStringLiteral(" covers ") + describe(*other));
            }
            children.append(widget);
        }
    }

    QStringList complaints_;
};

}  // namespace

QStringList clippedOrCovered(const QWidget& window) {
    Inspector inspector;
    inspector.inspect(window);
    return inspector.complaints();
}

}  // namespace tavinor

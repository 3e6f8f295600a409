#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

class QDropEvent;
class QMimeData;
class QWidget;

namespace tavinor {

/// Whether files are being dragged, this computer's or another's, or links to pages: Qt offers their
/// addresses as a text, too.
bool carriesFiles(const QMimeData& dragged);

/// The one file of this computer that is being dragged; empty where it is anything else.
QString draggedFile(const QMimeData& dragged);

/// Answers a drag as allowed where that is wanted and can be. Nothing but a copy or a link: a file manager
/// deletes what it is told has been moved. Returns whether it is allowed.
bool answerDrag(QDropEvent& event, bool wanted);

/// Takes files that are dropped on a window: one at a time, of the kinds that the window opens. Anything else
/// is shown as not allowed while it is dragged.
class FileDrops : public QObject {
    Q_OBJECT

  public:
    /// `kinds` are the names' endings, in lower case and without the dot.
    FileDrops(QWidget* window, const QStringList& kinds);

  signals:
    /// The user has dropped a file. Told after the drag is over: questions that follow keep no other program
    /// waiting.
    void dropped(const QString& path, const QString& kind);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    [[nodiscard]] bool allow(QDropEvent& event) const;
    void take(const QString& path);

    QStringList kinds_;
};

}  // namespace tavinor

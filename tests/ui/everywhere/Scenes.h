#pragma once

#include <QWidget>
#include <functional>
#include <vector>

/// Every window and dialog of the program, each brought up as it looks in use. What must hold everywhere is
/// tested by walking this list: a new window or state needs one entry, and all those tests see it.
namespace tavinor {

/// Called while a window, dialog or menu is on the screen.
using Look = std::function<void(QWidget& window)>;

struct Scene {
    const char* name;
    std::function<void(const Look& look)> show;
};

const std::vector<Scene>& scenes();

/// Adds a row for each scene to the data of a Qt test.
void addSceneRows();
/// The scene of the current row.
const Scene& currentScene();

// The list's parts, by what they show.
std::vector<Scene> simulatorScenes();
std::vector<Scene> toolScenes();
std::vector<Scene> dialogScenes();
std::vector<Scene> menuScenes();

/// Does `open`, which must open a modal window of that name; looks at it and ends it by `close`.
void lookAtModal(const QString& objectName, const std::function<void()>& open, const Look& look,
                 const std::function<void(QWidget&)>& close);
/// Does `open`, which must open a menu, and looks at it.
void lookAtMenu(const std::function<void()>& open, const Look& look);
/// The same with the context menu of a control at `place` in it.
void lookAtContextMenu(QWidget* control, const Look& look, const QPoint& place = {});

}  // namespace tavinor

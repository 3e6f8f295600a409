#include "tests/ui/everywhere/Scenes.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QTest>
#include <QTimer>

#include "tests/support/DialogAnswerer.h"

namespace tavinor {

const std::vector<Scene>& scenes() {
    static const std::vector<Scene> all = [] {
        std::vector<Scene> list;
        for (const auto& part : {simulatorScenes(), toolScenes(), dialogScenes(), menuScenes()}) {
            list.insert(list.end(), part.begin(), part.end());
        }
        return list;
    }();
    return all;
}

void addSceneRows() {
    QTest::addColumn<int>("scene");
    for (std::size_t i = 0; i < scenes().size(); ++i) {
        QTest::newRow(scenes()[i].name) << static_cast<int>(i);
    }
}

const Scene& currentScene() {
    QFETCH(const int, scene);
    return scenes()[static_cast<std::size_t>(scene)];
}

void lookAtModal(const QString& objectName, const std::function<void()>& open, const Look& look,
                 const std::function<void(QWidget&)>& close) {
    DialogAnswerer dialogs;
    dialogs.expectWindow(objectName, [&](QWidget* window) {
        look(*window);
        close(*window);
    });
    open();
}

void lookAtMenu(const std::function<void()>& open, const Look& look) {
    bool seen = false;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, &watch, [&] {
        QWidget* menu = QApplication::activePopupWidget();
        if (menu == nullptr) return;
        watch.stop();
        seen = true;
        look(*menu);
        menu->close();
    });
    watch.start(1);
    open();
    QVERIFY(QTest::qWaitFor([&seen] { return seen; }));
}

void lookAtContextMenu(QWidget* control, const Look& look, const QPoint& place) {
    const auto open = [control, place] {
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, control->mapToGlobal(place));
        QApplication::sendEvent(control, &event);
    };
    lookAtMenu(open, look);
}

}  // namespace tavinor

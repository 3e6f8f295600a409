// monkey SEED STEPS: plays with the windows of the program at random, and ends with an error when a rule is
// broken. The same seed plays the same game.

#include <QApplication>
#include <cstdio>
#include <cstdlib>

#include "tests/monkey/Monkey.h"
#include "ui/common/Application.h"

int main(int argc, char* argv[]) {
    if (argc != 3) {
        std::fputs("usage: monkey SEED STEPS\n", stderr);
        return 2;
    }
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    tavinor::installSpanish(application);
    tavinor::monkey::Monkey monkey(std::strtoull(argv[1], nullptr, 10), std::atoi(argv[2]));
    monkey.play();
    std::printf("seed %s: %s\n", argv[1], qPrintable(monkey.figures()));
    return 0;
}

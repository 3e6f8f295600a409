#include "ui/program/Program.h"

namespace tavinor {

Program::Program(const Version& own, const UpdateSource& updates) : cabecera_(own, updates) {
    connect(&cabecera_, &Cabecera::splashOver, &principal_, &QWidget::show);
    connect(&principal_, &Principal::aboutRequested, &cabecera_, &Cabecera::showAbout);
    connect(&principal_, &Principal::closed, &cabecera_, &Cabecera::showFarewell);
    connect(&cabecera_, &Cabecera::ended, this, &Program::ended);
}

}  // namespace tavinor

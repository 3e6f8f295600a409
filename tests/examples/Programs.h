#pragma once

#include <array>
#include <string>
#include <string_view>

namespace tavinor::examples {

/// Every program of the folder, by the name of its files.
inline constexpr std::array<std::string_view, 19> programs{
    "01-suma",
    "02-suma-16-bits",
    "03-retardo",
    "04-copia-bloque",
    "05-maximo",
    "06-multiplica-8-bits",
    "07-multiplica-16-bits",
    "08-divide-16-bits",
    "09-burbuja",
    "10-suma-bcd",
    "11-busca-cadena",
    "12-factorial",
    "13-semaforo",
    "14-interrupcion",
    "15-parametros",
    "16-calculadora",
    "17-serie",
    "18-dos-interrupciones",
    "19-indicadores",
};

/// The name as a test's name: letters, digits and underscores alone.
inline std::string testName(std::string_view program) {
    std::string name(program);
    for (char& c : name) {
        if (c == '-') c = '_';
    }
    return name;
}

}  // namespace tavinor::examples

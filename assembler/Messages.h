#pragma once

#include <string_view>

/// What the assembler tells the user, to the letter.
namespace tavinor::message {

inline constexpr std::string_view nullLabel = "Etiqueta nula";
inline constexpr std::string_view badSyntax = "Sintaxis incorrecta";
inline constexpr std::string_view badOperation = "Código de operación no valido";
inline constexpr std::string_view badAddress = "Dirección incorrecta";
inline constexpr std::string_view duplicateLabel = "Etiqueta duplicada";
inline constexpr std::string_view addressOutsideMemory = "Dirección fuera de memoria";
inline constexpr std::string_view badOperand = "Operando incorrecto";
inline constexpr std::string_view tooManyErrors = "Demasiados errores";
inline constexpr std::string_view emptyFile = "Fichero vacío";
inline constexpr std::string_view cannotOpen = "Error abriendo fichero";
inline constexpr std::string_view tooLarge = "Fichero de más de 64 MiB";
inline constexpr std::string_view tooManyLines = "Fichero de más de dos millones de líneas";

/// These two are shown in a box.
inline constexpr std::string_view badTable = "Error en tabla";
inline constexpr std::string_view cannotCreate = "Error creando fichero";

}  // namespace tavinor::message

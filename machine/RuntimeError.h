#pragma once

#include <exception>

namespace tavinor {

/// The two ways in which an event of the program can fail while it works on the machine: a value that does
/// not fit a byte cell, or an index outside an array. The procedure that meets one ends there; what was
/// written before it stays written.
class RuntimeError : public std::exception {
  public:
    enum class Number : int {
        overflow = 6,   ///< A value outside 0..255 stored into a byte cell.
        subscript = 9,  ///< An index outside the memory, the ports or a grid.
    };

    explicit RuntimeError(Number number) noexcept : number_(number) {}

    [[nodiscard]] Number number() const noexcept { return number_; }
    [[nodiscard]] const char* what() const noexcept override {
        return number_ == Number::overflow ? "overflow" : "subscript out of range";
    }

  private:
    Number number_;
};

}  // namespace tavinor

#pragma once

#include <cstdint>
#include <string_view>

namespace tavinor {

/// The two texts that an assembly writes.
enum class Pane : std::uint8_t {
    listing,  ///< `filelst`
    report,   ///< `filehex`: the errors, or the HEX records.
};

/// Watches an assembly while it runs: whoever repeats these calls holds the texts of the result. Every member
/// does nothing unless it is overridden.
class AssemblyObserver {
  public:
    /// The pane is empty again.
    virtual void cleared(Pane) {}
    /// UTF-8 text, whole lines with their ends, came at the end of a pane.
    virtual void appended(Pane, std::string_view) {}
    /// A text for a modal box, at the moment it is due.
    virtual void message(std::string_view) {}

    AssemblyObserver() = default;
    AssemblyObserver(const AssemblyObserver&) = delete;
    AssemblyObserver& operator=(const AssemblyObserver&) = delete;
    virtual ~AssemblyObserver() = default;
};

}  // namespace tavinor

#pragma once

#include <cstdint>
#include <string_view>

#include "files/WorkObserver.h"

namespace tavinor {

/// The two texts that an assembly writes.
enum class Pane : std::uint8_t {
    listing,  ///< `filelst`
    report,   ///< `filehex`: the errors, or the HEX records.
};

/// Watches an assembly while it runs, and can cancel it: a caller that repeats these calls holds the texts of
/// the result. Every member does nothing unless it is overridden.
class AssemblyObserver : public WorkObserver {
  public:
    /// The pane is empty again.
    virtual void cleared(Pane) {}
    /// UTF-8 text, whole lines with their ends, came at the end of a pane.
    virtual void appended(Pane, std::string_view) {}
    /// A text for a modal box, at the moment it is due.
    virtual void message(std::string_view) {}
    /// The passes are over and their texts are complete: the last moment to cancel, by false. No file has
    /// been written yet.
    virtual bool passesOver() { return true; }
};

}  // namespace tavinor

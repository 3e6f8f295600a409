#pragma once

namespace tavinor {

class TraceView;

/// Lets assistive tools read the grid of the trace: a table of the rows around the visible ones, with the
/// header cells as column headers. To be called once for each view.
void makeAccessible(TraceView& view);

}  // namespace tavinor

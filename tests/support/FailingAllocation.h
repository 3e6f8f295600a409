#pragma once

namespace tavinor::test {

/// Lets one allocation of the program's own code fail. To be linked into a test program as a source: it
/// replaces the operators `new` and `delete`.
///
/// Own are the allocations that the executable or the standard library asks for; what Qt asks for in its own
/// libraries always succeeds.
class FailingAllocation {
  public:
    /// From now on, the allocation of this number fails, counted from 0, and none after it.
    static void arm(int number);
    /// No allocation fails any more.
    static void disarm();
    /// Whether one has failed since `arm`.
    static bool happened();
};

}  // namespace tavinor::test

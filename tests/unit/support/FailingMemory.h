#pragma once

namespace tvn2x {

/// Lets n more allocations of this program on this thread succeed and no further one, until AllowAllocations.
void FailAllocationsFrom(long n);
/// Ends it and tells whether an allocation has failed.
bool AllowAllocations();

}  // namespace tvn2x

#pragma once
// Yielding to the host: one pass of the host's message loop on the calling thread.
// Waiting members count yields; they never sleep and never read a clock.

namespace vx {

// Processes every message pending for this thread, then returns.
void yieldToHost();
// How many yields this thread has made since the library was loaded.
unsigned long long yieldCount();

}  // namespace vx

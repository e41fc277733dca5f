// Calls to the disk that fail on demand. A test program that links marlune_failing_calls before the C library
// makes them through it; nothing fails until a test says so.
#pragma once

namespace marlune::test {

enum class Failing {
    none,
    error, // the call fails: no space left
    full,  // so does every later write, and this one takes half of what it is given
    death, // the process ends inside the call, as by a kill
};

// The n-th call from now on, 1 the first, among mkostemp, write, fsync, fchmod, close and rename.
void failAtCall(int n, Failing how);
int failedCalls(); // since then; 0 where fewer than n calls were made

} // namespace marlune::test

// What is too slow for every input sees some of them: the readers run at thousands a second, the whole
// program at tens.
#pragma once

#include <cstdlib>

namespace marlune::fuzz {

inline bool everyInput = false; // tests: each input sees all of it

// Counts the inputs of one place; the first is due.
class Turn {
  public:
    explicit Turn(int every) : every_(every) {}
    bool due() { return count_++ % every_ == 0 || everyInput; }

  private:
    int every_, count_ = 0;
};

inline void require(bool holds) {
    if (!holds) std::abort();
}

} // namespace marlune::fuzz

// State with one owner: everybody reads it, one room of the house writes it.
#pragma once

namespace marlune {

// Reading is plain member access and can change nothing. write() is for the room that owns the state, and for
// the file that defines it: tools/check_layers.py has the table of owners and refuses every other call.
template <typename State>
class Owned {
  public:
    const State* operator->() const { return &state_; }
    const State& read() const { return state_; }
    State& write() { return state_; }

  private:
    State state_;
};

} // namespace marlune

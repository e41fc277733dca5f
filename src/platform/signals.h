// SIGTERM, SIGINT and SIGHUP as something that an event loop can wait for.
#pragma once

namespace marlune {

// One object at a time, for the life of the program: made before it starts its loop. While it lives the two
// signals end nothing by themselves.
class Signals {
  public:
    Signals();
    ~Signals();
    Signals(const Signals&) = delete;
    Signals& operator=(const Signals&) = delete;

    // Becomes readable when a signal came; -1 where none could be made, and signals then act as usual.
    int fd() const { return ends_[0]; }

    // Whether one came since the last call; never blocks.
    bool take();

  private:
    int ends_[2] = {-1, -1};
};

} // namespace marlune

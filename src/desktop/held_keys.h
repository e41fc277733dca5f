// Keys on their way to the panel's key table: what counts as a press, a repeat and a release.
//
// A server's auto-repeat sends a release and a press each time, and the toolkit doesn't always know them for
// what they are: a press that follows a release of the same key at once goes on with it, whatever it says.
// User-interface thread only.
#pragma once

#include <QKeyEvent>
#include <QObject>

namespace marlune {

class HeldKeys {
  public:
    // Tells Form_KeyDown of presses, and of repeats of the keys that repeat. False for a key of no meaning.
    bool press(const QKeyEvent& event);
    // Tells Form_KeyUp a moment later, unless it was part of a repeat.
    void release(const QKeyEvent& event);
    void flush(); // what waits is told now
    // What was released before a pointer event of that time is told before it; a repeat that goes on is not.
    void flushBefore(quint64 timestamp);

  private:
    bool continues(const QKeyEvent& event, int code);

    // A release that is not told yet.
    struct {
        int code = 0;
        int mask = 0;
        quint64 timestamp = 0;
    } release_;
    QObject waiting_; // ends the wait with its owner
};

} // namespace marlune

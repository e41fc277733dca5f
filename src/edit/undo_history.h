// Undo and redo of everything that a user edits. Kept as differences, within 16 MB; the oldest steps go
// first.
//
// The routes of pointer, keys, menus and MIDI input bracket what they set off by beginEdit and endEdit; what
// has changed in between is one step. Brackets nest: the outermost counts. While the song is being recorded
// the bracket stays open until recording ends. Opening a file is a step, with the name of the project; File
// New and the mode switch end the history. User-interface thread.
#pragma once

#include <cstddef>

namespace marlune {

void beginEdit();

// Inside a bracket: what it will be compared with is the present state. For a command that first puts the
// record where its edit can be taken back.
void restartEdit();

// kind: 0, or a number that is the same for edits which follow each other quickly as one gesture (the notches
// of a wheel, the messages of a controller): they become one step within a second of each other.
void endEdit(int kind = 0);

// Ends the bracket and puts back what has changed in it, as if it had not been; an inner bracket, or one that
// recording holds open, just ends.
void abandonEdit();

// The bracket of one scope.
class EditBracket {
  public:
    explicit EditBracket(int kind = 0) : kind_(kind) { beginEdit(); }
    ~EditBracket() { endEdit(kind_); }
    EditBracket(const EditBracket&) = delete;
    EditBracket& operator=(const EditBracket&) = delete;

  private:
    int kind_;
};

// One step back or forth; nothing while an edit is under way or no step is left.
void mnuEditUndo_Click();
void mnuEditRedo_Click();

int undoSteps();
std::size_t undoBytes();
void clearUndoHistory();

// From the press of the pointer to its release is one edit, however many moves lie between. A second press
// ends the first gesture; a release without one is nothing.
void beginGesture();
void endGesture();

void resetUndoHistory(); // as at the start of the program, open brackets included

} // namespace marlune

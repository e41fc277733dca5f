// Whole sessions as text: a script of what a musician does goes in; what each line told the component,
// showed, said and changed comes out.
#pragma once

#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "project/project_record.h"
#include "project/song_track.h"
#include "support/test_program.h"

namespace marlune::test {

// Verbs: "key CODE [SHIFT]" (down and up; "down", "up" alone), "click CONTROL INDEX", "double", "enter" (from
// the keyboard), "press", "move", "shift" (a fine move) and "release
// CONTROL INDEX Y", "drag" or "fine CONTROL INDEX UP" (twips), "wheel
// CONTROL INDEX STEPS", "hold CONTROL MS", "menu NAME", "midi STATUS DATA DATA" (hex), "play STEPS", "song"
// (the mode switch), and what `verbs` adds. Before and between: "bar MODULE BAR A1", "curve KNOB FIRST LAST
// VALUE..." (ticks from 1, further values for as long
// again), "bass MODULE C D!...", "loop MODULE A1
// STEPS", "to TICK", "answer yes", "file NAME", "marks" (of changes stay from line to line), "wait MS", "cost
// MS" (of each frame shown), "cell STEP ROW VALUE", "repeat N ACTION", "after MS ACTION" (inside what waits
// then), and "wire" tells what the line has sent.
//
// "dialog ACTION..." is what is done in the next dialog: "3=text", "l0=2" (list), "c0" (check box), "b0"
// (button), "f7" (focus), "k27" (key), "m90.24.64" (MIDI), "timer", "look" (tells it again).
//
// A transcript has a line for each, or for several with ";" between: "what is done: calls | shown | said |
// changed", without the parts that are empty; a whole pattern told is one entry, long lines go on indented,
// a line with "- " before it is done without being told of, and one with "# " is a remark. Where nothing is
// held or plays the component's copy has to be that of the record and the panel what a full refresh would
// show; else the difference ends the line.
std::string layoutOf(Form& form); // as transcripts tell it

class Session {
  public:
    explicit Session(TestProgram& program);

    // Does what the transcript says, and returns the one that comes of it.
    std::string tell(const std::string& transcript);

    std::map<std::string, std::function<void(int, int, int)>> verbs;
    bool marksAnew = true; // each line begins with a project that isn't marked as changed

  private:
    struct Look {
        ProjectRecord record;
        decltype(barTrack) bars;
        decltype(knobTrack) knobs;
        std::vector<std::pair<const char*, int>> state;
        std::string status, title;
    };
    Look look() const;
    void act(const std::string& line);
    bool prepare(const std::string& verb, std::istringstream& words);
    void useDialog(Form& form, const std::string& actions);
    std::string calls();
    std::string said(const Look& was);
    static std::string changed(const Look& was, const Look& is);
    std::string apart();

    TestProgram& program_;
    Look last_;
    std::string dialogs_; // as they opened
    std::size_t boxes_ = 0, passing_ = 0, files_ = 0;
    bool held_ = false;
};

} // namespace marlune::test

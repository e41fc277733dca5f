// What the panel shows is what sounds: random conversations with the program, played step by step in virtual
// time. What leaves the output is compared with what the patterns say that the panel shows, and a
// conversation that fails is cut down to the shortest one that still does.
#include <set>
#include <sstream>

#include "project/pattern_push.h"
#include "support/program_test.h"

namespace marlune {
namespace {

constexpr int kBassNotes[kModules] = {0, 1, 9}; // channels

// Patterns that can be told apart by ear: the pitch of a bass pattern is its number, its accents are a row in
// which any four in a row are found once; drums hit the number in binary and the place likewise.
constexpr int kAccents = 0b0000100110101111;

void tellingProject(std::mt19937& random) {
    const auto below = [&random](int count) { return static_cast<int>(random() % count); };
    for (int p = 0; p < kBanks * kPatterns; ++p) {
        const int ends[] = {15, 15, 11, 6, below(16)};
        for (BassModule& bass : project.bass) {
            BassPattern& pattern = bass.patterns[p / kPatterns][p % kPatterns];
            for (int s = 0; s < kSteps; ++s) {
                pattern.steps[s] = {};
                pattern.steps[s].note = p % 13;
                pattern.steps[s].up = p / 13 == 1;
                pattern.steps[s].down = p / 13 == 2;
                pattern.steps[s].noteOn = true;
                pattern.steps[s].accent = (kAccents >> s & 1) != 0;
            }
            pattern.loopEnd = ends[below(5)];
        }
        DrumPattern& drums = project.drum.patterns[p / kPatterns][p % kPatterns];
        for (int s = 0; s < kSteps; ++s) {
            drums.drumOn[s].fill(0);
            for (int row = 0; row < 5; ++row) drums.drumOn[s][row] = (p >> row & 1) != 0 ? kDrumHit : 0;
            drums.drumOn[s][5] = (kAccents >> s & 1) != 0 ? kDrumHit : 0;
            drums.drumOn[s][6] = (s & 4) != 0 ? kDrumHit : 0;
        }
        drums.loopEnd = ends[below(5)];
    }
    for (int m = 0; m < kModules; ++m)
        for (int bar = 0, left = 0; bar < kSongBars; ++bar, --left) {
            const bool anew = left <= 0;
            if (anew) left = 1 + below(3);
            const SongBar was = bar > 0 ? barTrack[m][bar - 1] : SongBar{};
            barTrack[m][bar] =
                anew ? SongBar{static_cast<std::uint8_t>(below(8)), static_cast<std::uint8_t>(below(4))}
                     : was;
        }
    for (int knob = 0; knob < kKnobs; ++knob)
        for (int tick = 0; tick < kSongTicks; ++tick)
            knobTrack[knob][tick] = static_cast<std::uint8_t>(33 + (tick / 24 + knob) % 50);
    for (const int knob : {5, 11, 19}) project.knobValue[knob] = 33; // accents
    pushAllPatterns(0, 1, 2);
}

class Conversation {
  public:
    explicit Conversation(unsigned seed) : file_(folder_.file("song.mlp")) {
        std::mt19937 random(seed);
        tellingProject(random);
        saveProjectFile(file_);
        refreshAll();
    }

    // Carries out one line; empty, or what was shown and heard apart.
    std::string take(const std::string& line) {
        std::istringstream words(line);
        std::string verb;
        int a = 0, b = 0, c = 0;
        words >> verb >> a >> b >> c;
        if (verb == "play") return play(a);
        if (verb == "late") return late(a); // the window is busy for so many steps
        if (moves(verb, a)) place_ = -1;
        act(verb, a, b, c);
        return songSounds() && isBarLine(songPosition->songTick) ? beforeTheLine() : atRest();
    }

    int steps = 0; // that were compared

  private:
    void act(const std::string& verb, int a, int b, int c);

    // Whether the line may move the position or start anew. All others lose and double no step.
    static bool moves(const std::string& verb, int a) {
        constexpr int kMoving[] = {32, 33, 34, 36};
        const bool menu = verb == "menu" && (a == static_cast<int>(Menu::mnuToolsInitBarfromPatt) ||
                                             a == static_cast<int>(Menu::mnuToolsInitSongfromPatt));
        const bool key = verb == "key" && std::ranges::find(kMoving, a) != std::end(kMoving);
        return menu || key || verb == "hold" || verb == "load" || verb == "new" || verb == "pressed" ||
               (verb == "click" && a == static_cast<int>(Control::PlayHit));
    }

    std::string play(int count) {
        for (int i = 0; i < count; ++i) {
            program_.wire();
            for (int k = 0; k < kKnobs; ++k) knobs_[k] = project.knobValue[k];
            program_.play(1);
            if (program_.devices.ports[0].sent.empty()) return ""; // nothing runs
            const std::string apart = compare();
            program_.wire();
            if (!apart.empty()) return "after " + std::to_string(i + 1) + ": " + apart;
        }
        return "";
    }

    std::string late(int count) {
        bool runs = true;
        for (int period = 0; period < 6 * count; ++period) runs = program_.engine.advance();
        if (place_ >= 0 && runs) place_ = (place_ + count) % kTicksPerBar;
        return "";
    }

    static std::string digits(int bank, int patt) {
        return std::string(1, static_cast<char>('A' + bank)) + std::to_string(patt + 1);
    }

    // The note-ons of a module, each as "note.velocity".
    std::multiset<std::string> heard(int module) const {
        std::multiset<std::string> notes;
        for (const std::string& text : program_.devices.ports[0].sent) {
            int status = 0, note = 0, velocity = 0;
            std::istringstream(text) >> std::hex >> status >> note >> velocity;
            if (status == kNoteOn + kBassNotes[module] && velocity > 0)
                notes.insert(std::to_string(note) + "." + std::to_string(velocity));
        }
        return notes;
    }

    std::multiset<std::string> written(int module, int digit, int step) const {
        std::multiset<std::string> notes;
        const int bank = digit / kPatterns, patt = digit % kPatterns;
        const auto add = [&notes](int note, int velocity) {
            if (velocity > 0) notes.insert(std::to_string(note) + "." + std::to_string(velocity));
        };
        if (module == kDrumModule) {
            const DrumPattern& pattern = project.drum.patterns[bank][patt];
            for (int d = 0; d < kDrums; ++d)
                if (pattern.drumOn[step][d] != 0)
                    add(pattern.drumNote[d], knobs_[pattern.drumOn[step][kAccentRow] != 0 ? 19 : 12 + d]);
        } else {
            const BassStep& s = project.bass[module].patterns[bank][patt].steps[step];
            const int pitch = 36 + s.note + (s.up ? 12 : 0) - (s.down ? 12 : 0);
            if (s.noteOn) add(pitch, s.accent ? knobs_[6 * module + 5] : 100);
        }
        return notes;
    }

    std::string compare() {
        ++steps;
        std::string apart;
        const int place = songPosition->playedTick % kTicksPerBar;
        if (place_ >= 0 && place != place_) apart += "a step was lost or doubled; ";
        place_ = (place + 1) % kTicksPerBar;
        for (int m = 0; m < kModules; ++m) digits_[m] = shownFrame(Control::DigitPatt, 2 * m);
        const int bar = shownNumber(Control::timeDisplay, 0) - 1;
        for (int m = 0; m < kModules; ++m) {
            const int digit = shownFrame(Control::DigitPatt, 2 * m);
            const int step = shownFrame(Control::LEDBar, m) % kSteps;
            const std::string shown = digits(digit / 8, digit % 8) + " step " + std::to_string(step + 1);
            if (heard(m) != written(m, digit, step)) {
                apart += std::string(kModuleNames[m]) + " shows " + shown + ", heard ";
                for (const std::string& note : heard(m)) apart += note + " ";
                apart += "; ";
            }
            if (songPosition->songMode && barPatt(m, 16 * bar) + 8 * barBank(m, 16 * bar) != digit)
                apart += std::string(kModuleNames[m]) + " shows " + shown + " in bar " +
                         std::to_string(bar + 1) + "; ";
            const BassPattern* bass = m < 2 ? &project.bass[m].patterns[digit / 8][digit % 8] : nullptr;
            const int end =
                bass != nullptr ? bass->loopEnd : project.drum.patterns[digit / 8][digit % 8].loopEnd;
            if (shownNumber(Control::LoopPt, m) != end + 1) apart += "another loop point is shown; ";
        }
        if (songPosition->songMode && songPosition->playedTick / 16 != bar) apart += "another bar is shown; ";
        return apart + consistent();
    }

    // What holds at any moment.
    std::string consistent() {
        const std::string difference = program_.copyDifference();
        return difference.empty() ? "" : "the component's copy differs: " + difference;
    }

    // The next bar comes with the next step: what sounds is still shown.
    std::string beforeTheLine() {
        for (int m = 0; m < kModules; ++m) {
            if (place_ >= 0 && digits_[m] != shownFrame(Control::DigitPatt, 2 * m))
                return "shown before it sounds";
        }
        return consistent();
    }

    std::string atRest() {
        std::string apart = consistent();
        if (!songPosition->songMode || songSounds()) return apart;
        const int tick = songPosition->songTick;
        if (shownNumber(Control::timeDisplay, 0) != tick / 16 + 1) apart += "at rest another bar is shown; ";
        const std::string inBar = shownText(Control::microDisplay, 0);
        if (!inBar.empty() && inBar != "[ " + std::to_string(tick % 16 + 1) + "/16]") apart += inBar;
        for (int m = 0; m < kModules; ++m) {
            if (shownFrame(Control::DigitPatt, 2 * m) != barPatt(m, tick) + 8 * barBank(m, tick))
                apart += std::string(kModuleNames[m]) + " at rest shows another pattern; ";
        }
        return apart;
    }

    TestProgram program_;
    std::array<int, kKnobs> knobs_{};    // as shown when the step began
    std::array<int, kModules> digits_{}; // as shown with the last step
    int place_ = -1;                     // in its bar, of the step that comes; -1 where that is open
    TemporaryFolder folder_;
    std::string file_;
};

void pressButton(TestProgram& program, Control button, int ms) {
    program.shell.after(ms, [button] { panelPointer(button, 0, {.action = PointerAction::release}); });
    panelPointer(button, 0, {.action = PointerAction::press});
}

void Conversation::act(const std::string& verb, int a, int b, int c) {
    program_.shell.answers.clear();
    program_.shell.modal.clear();
    if (verb == "key") {
        Form_KeyDown(a, b);
        Form_KeyUp(a, b);
    } else if (verb == "hold") {
        pressButton(program_, static_cast<Control>(a), b);
    } else if (verb == "click") {
        program_.click(static_cast<Control>(a), b);
    } else if (verb == "drag") {
        program_.drag(static_cast<Control>(a), b, 1000, 1000 - c);
    } else if (verb == "pressed") { // held over some steps
        panelPointer(static_cast<Control>(a), b, {.action = PointerAction::press, .y = 1000});
        program_.play(5);
        panelPointer(static_cast<Control>(a), b, {.action = PointerAction::move, .y = 1000.0 - c});
        program_.play(4);
        panelPointer(static_cast<Control>(a), b, {.action = PointerAction::release, .y = 1000.0 - c});
    } else if (verb == "wheel") {
        panelWheel(static_cast<Control>(a), b, c);
    } else if (verb == "midi") {
        program_.midi(a, b, c);
    } else if (verb == "menu") {
        program_.shell.modal.push_back([b](Form& form) {
            if (auto* copy = dynamic_cast<marlunePatternCopy*>(&form)) {
                copy->Text1.text = std::to_string(b);
                copy->Check1.checked = true;
                copy->Command1_Click();
            } else if (auto* randomize = dynamic_cast<marluneRandomPattern*>(&form)) {
                randomize->Text1.text = std::to_string(b);
                randomize->Command1_Click();
            }
        });
        menuClicked(static_cast<Menu>(a));
    } else if (verb == "load") {
        program_.shell.answers = {BoxAnswer::no};
        program_.shell.fileNames = {file_};
        menuClicked(Menu::mnuFileOpenPatt);
    } else if (verb == "new") {
        program_.shell.answers = {BoxAnswer::no};
        menuClicked(Menu::mnuFileNew);
    }
}

std::vector<std::string> randomConversation(unsigned seed, int lines) {
    std::mt19937 random(seed);
    const auto below = [&random](int count) { return static_cast<int>(random() % count); };
    const auto text = [](const char* verb, auto... numbers) {
        return (std::string(verb) + ... + (" " + std::to_string(static_cast<int>(numbers))));
    };
    constexpr Menu kMenus[] = {Menu::mnuEditCut,
                               Menu::mnuEditPaste,
                               Menu::mnuToolsSongRandom,
                               Menu::mnuToolsInit,
                               Menu::mnuToolsInitBarfromPatt,
                               Menu::mnuToolsInitSongfromPatt,
                               Menu::mnuToolsClear,
                               Menu::mnuEditUndo,
                               Menu::mnuEditUndo,
                               Menu::mnuEditRedo,
                               Menu::mnuToolsRNotes,
                               Menu::mnuEditMoveRight,
                               Menu::mnuEditPastePattern};
    constexpr Control kWinds[] = {Control::nextButton, Control::prevButton, Control::FwdStep,
                                  Control::RwdStep};
    constexpr int kKeys[] = {32, 13, 45, 33, 34, 36, 37, 'X', 'Z', 'M', 187, 221};
    std::vector<std::string> said;
    while (static_cast<int>(said.size()) < lines) {
        switch (below(16)) {
            case 0: said.push_back(text("key", 32, 0)); break;
            case 1: said.push_back(text("key", 13, 0)); break;
            case 2: said.push_back(text("key", kKeys[below(12)], 0)); break;
            case 3: said.push_back(text("key", "12345678QWERTYUIASDFGHJK"[below(24)], 0)); break;
            case 4: said.push_back(text("key", "1234QWERASDF"[below(12)], 1)); break;
            case 5: said.push_back(text("hold", kWinds[below(4)], 10 + below(500))); break;
            case 6: said.push_back(text("menu", kMenus[below(13)], 1 + below(5))); break;
            case 7: said.push_back(text("drag", Control::DigitPatt, below(6), below(1400) - 700)); break;
            case 8: said.push_back(text("wheel", Control::DigitPatt, below(6), below(3) - 1)); break;
            case 9: said.push_back(text("pressed", Control::LoopPt, below(3), below(900) - 300)); break;
            case 10: said.push_back(text("click", Control::sel103AButton, below(13))); break;
            case 11: said.push_back(text("late", 1 + below(6))); break;
            case 12: said.push_back(text("click", Control::PlayHit, 0)); break;
            case 13: said.push_back(text("midi", 0xB0, 12 + below(4), below(128))); break;
            case 14:
                said.push_back(below(2) == 0 ? "load" : below(3) == 0 ? "new" : text("key", 45, 0));
                break;
            default:
                said.push_back(text("menu", Menu::mnuEditCut, 1 + below(5)));
                said.push_back(text("play", 1 + below(20)));
                said.push_back(text("menu", Menu::mnuEditPaste, 0));
                break;
        }
        said.push_back(text("play", 1 + below(below(3) == 0 ? 20 : 4)));
        if (said.size() >= 2 && said[said.size() - 2].starts_with("late"))
            said.pop_back(); // something is said meanwhile
    }
    return said;
}

// What goes wrong, and with it in `said` the line behind which it did.
std::string outcome(const std::vector<std::string>& said, unsigned seed, int& steps, std::size_t& at) {
    Conversation conversation(seed);
    std::string apart;
    for (at = 0; at < said.size() && apart.empty(); ++at) apart = conversation.take(said[at]);
    steps += conversation.steps;
    return apart;
}

// Leaves out whatever can be left out without making it right.
std::string shortest(std::vector<std::string> said, unsigned seed) {
    int steps = 0;
    std::size_t at = 0;
    std::string apart = outcome(said, seed, steps, at);
    said.resize(at);
    for (std::size_t width = said.size(); width > 0; width /= 2) {
        for (std::size_t i = 0; i + width <= said.size();) {
            std::vector<std::string> less = said;
            less.erase(less.begin() + static_cast<long>(i), less.begin() + static_cast<long>(i + width));
            const std::string still = outcome(less, seed, steps, at);
            if (still.empty()) {
                i += width;
                continue;
            }
            said = less;
            apart = still;
        }
    }
    std::string text;
    for (const std::string& line : said) text += line + "\n";
    return text + "-> " + apart;
}

TEST(ShownIsHeard, InRandomConversations) {
    int steps = 0;
    for (unsigned seed = 1; steps < 20'000; ++seed) {
        const std::vector<std::string> said = randomConversation(seed, 120);
        std::size_t at = 0;
        if (!outcome(said, seed, steps, at).empty())
            FAIL() << "seed " << seed << "\n" << shortest(said, seed);
    }
}

} // namespace
} // namespace marlune

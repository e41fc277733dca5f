// The language of the engine's tests: patterns and what comes out of them as short text.
//
// A bass step is a note name with '-' for a rest, '^' and '_' for the octave, '!' for an accent; a drum step
// lists the rows that are set, '-' for none. What comes out reads "on36 off36 cc12=5 pc3" with "b:" and "d:"
// for the channels of 103B and the drums, another channel as its number, '!' for velocity 127 and "@v" for
// any other than 100.
#pragma once

#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "engine/virtual_engine.h"

namespace marlune::test {

inline std::string text(const MidiMessage& m) {
    const int status = m.bytes[0], channel = status & 15, velocity = m.bytes[2];
    const std::string a = std::to_string(m.bytes[1]), b = std::to_string(velocity);
    if (status == 0xF2) return "spp" + std::to_string(m.bytes[1] + 128 * m.bytes[2]);
    if (status >= 0xF8) return std::string("F") + "89ABCDEF"[status - 0xF8];
    std::string head = channel == 1 ? "b:" : channel == 9 ? "d:" : std::to_string(channel) + ':';
    if (channel == 0) head.clear();
    if ((status & 0xF0) == 0xC0) return head + "pc" + a;
    if ((status & 0xF0) == 0xB0) return head + "cc" + a + '=' + b;
    if (velocity == 0) return head + "off" + a;
    return head + "on" + a + (velocity == 127 ? "!" : velocity == 100 ? "" : '@' + b);
}

struct Sent {
    std::int64_t ns;
    Role role;
    MidiMessage message;
};

// A wire's log, or a port in memory. Room is taken beforehand: the live engine's thread writes here.
struct Recorder final : WireLog, OutputPort {
    Recorder() { log.reserve(400'000); }
    void sent(std::int64_t ns, Role role, const MidiMessage& message) noexcept override {
        if (log.size() < log.capacity()) log.push_back({ns, role, message});
    }
    void send(const MidiMessage& m, std::int64_t due) noexcept override { sent(due, Role::seq, m); }
    // What went out on a role since the last take, without the clock stream unless asked for.
    std::string take(Role role, bool clock) {
        std::string line;
        for (const Sent& s : log) {
            if (s.role != role || (!clock && s.message.bytes[0] >= 0xF0)) continue;
            line += (line.empty() ? "" : " ") + text(s.message);
        }
        log.clear();
        return line;
    }
    std::vector<Sent> log;
    int users = 0;
};

// Notes that are left on at the end of a log, and the most that were on at once.
struct Sounding {
    explicit Sounding(const std::vector<Sent>& log) {
        for (const Sent& s : log) {
            if (s.role != Role::seq || (s.message.bytes[0] & 0xF0) != 0x90) continue;
            const std::pair key(s.message.bytes[0], s.message.bytes[1]);
            on.insert(key);
            if (s.message.bytes[2] == 0) on.erase(key);
            most = std::max(most, on.size());
        }
    }
    std::set<std::pair<int, int>> on;
    std::size_t most = 0;
};

struct MemoryDevices : OutputDevices {
    int count() override { return 2; }
    std::string name(int index) override { return "memory " + std::to_string(index); }
    OutputPort* open(int index) override {
        if (index < 0 || index >= 2) return nullptr;
        ++ports[index].users;
        return &ports[index];
    }
    void close(OutputPort* port) override { --static_cast<Recorder*>(port)->users; }
    std::array<Recorder, 2> ports;
};

// The record that a component holds before the first call.
inline ProjectRecord emptyRecord() {
    ProjectRecord record{};
    for (int p = 0; p < kBanks * kPatterns; ++p) {
        for (BassModule& module : record.bass) {
            module.patterns[p / kPatterns][p % kPatterns].loopEnd = kSteps - 1;
            module.patterns[p / kPatterns][p % kPatterns].patch = kNoPatch;
        }
        record.drum.patterns[p / kPatterns][p % kPatterns].loopEnd = kSteps - 1;
    }
    return record;
}

inline void setBass(int module, int pattern, const std::string& text) {
    std::istringstream steps(text);
    int s = 0;
    for (std::string step; steps >> step; ++s) {
        const auto has = [&step](char mark) { return step.find(mark) == std::string::npos ? 0 : -1; };
        Set103Note32(module, 0, pattern, s, std::string("C D EF G A B").find(step[0]) + (has('#') ? 1U : 0U));
        Set103NoteOn32(module, 0, pattern, s, ~has('-'));
        Set103Up32(module, 0, pattern, s, has('^'));
        Set103Down32(module, 0, pattern, s, has('_'));
        Set103Accent32(module, 0, pattern, s, has('!'));
    }
    Set103Loop32(module, 0, pattern, s - 1);
}

inline void setDrums(int pattern, const std::string& text) {
    std::istringstream steps(text);
    int s = 0;
    for (std::string step; steps >> step; ++s) {
        for (int row = 0; row < 8; ++row) {
            Set109DrumNote32(0, pattern, row, 40 + row);
            Set109bOn32(0, pattern, s, row, step.find(std::to_string(row)) == std::string::npos ? 0 : 1);
        }
    }
    Set109Loop32(0, pattern, s - 1);
}

// Knobs without controllers, drum levels 100, accents 127.
inline void setPanel() {
    for (int knob = 0; knob < kKnobs; ++knob) {
        DefineController32(knob, -1);
        SetController32(knob, knob == 5 || knob == 11 || knob == 19 ? 127 : 100);
    }
}

// The same numbers on every run.
struct Dice {
    int operator()(int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); }
    std::mt19937 random{7};
};

// "t5:1,2,3" a tick, "p0=1.2" a pattern reached, "c0=1.2" a cue.
inline std::string messages(PlaybackEngine& engine) {
    std::ostringstream out;
    for (EngineMessage m; engine.takeMessage(m);) {
        if (out.tellp() > 0) out << ' ';
        const int steps = m.lParam;
        if (m.message == kTickMessage) {
            out << 't' << m.wParam << ':' << steps % 16 << ',' << steps / 16 % 16 << ',' << steps / 256;
            continue;
        }
        out << (m.message >= kCueMessage ? 'c' : 'p') << m.message % 10 << '=' << m.wParam << '.' << m.lParam;
    }
    return out.str();
}

// An engine in virtual time behind the entry points.
struct Player {
    explicit Player(OutputDevices* devices = nullptr) : engine(devices, &wire) {
        setEngineComponent(&engine);
        setPanel();
    }
    ~Player() { setEngineComponent(nullptr); }

    // Plays steps, starting at 120 beats a minute where the timer stands: "step | step | ...".
    std::string play(int steps) {
        if (!started) StartMarluneTimer32(20, 0);
        started = true;
        std::string line;
        for (int s = 0; s < steps; ++s) {
            periods(kPeriodsPerStep);
            line += (s > 0 ? " | " : "") + wire.take(Role::seq, false);
        }
        return line;
    }
    void periods(int count) {
        while (count-- > 0) engine.advance();
    }
    std::string stop() {
        StopMarluneTimer32();
        started = false;
        return wire.take(Role::seq, false);
    }
    std::string messages() { return test::messages(engine); }
    Recorder wire;
    VirtualEngine engine;
    bool started = false;
};

} // namespace marlune::test

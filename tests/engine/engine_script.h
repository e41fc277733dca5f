// The language of the engine's tests: patterns and what comes out of them as short text.
//
// A bass step is a note name with '-' for a rest, '^' and '_' for the octave, '!' for an accent; a drum step
// lists the rows that are set, '-' for none. What comes out reads "on36 off36 cc12=5 pc3" with "b:" and "d:"
// for the channels of 103B and the drums, another channel as its number, '!' for velocity 127 and "@v" for
// any other than 100.
#pragma once

#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "engine/virtual_engine.h"

namespace marlune::test {

inline std::string text(const MidiMessage& m) {
    const int status = m.bytes[0];
    const std::string a = std::to_string(m.bytes[1]);
    const std::string b = std::to_string(m.bytes[2]);
    if (status == 0xF2) return "spp" + std::to_string(m.bytes[1] + 128 * m.bytes[2]);
    if (status >= 0xF8) return status == 0xF8 ? "F8" : std::string("F") + "89ABCDEF"[status - 0xF8];
    const int channel = status & 15;
    const std::string head = channel == 0   ? ""
                             : channel == 1 ? "b:"
                             : channel == 9 ? "d:"
                                            : std::to_string(channel) + ':';
    if ((status & 0xF0) == 0xC0) return head + "pc" + a;
    if ((status & 0xF0) == 0xB0) return head + "cc" + a + '=' + b;
    const int velocity = m.bytes[2];
    if (velocity == 0) return head + "off" + a;
    return head + "on" + a + (velocity == 127 ? "!" : velocity == 100 ? "" : '@' + b);
}

struct Sent {
    std::int64_t ns;
    Role role;
    MidiMessage message;
};

// Room is taken beforehand: the live engine's thread writes here.
struct Recorder final : WireLog {
    Recorder() { log.reserve(400'000); }
    void sent(std::int64_t ns, Role role, const MidiMessage& message) noexcept override {
        if (log.size() < log.capacity()) log.push_back({ns, role, message});
    }
    // What went out on a role since the last take, without the clock stream unless asked for.
    std::string take(Role role, bool clock) {
        std::string line;
        for (const Sent& s : log) {
            if (s.role != role || (!clock && s.message.bytes[0] >= 0xF0)) continue;
            if (!line.empty()) line += ' ';
            line += text(s.message);
        }
        log.clear();
        return line;
    }
    std::vector<Sent> log;
};

// Notes that are left on at the end of a log, and the most that were on at once.
struct Sounding {
    explicit Sounding(const std::vector<Sent>& log) {
        for (const Sent& s : log) {
            if (s.role != Role::seq || (s.message.bytes[0] & 0xF0) != 0x90) continue;
            const std::pair key(s.message.bytes[0], s.message.bytes[1]);
            if (s.message.bytes[2] == 0) {
                on.erase(key);
            } else {
                on.insert(key);
            }
            most = std::max(most, on.size());
        }
    }
    std::set<std::pair<int, int>> on;
    std::size_t most = 0;
};

// Two devices in memory.
struct MemoryDevices final : OutputDevices {
    struct Port final : OutputPort {
        Port() { log.reserve(400'000); }
        void send(const MidiMessage& message, std::int64_t due) noexcept override {
            if (log.size() < log.capacity()) log.push_back({due, Role::seq, message});
        }
        std::vector<Sent> log;
        int users = 0;
    };
    int count() override { return 2; }
    std::string name(int index) override { return "memory " + std::to_string(index); }
    OutputPort* open(int index) override {
        if (index < 0 || index >= 2) return nullptr;
        ++ports[index].users;
        return &ports[index];
    }
    void close(OutputPort* port) override { --static_cast<Port*>(port)->users; }
    std::array<Port, 2> ports;
};

// The record that a component holds before the first call.
inline ProjectRecord emptyRecord() {
    ProjectRecord record{};
    for (int b = 0; b < kBanks; ++b) {
        for (int p = 0; p < kPatterns; ++p) {
            for (BassModule& module : record.bass) {
                module.patterns[b][p].loopEnd = kSteps - 1;
                module.patterns[b][p].patch = kNoPatch;
            }
            record.drum.patterns[b][p].loopEnd = kSteps - 1;
        }
    }
    return record;
}

inline void setBass(int module, int pattern, const std::string& steps) {
    std::istringstream in(steps);
    std::string step;
    int s = 0;
    for (; in >> step; ++s) {
        const bool sharp = step.size() > 1 && step[1] == '#';
        const auto has = [&step](char mark) { return step.find(mark) == std::string::npos ? 0 : -1; };
        Set103Note32(module, 0, pattern, s, std::string("C D EF G A B").find(step[0]) + (sharp ? 1U : 0U));
        Set103NoteOn32(module, 0, pattern, s, ~has('-'));
        Set103Up32(module, 0, pattern, s, has('^'));
        Set103Down32(module, 0, pattern, s, has('_'));
        Set103Accent32(module, 0, pattern, s, has('!'));
    }
    Set103Loop32(module, 0, pattern, s - 1);
}

inline void setDrums(int pattern, const std::string& steps) {
    std::istringstream in(steps);
    std::string step;
    int s = 0;
    for (; in >> step; ++s) {
        for (int row = 0; row < 8; ++row) {
            Set109bOn32(0, pattern, s, row,
                        step.find(static_cast<char>('0' + row)) == std::string::npos ? 0 : 1);
        }
    }
    for (int row = 0; row < 8; ++row) Set109DrumNote32(0, pattern, row, 40 + row);
    Set109Loop32(0, pattern, s - 1);
}

// Knobs without controllers, drum levels 100, accents 127.
inline void setPanel() {
    for (int knob = 0; knob < kKnobs; ++knob) {
        DefineController32(knob, -1);
        const bool accent = knob == 5 || knob == 11 || knob == 19;
        SetController32(knob, accent ? 127 : 100);
    }
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
    // "t5:1,2,3" a tick, "p0=1.2" a pattern reached, "c0=1.2" a cue.
    std::string messages() {
        std::ostringstream out;
        for (EngineMessage m; engine.takeMessage(m);) {
            if (out.tellp() > 0) out << ' ';
            if (m.message == kTickMessage) {
                out << 't' << m.wParam << ':' << m.lParam % 16 << ',' << m.lParam / 16 % 16 << ','
                    << m.lParam / 256;
            } else {
                const bool cue = m.message >= kCueMessage;
                out << (cue ? 'c' : 'p') << m.message % 10 << '=' << m.wParam << '.' << m.lParam;
            }
        }
        return out.str();
    }
    Recorder wire;
    VirtualEngine engine;
    bool started = false;
};

} // namespace marlune::test

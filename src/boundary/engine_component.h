// The boundary to the playback component: its entry points, and the messages that it posts back.
//
// The component keeps its own copy of the patterns, owns the timer and sends the MIDI stream. Every entry
// point is one row of the table below and travels as one EngineCall by value, so that the component, a
// recorder in front of it and a ring between two threads all see the same thing.
//
// All entry points are called on the user-interface thread. module is 0..2; truth values are -1 and 0.
// Arguments outside their range are limited or ignored by the component; none of them can fail but the two
// that open a port.
#pragma once

#include <array>
#include <cstdint>

namespace marlune {

// name, number of arguments
#define MARLUNE_ENTRY_POINTS(ENTRY)                                                                     \
    ENTRY(SetMarluneHwnd32, 1)          /* window: descriptor that gets a wake-up, -1 for none */       \
    ENTRY(SetMarluneTempo32, 1)         /* tempo: one sixteenth of it fills six periods, exactly */     \
    ENTRY(HoldTicks32, 1)               /* flag: a start waits with its first step until released */    \
    ENTRY(StartMarluneTimer32, 2)       /* period in ms, 0: starts at the stored positions */           \
    ENTRY(SetMarluneTimerInterval32, 2) /* period in ms, 0: from the next period on */                  \
    ENTRY(StopMarluneTimer32, 0)        /* no tick after it returns, none left queued */                \
    ENTRY(OpenMidiPort32, 1)            /* device: non-zero result on success */                        \
    ENTRY(OpenSyncPort32, 1)            /* device: non-zero result on success */                        \
    ENTRY(CloseMidiPort32, 0)           /* releases what sounds, then closes */                         \
    ENTRY(CloseSyncPort32, 0)                                                                           \
    ENTRY(SetSyncOffset32, 1) /* +n delays the notes by n periods, -n the clock */                      \
    ENTRY(BeginPlacing32, 2)  /* ticks taken since the start, number of the placing: see below */       \
    ENTRY(EndPlacing32, 0)                                                                              \
    ENTRY(SetSong32, 1)         /* flag: song mode */                                                   \
    ENTRY(SetSongTick32, 1)     /* tick 0..15999 for the next step */                                   \
    ENTRY(SetModuleTick32, 2)   /* module, step for the next step */                                    \
    ENTRY(SetCurrGroup32, 2)    /* module, bank playing */                                              \
    ENTRY(SetCurrPatt32, 2)     /* module, pattern playing */                                           \
    ENTRY(SetNextGroup32, 2)    /* module, bank cued: taken over when the module wraps */               \
    ENTRY(SetNextPatt32, 2)     /* module, pattern cued */                                              \
    ENTRY(SetCurrBarGroup32, 2) /* module, bank of this bar */                                          \
    ENTRY(SetCurrBarPatt32, 2)  /* module, pattern of this bar */                                       \
    ENTRY(SetNextBarGroup32, 2) /* module, bank taken over at the next bar line */                      \
    ENTRY(SetNextBarPatt32, 2)  /* module, pattern taken over at the next bar line */                   \
    ENTRY(Set103Note32, 5)      /* module, bank, pattern, step, note */                                 \
    ENTRY(Set103NoteOn32, 5)    /* module, bank, pattern, step, flag */                                 \
    ENTRY(Set103Up32, 5)                                                                                \
    ENTRY(Set103Down32, 5)                                                                              \
    ENTRY(Set103Accent32, 5)                                                                            \
    ENTRY(Set103Loop32, 4)        /* module, bank, pattern, loopEnd */                                  \
    ENTRY(Set103Patch32, 4)       /* module, bank, pattern, patch */                                    \
    ENTRY(Set103Chan32, 2)        /* module, channel 0..15 */                                           \
    ENTRY(Set103StoredChan32, 2)  /* module, channel of the program changes */                          \
    ENTRY(Set103Vel32, 2)         /* module, velocity */                                                \
    ENTRY(Set103NoteOffset32, 2)  /* module, base note */                                               \
    ENTRY(Set109bOn32, 5)         /* bank, pattern, step, drum, hit (any non-zero) */                   \
    ENTRY(Set109DrumNote32, 4)    /* bank, pattern, drum, note */                                       \
    ENTRY(Set109Loop32, 3)        /* bank, pattern, loopEnd */                                          \
    ENTRY(Set109Chan32, 2)        /* 2, channel */                                                      \
    ENTRY(DefineController32, 2)  /* knob, controller number; -1 is none */                             \
    ENTRY(SetController32, 2)     /* knob, value: sent now */                                           \
    ENTRY(PrepareController32, 2) /* knob, value: sent with the next step */                            \
    ENTRY(SendShortMessage32, 3)  /* status, data 1, data 2: to the sequencer port, now */              \
    ENTRY(SetClock32, 1)          /* ClockKind: whose periods are played; one not offered: internal */  \
    ENTRY(SetClockOffset32, 1)    /* microseconds by which a followed clock is played later */          \
    ENTRY(SetSwing32, 1)          /* percent beyond 50 that the odd sixteenths of a pair take, 0..25 */ \
    ENTRY(SetSlides32, 1)         /* flag: whether steps slide */                                       \
    ENTRY(Set103Slide32, 5)       /* module, bank, pattern, step, flag */                               \
    ENTRY(SetMutes32, 3)          /* bits of modules, bits of drums, flag: with the next bar line */

// A placing: the calls between BeginPlacing32 and EndPlacing32 take effect together, between two steps. They
// are meant for the step after the last tick message that the caller has taken; steps played since are
// counted on from there, without sound. Messages carry the number of the placing behind which they were
// posted, so that the caller can tell those that speak of an earlier place.

enum class Entry : std::uint8_t {
#define MARLUNE_ENTRY_NAME(name, arguments) name,
    MARLUNE_ENTRY_POINTS(MARLUNE_ENTRY_NAME)
#undef MARLUNE_ENTRY_NAME
};

struct EntryInfo {
    const char* name;
    int arguments; // 0..5
};
const EntryInfo& entryInfo(Entry entry);

struct EngineCall {
    Entry entry{};
    std::array<std::int32_t, 5> arguments{};
};

// Numbers of the posted messages.
inline constexpr int kTickMessage = 1300; // wParam: song position just played; lParam: packed steps
inline constexpr int kPatternMessage =
    1310;                                // + module; wParam: bank, lParam: pattern: its first step sounds now
inline constexpr int kCueMessage = 1320; // + module; wParam: bank, lParam: pattern: cue is now this
inline constexpr int kClockMessage = 1330; // wParam: ClockWish::Kind, lParam: song tick; of no placing

struct EngineMessage {
    std::int32_t message = 0;
    std::int32_t wParam = 0;
    std::int32_t lParam = 0;
    std::int32_t placing = 0; // number of the last placing carried out before
};

// lParam of a tick: step of module 0 + 16 x step of module 1 + 256 x step of module 2.
constexpr int packSteps(int step0, int step1, int step2) {
    return step0 + 16 * step1 + 256 * step2;
}

class EngineComponent {
  public:
    virtual ~EngineComponent() = default;

    // Carries out one entry point, or hands it over in order. The result counts for the two opening calls.
    virtual int call(const EngineCall& call) = 0;

    // Takes the oldest posted message, in order; false when none waits. User-interface thread.
    virtual bool takeMessage(EngineMessage& message) = 0;
};

// The component that the entry points reach; set once at the composition root and by tests. With none set
// (null) the entry points do nothing and the opening calls fail.
void setEngineComponent(EngineComponent* component);
EngineComponent* engineComponent();

int callEngine(Entry entry, std::array<std::int32_t, 5> arguments);

// The entry points themselves: Set103Note32(module, bank, pattern, step, note) and so on.
#define MARLUNE_ENTRY_FUNCTION(name, count)                                                     \
    template <typename... Args>                                                                 \
    inline int name(Args... args) {                                                             \
        static_assert(sizeof...(args) == (count), #name " takes " #count " arguments");         \
        return callEngine(Entry::name, {static_cast<std::int32_t>(static_cast<int>(args))...}); \
    }
MARLUNE_ENTRY_POINTS(MARLUNE_ENTRY_FUNCTION)
#undef MARLUNE_ENTRY_FUNCTION

} // namespace marlune

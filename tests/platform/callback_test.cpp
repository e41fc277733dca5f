// The audio callback asks for no memory and takes no lock: both are counted while it runs.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <random>

#include "boundary/midi_bytes.h"
#include "platform/synth.h"

namespace {

thread_local bool counting = false;
std::atomic<int> allocations{0}, locks{0};

} // namespace

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void __libc_free(void* block);

void* malloc(std::size_t size) {
    if (counting) ++allocations;
    return __libc_malloc(size);
}
void* calloc(std::size_t count, std::size_t size) {
    if (counting) ++allocations;
    return __libc_calloc(count, size);
}
void* realloc(void* block, std::size_t size) {
    if (counting) ++allocations;
    return __libc_realloc(block, size);
}
void free(void* block) {
    if (counting && block != nullptr) ++allocations;
    __libc_free(block);
}
int pthread_mutex_lock(pthread_mutex_t* mutex) {
    using Lock = int (*)(pthread_mutex_t*);
    static const auto real = reinterpret_cast<Lock>(dlsym(RTLD_NEXT, "pthread_mutex_lock"));
    if (counting) ++locks;
    return real(mutex);
}
}

namespace marlune {
namespace {

struct HandClock : PlayClock {
    std::int64_t nowNs() noexcept override { return now; }
    std::int64_t now = 7'000'000'000;
};

TEST(AudioCallback, AsksForNoMemoryAndTakesNoLock) {
    { // the counters count
        pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
        counting = true;
        free(malloc(static_cast<std::size_t>(getpid() % 7 + 100)));
        pthread_mutex_lock(&mutex);
        counting = false;
        pthread_mutex_unlock(&mutex);
        ASSERT_GE(allocations.exchange(0), 1);
        ASSERT_EQ(locks.exchange(0), 1);
    }
    HandClock clock;
    Synth synth(clock, nullptr, {.sound = false});
    synth.prepare(48000);
    std::mt19937 random(5);
    const auto upTo = [&random](int limit) {
        return static_cast<int>(random() % static_cast<unsigned>(limit));
    };
    float left[512], right[512];
    for (int callback = 0; callback < 6000; ++callback) {
        const int kinds[] = {kNoteOn,       kNoteOn,        kNoteOn,    kNoteOff,
                             kPolyPressure, kControlChange, kPitchBend, kChannelPressure};
        const int channel = upTo(3) == 0 ? 9 : upTo(4);
        for (int i = upTo(4); i > 0; --i)
            synth.send(midiBytes(kinds[upTo(8)] + channel, upTo(128), upTo(128)),
                       clock.now + upTo(1000) * 100);
        if (upTo(40) == 0) synth.send(midiBytes(kProgramChange + channel, upTo(128)), clock.now);
        if (upTo(40) == 0) synth.send(midiBytes(kControlChange + channel, 121, 0), clock.now);
        if (callback % 500 == 0) synth.mute(callback % 1000 == 0);
        const int frames = 1 + upTo(512);
        clock.now += std::int64_t{frames} * 1'000'000'000 / 48000;
        counting = true;
        synth.fill(frames, left, right);
        counting = false;
    }
    EXPECT_EQ(allocations, 0);
    EXPECT_EQ(locks, 0);
    EXPECT_GT(synth.takeMeter().peak, 0.1F); // it sounded
}

} // namespace
} // namespace marlune

#include "engine/engine_runner.h"

#include <pthread.h>
#include <sched.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <utility>

namespace marlune {

namespace {

// Below the clients of a JACK server at its usual priority of 10, which have 5, and far below the server.
// A limit for normal users may allow the lowest only.
constexpr int kPriorities[] = {4, 1};

bool takeRealTimePriority() noexcept {
    return std::any_of(std::begin(kPriorities), std::end(kPriorities), [](int priority) {
        sched_param parameters{};
        parameters.sched_priority = priority;
        return pthread_setschedparam(pthread_self(), SCHED_FIFO, &parameters) == 0;
    });
}

// More calls in a row than any edit makes, how far apart they may be, and how often they are looked for then.
constexpr int kBulk = 256;
constexpr std::int64_t kBulkGapNs = 5'000'000;
constexpr std::int64_t kBulkRestNs = 1'000'000;

} // namespace

Engine::Engine(PlayClock& clock, OutputDevices& devices, WireLog* log)
    : clock_(clock), devices_(devices), core_(*this, log) {
    core_.offerClock(ClockKind::midi, &midiClock_);
    // The thread inherits a mask with everything blocked: signals belong to the main thread.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    thread_ = std::thread([this] { run(); });
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

Engine::~Engine() {
    queueCommand({.order = Order::quit, .call = {Entry::StopMarluneTimer32, {}}});
    thread_.join();
    for (OutputPort* port : ports_) {
        if (port != nullptr) devices_.close(port);
    }
}

int Engine::call(const EngineCall& call) {
    const int device = call.arguments[0];
    switch (call.entry) {
        case Entry::OpenMidiPort32: return openPort(Role::seq, device);
        case Entry::OpenSyncPort32: return openPort(Role::sync, device);
        case Entry::CloseMidiPort32: closePort(Role::seq); break;
        case Entry::CloseSyncPort32: closePort(Role::sync); break;
        case Entry::SetMarluneHwnd32:
            queueCommand({.order = Order::setWindow, .acknowledge = true, .call = call});
            break;
        case Entry::StartMarluneTimer32: queueCommand({.acknowledge = true, .call = call}); break;
        case Entry::StopMarluneTimer32: {
            queueCommand({.acknowledge = true, .call = call});
            EngineMessage late;
            while (messages_.pop(late))
                if (late.message == kClockMessage) kept_.push_back(late);
            break;
        }
        case Entry::SetClock32: hears_ = device == indexOf(ClockKind::midi); [[fallthrough]];
        default: queueCommand({.call = call}); break;
    }
    return 0;
}

bool Engine::takeMessage(EngineMessage& message) {
    if (kept_.empty()) return messages_.pop(message);
    message = kept_.front();
    kept_.pop_front();
    return true;
}

void Engine::heard(int link, const MidiMessage& message, std::int64_t when) noexcept {
    if (!hears_.load(std::memory_order_relaxed)) return;
    midiClock_.push(link, message, when == kArrivesNow ? clock_.nowNs() : when);
    nudged_.store(true, std::memory_order_release);
    if (asleep_.exchange(false, std::memory_order_acq_rel)) wake_.post();
}

void Engine::limitSteps(int steps) {
    queueCommand({.order = Order::limit, .call = {Entry{}, {steps}}});
}

void Engine::settle() {
    queueCommand({.order = Order::settle, .acknowledge = true});
}

bool Engine::equalsRecord(const ProjectRecord& record, std::string* difference) {
    // Only calls write the patterns, and none is under way then: the engine thread may go on playing them.
    settle();
    return core_.patterns().equalsRecord(record, difference);
}

int Engine::openPort(Role role, int device) {
    closePort(role);
    OutputPort* const port = devices_.open(device);
    ports_[static_cast<std::size_t>(role)] = port;
    if (port == nullptr) return 0;
    queueCommand({.order = Order::setPort, .role = role, .port = port});
    return 1;
}

void Engine::closePort(Role role) {
    OutputPort*& port = ports_[static_cast<std::size_t>(role)];
    if (port == nullptr) return;
    queueCommand({.order = Order::setPort, .acknowledge = true, .role = role, .port = nullptr});
    devices_.close(port);
    port = nullptr;
}

void Engine::queueCommand(const Command& command) {
    while (!commands_.push(command)) std::this_thread::sleep_for(std::chrono::microseconds(100));
    // Both sides exchange the flag, so one of them comes second and sees what the other did: either this side
    // finds the engine asleep, or the engine finds the command.
    if (asleep_.exchange(false, std::memory_order_acq_rel)) wake_.post();
    if (command.acknowledge) done_.wait();
}

void Engine::run() noexcept {
    prctl(PR_SET_NAME, "marlune-engine");
    prctl(PR_SET_TIMERSLACK, 1UL);
    Command command;
    while (!quit_) {
        // Periods that are due come first, so that due times on a port never run backwards.
        const std::int64_t now = clock_.nowNs();
        core_.look(now);
        if (posted_) announce();
        if (core_.deadline() <= now) {
            playPeriod(now);
        } else if (commands_.pop(command)) {
            carryOut(command, now);
        } else {
            sleep(now);
        }
    }
}

void Engine::carryOut(const Command& command, std::int64_t now) noexcept {
    callsInARow_ = now - lastCallNs_ < kBulkGapNs ? callsInARow_ + 1 : 1;
    lastCallNs_ = now;
    setRealTime(core_.running() && callsInARow_ <= kBulk);
    switch (command.order) {
        case Order::entry: core_.apply(command.call, now); break;
        case Order::setWindow: window_ = command.call.arguments[0]; break;
        case Order::setPort: core_.setPort(command.role, command.port, now); break;
        case Order::limit: core_.limitSteps(command.call.arguments[0]); break;
        case Order::settle: break;
        case Order::quit:
            core_.apply(command.call, now);
            quit_ = true;
            break;
    }
    halted_.store(core_.halted(), std::memory_order_release);
    setRealTime(core_.running() && callsInARow_ <= kBulk);
    if (command.acknowledge) done_.post();
}

void Engine::setRealTime(bool wanted) noexcept {
    if (std::exchange(wantsRealTime_, wanted) == wanted) return;
    const sched_param normal{};
    if (!wanted) pthread_setschedparam(pthread_self(), SCHED_OTHER, &normal);
    realTime_.store(wanted && takeRealTimePriority(), std::memory_order_release);
}

void Engine::playPeriod(std::int64_t now) noexcept {
    setRealTime(core_.running());
    core_.period(now);
    halted_.store(core_.halted(), std::memory_order_release);
    if (posted_ || core_.halted()) announce();
}

void Engine::announce() noexcept {
    posted_ = false;
    const std::uint64_t one = 1;
    // A full counter refuses the write and is a wake-up already.
    if (window_ >= 0) [[maybe_unused]]
        const ssize_t written = write(window_, &one, sizeof one);
}

void Engine::post(const EngineMessage& message) noexcept {
    messages_.push(message);
    posted_ = true;
}

void Engine::sleep(std::int64_t now) noexcept {
    const std::int64_t rest = core_.restNs();
    const std::int64_t deadline = std::min(core_.deadline(), rest == kNever ? kNever : now + rest);
    setRealTime(core_.running());
    if (callsInARow_ > kBulk && now - lastCallNs_ < kBulkGapNs && deadline > now + kBulkRestNs) {
        // More is likely to come: one look a while later costs less than a wake-up for each.
        wake_.waitFor(kBulkRestNs);
        return;
    }
    asleep_.exchange(true, std::memory_order_acq_rel);
    if (commands_.empty() && !nudged_.exchange(false, std::memory_order_acq_rel)) {
        if (deadline == kNever) {
            wake_.wait();
        } else {
            wake_.waitFor(deadline - now);
        }
    }
    asleep_.exchange(false, std::memory_order_acq_rel);
}

} // namespace marlune

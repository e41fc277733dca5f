#include "platform/jack_transport.h"

#include <jack/transport.h>

#include <algorithm>
#include <cmath>

#include "boundary/limits.h"

namespace marlune {

namespace {

constexpr double kPeriodsPerBeat = 24;
constexpr double kPeriodsPerTick = 6;
constexpr double kTicksPerBeat = 1920;
constexpr int kBeatsPerBar = 4;
constexpr double kTickRounding = 0.1; // periods: what a master's whole ticks may lie beside its frames
constexpr double kSlack = 1;          // periods behind a bar line that still count as on it
constexpr std::int64_t kStaleNs = 500'000'000;

double barAtOrAfter(double periods) {
    return std::ceil((periods - kSlack) / kClocksPerBar) * kClocksPerBar;
}

} // namespace

// --- User-interface thread ---

void JackTransport::attach(jack_client_t* client) {
    client_ = client;
    choose(wanted_, follow_, lead_);
}

void JackTransport::choose(bool wanted, bool follow, bool lead) {
    wanted_ = wanted;
    follow_ = follow;
    const bool leads = wanted && lead && client_ != nullptr;
    if (client_ != nullptr && lead_ && !leads) jack_release_timebase(client_);
    lead_ = lead;
    active_ = wanted ? client_ : nullptr;
    if (leads) jack_set_timebase_callback(client_, 1, onTimebase, this);
}

void JackTransport::command(bool running, int songTick) {
    if (client_ == nullptr || !wanted_ || !lead_) return;
    if (!running) {
        commanded_ = false; // also where nobody has seen it roll
        jack_transport_stop(client_);
        return;
    }
    jack_position_t position{};
    if (jack_transport_query(client_, &position) != JackTransportStopped) return; // joins it
    commanded_ = true;
    const double beats = songTick * kPeriodsPerTick / kPeriodsPerBeat;
    jack_transport_locate(client_, static_cast<jack_nframes_t>(
                                       std::llround(beats * 60 / tempo_ * jack_get_sample_rate(client_))));
    jack_transport_start(client_);
}

// --- The server's thread ---

double JackTransport::periodsAt(std::int64_t frame) const noexcept {
    return anchorPeriods_ + static_cast<double>(frame - anchorFrame_) * anchorTempo_ * kPeriodsPerBeat /
                                (60 * static_cast<double>(rate_));
}

void JackTransport::anchor(std::int64_t frame, double periods, double tempo) noexcept {
    anchorFrame_ = frame;
    anchorPeriods_ = periods;
    anchorTempo_ = tempo;
}

void JackTransport::onTimebase(jack_transport_state_t /*state*/, jack_nframes_t /*frames*/,
                               jack_position_t* position, int /*isNew*/, void* self) {
    const auto& here = *static_cast<JackTransport*>(self);
    // A place that the cycle has not seen yet was moved to: the song's beginning is at frame 0.
    const double tempo = here.tempo_.load(std::memory_order_relaxed);
    const bool moved = position->frame != here.nextFrame_;
    const double beats = moved ? position->frame * tempo / (60.0 * position->frame_rate)
                               : here.periodsAt(position->frame) / kPeriodsPerBeat;
    const double whole = std::floor(beats);
    position->valid = JackPositionBBT;
    position->bar = static_cast<int>(whole) / kBeatsPerBar + 1;
    position->beat = static_cast<int>(whole) % kBeatsPerBar + 1;
    position->tick = static_cast<int>((beats - whole) * kTicksPerBeat);
    position->bar_start_tick = (position->bar - 1) * kBeatsPerBar * kTicksPerBeat;
    position->beats_per_bar = kBeatsPerBar;
    position->beat_type = kBeatsPerBar;
    position->ticks_per_beat = kTicksPerBeat;
    position->beats_per_minute = tempo;
}

void JackTransport::cycle(std::int64_t ns, std::int64_t rate) noexcept {
    jack_client_t* client = active_.load();
    if (client == nullptr) return;
    rate_ = rate;
    jack_position_t position{};
    const jack_transport_state_t state = jack_transport_query(client, &position);
    const std::int64_t frame = position.frame;
    const bool moved = frame != nextFrame_;
    if (moved) ++epoch_;
    const bool told = !lead_ && (position.valid & JackPositionBBT) != 0 && position.beats_per_minute > 0 &&
                      position.ticks_per_beat > 0;
    const double tempo = told ? position.beats_per_minute : tempo_.load(std::memory_order_relaxed);
    double periods =
        moved ? static_cast<double>(frame) * tempo * kPeriodsPerBeat / (60.0 * static_cast<double>(rate))
              : periodsAt(frame);
    if (told) {
        const double beats = (position.bar - 1) * static_cast<double>(position.beats_per_bar) +
                             (position.beat - 1) + position.tick / position.ticks_per_beat;
        if (moved || std::abs(beats * kPeriodsPerBeat - periods) > kTickRounding)
            periods = beats * kPeriodsPerBeat;
    }
    if (moved || tempo != anchorTempo_ || periods != periodsAt(frame)) anchor(frame, periods, tempo);
    nextFrame_ = state == JackTransportRolling ? frame + jack_get_buffer_size(client) : frame;
    write({ns, periods, tempo, epoch_, state});
}

void JackTransport::write(const Place& place) noexcept {
    const std::uint32_t turn = turn_.load(std::memory_order_relaxed);
    turn_.store(turn + 1, std::memory_order_seq_cst);
    ns_.store(place.ns);
    periods_.store(place.periods);
    shownTempo_.store(place.tempo);
    epochs_.store(place.epoch);
    state_.store(place.state);
    turn_.store(turn + 2, std::memory_order_seq_cst);
}

bool JackTransport::read(Place& place) const noexcept {
    const std::uint32_t turn = turn_.load();
    place = {ns_, periods_, shownTempo_, epochs_, static_cast<jack_transport_state_t>(state_.load())};
    return turn % 2 == 0 && turn == turn_.load();
}

// --- Engine thread ---

void JackTransport::look(std::int64_t now) noexcept {
    Place place;
    if (!read(place)) return; // being written: the next look will find it whole
    if (place.epoch == 0) return;
    if (now - place.ns > kStaleNs)
        place.state = JackTransportStarting; // the server stands: nobody wished that
    const bool moved = seen_.epoch != 0 && place.epoch != movedAt_;
    const bool rolls = place.state == JackTransportRolling;
    const bool follow = follow_.load(std::memory_order_relaxed);
    seen_ = place;
    if (place.state != JackTransportStarting) movedAt_ = place.epoch;
    if (rolls && !running_) {
        running_ = true;
        enter();
        if (!commanded_.exchange(false) && follow) wish(0, ClockWish::start);
    } else if (place.state == JackTransportStopped && running_) {
        running_ = false;
        entry_ = -1;
        if (follow) wish(0, ClockWish::stop);
    } else if (moved && place.state != JackTransportStarting && follow && !commanded_) {
        if (rolls) entry_ = barAtOrAfter(place.periods);
        wish(1, ClockWish::locate);
    }
}

void JackTransport::wish(int slot, ClockWish::Kind kind) noexcept {
    const auto ticks = static_cast<std::int64_t>(barAtOrAfter(seen_.periods) / kPeriodsPerTick);
    wishes_[slot] = {kind, static_cast<std::int32_t>(ticks % kSongTicks)};
}

// The transport rolls: what waited for it begins with the first bar line.
void JackTransport::enter() noexcept {
    entry_ = barAtOrAfter(seen_.periods);
    if (waiting_ < 0) return;
    base_ = entry_ - static_cast<double>(waiting_);
    waiting_ = -1;
}

void JackTransport::place(std::int64_t n, std::int64_t ns) noexcept {
    waiting_ = -1;
    if (seen_.state != JackTransportRolling) {
        waiting_ = n;
        return;
    }
    double first = entry_;
    if (n != 0 || entry_ < 0) {
        const double at = seen_.periods + static_cast<double>(ns - seen_.ns) / lengthNs();
        const auto inBar = static_cast<double>(n % kClocksPerBar);
        first = inBar + std::ceil((at - inBar) / kClocksPerBar) * kClocksPerBar;
    }
    entry_ = -1;
    base_ = first - static_cast<double>(n);
}

std::int64_t JackTransport::timeOf(std::int64_t n) const noexcept {
    if (seen_.state != JackTransportRolling || waiting_ >= 0) return kNever;
    return seen_.ns + std::llround((base_ + static_cast<double>(n) - seen_.periods) * lengthNs());
}

ClockWish JackTransport::takeWish() noexcept {
    for (ClockWish& wish : wishes_) {
        const ClockWish taken = wish;
        wish = {};
        if (taken.kind != ClockWish::none) return taken;
    }
    return {};
}

ClockSight JackTransport::sight() const noexcept {
    return {shownTempo_.load(), active_.load() != nullptr, 0};
}

} // namespace marlune

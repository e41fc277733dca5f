// What the JACK client does on the server's thread: nothing here waits, allocates or makes a system call.
#include <jack/midiport.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "platform/jack_client.h"

namespace marlune {

namespace {

// A distance between the server's time and ours beyond which the two are joined anew, as after a machine's
// sleep. In a shorter stall the clock stands until the server has caught up, so that no event leaves its
// frame.
constexpr std::int64_t kTearNs = 200'000'000;

// How long after its start a cycle may reach us.
constexpr std::int64_t kStrayNs = 2'000'000;

} // namespace

int JackClient::onProcess(jack_nframes_t frames, void* self) {
    static_cast<JackClient*>(self)->process(frames);
    return 0;
}

void JackClient::onShutdown(void* self) {
    static_cast<JackClient*>(self)->online_ = false;
}

void JackClient::onInfoShutdown(jack_status_t /*code*/, const char* /*reason*/, void* self) {
    onShutdown(self);
}

int JackClient::onSampleRate(jack_nframes_t rate, void* self) {
    if (rate > 0) static_cast<JackClient*>(self)->rate_ = rate;
    return 0;
}

void JackClient::process(jack_nframes_t frames) noexcept {
    if (!online()) return; // a client that a hung server has kept from being closed
    entered_.fetch_add(1);
    const std::int64_t cycle = followServer(frames);
    transport_.cycle(time_.nsAt(cycle), time_.rate);
    for (auto& active : outActive_)
        if (OutLane* lane = active.load()) write(*lane, frames, cycle);
    for (InLane& lane : inLanes_) read(lane, frames, cycle);
    playAudio(frames);
    left_.fetch_add(1);
}

// Counts the frames and hands the clock its new line; returns the frame at which the present cycle begins.
std::int64_t JackClient::followServer(jack_nframes_t frames) noexcept {
    jack_nframes_t serverFrame = 0;
    jack_time_t begin = 0, end = 0;
    float period = 0;
    if (jack_get_cycle_times(client_, &serverFrame, &begin, &end, &period) != 0) {
        serverFrame = jack_last_frame_time(client_);
        begin = jack_get_time();
    }
    if (first_) serverFrame_ = serverFrame, frame_ = 0;
    frame_ += static_cast<std::int32_t>(serverFrame - serverFrame_);
    serverFrame_ = serverFrame;
    if (const std::int64_t rate = rate_.load(std::memory_order_relaxed); rate != time_.rate)
        time_.changeRate(frame_, rate);

    // The server's smoothed time of the cycle's start is the better one, but strays far off when cycles fail.
    const std::int64_t now = monotonicNs();
    const std::int64_t monotonic =
        std::clamp(static_cast<std::int64_t>(begin) * 1000 + clockOffset_, now - kStrayNs, now);
    const std::int64_t apart = clock_.at(monotonic) - time_.nsAt(frame_);
    if (first_ || std::abs(apart) > kTearNs) time_.base += apart;
    first_ = false;
    const double nominal = 1e6 * static_cast<double>(frames) / static_cast<double>(time_.rate);
    const double rate = period > 0 ? nominal / static_cast<double>(period) : 1.0;
    clock_.follow(monotonic, time_.nsAt(frame_), std::clamp(rate, 0.9, 1.1));
    period_.store(frames, std::memory_order_relaxed);
    return frame_;
}

void JackClient::write(OutLane& lane, jack_nframes_t frames, std::int64_t cycle) noexcept {
    jack_port_t* port = lane.port.load();
    if (port == nullptr) return;
    void* buffer = jack_port_get_buffer(port, frames);
    if (buffer == nullptr) return;
    jack_midi_clear_buffer(buffer);
    if (lane.settling.load(std::memory_order_relaxed) > 0) {
        lane.settling.fetch_sub(frames); // what waits meanwhile goes out late, but whole
        return;
    }
    const std::int64_t latency = frames + kLookAheadNs * time_.rate / FrameTime::kSecond;
    jack_nframes_t last = 0;
    while (const StampedMessage* next = lane.ring.front()) {
        std::int64_t offset = time_.frameAt(next->due) + latency - cycle;
        if (offset > time_.rate) offset = 0; // nobody plans a second ahead: a stray stamp
        if (offset >= frames) break;
        if (offset < 0) late_.fetch_add(1, std::memory_order_relaxed);
        last = std::max(last, static_cast<jack_nframes_t>(std::max<std::int64_t>(0, offset)));
        // A full buffer leaves the rest to the next cycle.
        if (jack_midi_event_write(buffer, last, next->message.bytes, next->message.size) != 0) break;
        lane.ring.pop();
    }
}

void JackClient::playAudio(jack_nframes_t frames) noexcept {
    AudioSource* source = audio_.load();
    if (source == nullptr) return;
    auto* left = static_cast<float*>(jack_port_get_buffer(audioPorts_[0], frames));
    auto* right = static_cast<float*>(jack_port_get_buffer(audioPorts_[1], frames));
    if (left != nullptr && right != nullptr) source->fill(static_cast<int>(frames), left, right);
}

void JackClient::read(InLane& lane, jack_nframes_t frames, std::int64_t cycle) noexcept {
    jack_port_t* port = lane.port.load();
    InputSink* sink = lane.sink.load();
    if (port == nullptr || sink == nullptr) return;
    void* buffer = jack_port_get_buffer(port, frames);
    const jack_nframes_t count = buffer == nullptr ? 0 : jack_midi_get_event_count(buffer);
    for (jack_nframes_t i = 0; i < count; ++i) {
        jack_midi_event_t event;
        if (jack_midi_event_get(&event, buffer, i) != 0 || event.size == 0 || event.size > 3) continue;
        if (midiMessageLength(event.buffer[0]) != static_cast<int>(event.size)) continue;
        MidiMessage message;
        message.size = static_cast<std::uint8_t>(event.size);
        std::memcpy(message.bytes, event.buffer, event.size);
        if (event.buffer[0] >= 0xF0)
            sink->clocked(message, time_.nsAt(cycle + event.time));
        else
            sink->received(message);
    }
}

} // namespace marlune

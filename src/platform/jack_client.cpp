#include "platform/jack_client.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <thread>

#include "platform/port_names.h"

namespace marlune {

namespace {

// The server's time counts as the monotonic clock where the two are nearer than this.
constexpr std::int64_t kSameClockNs = 200'000'000;

// A new connection carries nothing for some cycles: this part of a second is allowed for it.
constexpr std::int64_t kSettleParts = 10;

constexpr auto kPatience = std::chrono::milliseconds(250);

void silent(const char* /*text*/) {}

// Waits for something that the server's thread will do soon, but not for ever.
template <class Condition>
void waitFor(Condition done) {
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (!done() && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(std::chrono::microseconds(300));
}

} // namespace

class JackClient::Output : public OutputLink {
  public:
    Output(JackClient& owner, OutLane& lane, std::string address, std::uint32_t session)
        : owner_(owner), lane_(lane), address_(std::move(address)), session_(session) {}
    ~Output() override { owner_.releaseOutput(lane_, session_); }
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    void send(const MidiMessage& message, std::int64_t due) noexcept override {
        if (!owner_.online() || message.size == 0) return;
        if (lane_.port.load(std::memory_order_relaxed) != nullptr) lane_.ring.push({due, message});
    }

    std::int64_t latencyNs() const noexcept override { return owner_.online() ? owner_.latencyNs() : 0; }

    bool alive() noexcept override {
        return address_.empty() || owner_.connected(lane_.port, address_, session_);
    }

  private:
    JackClient& owner_;
    OutLane& lane_;
    std::string address_; // empty: the virtual port
    std::uint32_t session_;
};

class JackClient::Input : public InputLink {
  public:
    Input(JackClient& owner, InLane& lane, std::string address, std::uint32_t session)
        : owner_(owner), lane_(lane), address_(std::move(address)), session_(session) {}
    ~Input() override { owner_.releaseInput(lane_, session_, address_.empty()); }
    Input(const Input&) = delete;
    Input& operator=(const Input&) = delete;
    bool alive() noexcept override {
        return address_.empty() || owner_.connected(lane_.port, address_, session_);
    }

  private:
    JackClient& owner_;
    InLane& lane_;
    std::string address_;
    std::uint32_t session_;
};

JackClient::JackClient(SystemPlayClock& clock) : clock_(clock) {
    jack_set_error_function(silent);
    jack_set_info_function(silent);
    outLanes_[0] = std::make_unique<OutLane>();
    outLanes_[0]->taken = true;
    outActive_[0] = outLanes_[0].get();
    virtualOutput_ = std::make_unique<Output>(*this, *outLanes_[0], "", 0);
    open();
}

JackClient::~JackClient() {
    drain(*outLanes_[0]);
    close();
}

void JackClient::poll() {
    if (client_ != nullptr && !online()) {
        close();
        eagerPolls_ = kEagerPolls;
    }
    if (client_ != nullptr) return;
    // Looking for a server costs milliseconds: every time only while one that was there may return.
    if (eagerPolls_ > 0) {
        --eagerPolls_;
    } else if (lazyPolls_++ % kLazyPolls != 0) {
        return;
    }
    open();
}

bool JackClient::open() {
    const bool again = opening_.underWay(); // it was waited for before
    if (!again)
        opening_.start([] { return jack_client_open(kClientName, JackNoStartServer, nullptr); },
                       closeBounded);
    client_ = opening_.take(again ? std::chrono::milliseconds(0) : kPatience).value_or(nullptr);
    if (client_ == nullptr) return false;
    ++session_;
    left_ = entered_.load();
    first_ = true;
    rate_ = std::max<std::int64_t>(1, jack_get_sample_rate(client_));
    time_.rate = rate_;
    period_ = jack_get_buffer_size(client_);
    const std::int64_t apart = monotonicNs() - static_cast<std::int64_t>(jack_get_time()) * 1000;
    clockOffset_ = std::abs(apart) < kSameClockNs ? 0 : apart;
    outLanes_[0]->ring.clear();
    outLanes_[0]->port = registerPort(kVirtualOutName, JackPortIsOutput);
    inLanes_[0].port = registerPort(kVirtualInName, JackPortIsInput);
    jack_set_process_callback(client_, onProcess, this);
    // Not every library calls both.
    jack_on_shutdown(client_, onShutdown, this);
    jack_on_info_shutdown(client_, onInfoShutdown, this);
    jack_set_sample_rate_callback(client_, onSampleRate, this);
    online_ = true;
    if (jack_activate(client_) != 0) close();
    if (client_ != nullptr) transport_.attach(client_);
    return client_ != nullptr;
}

void JackClient::close() {
    online_ = false;
    transport_.attach(nullptr);
    closeBounded(client_);
    client_ = nullptr; // not before: cycles may have gone on until then
    audio_ = nullptr;
    audioPorts_ = {};
    for (auto& lane : outLanes_)
        if (lane) lane->port = nullptr;
    for (InLane& lane : inLanes_) lane.port = nullptr;
}

void JackClient::closeBounded(jack_client_t* client) {
    if (client != nullptr) runBounded([client] { jack_client_close(client); }, 4 * kPatience);
}

// Returns when no cycle is under way that began before the call.
void JackClient::quiesce() noexcept {
    const std::uint32_t entered = entered_.load();
    waitFor([&] { return static_cast<std::int32_t>(left_.load() - entered) >= 0; });
}

// Returns when what is queued has reached the others.
void JackClient::drain(const OutLane& lane) {
    if (!online()) return;
    waitFor([&] { return lane.ring.empty() || !online(); });
    // Others read the last cycle after us; it would go down with the connection.
    const std::uint32_t cycle = entered_.load();
    waitFor([&] { return entered_.load() - cycle >= 3 || !online(); });
}

int JackClient::sampleRate() const noexcept {
    return online() ? static_cast<int>(rate_) : 0;
}

std::int64_t JackClient::latencyNs() const noexcept {
    return period_ * FrameTime::kSecond / rate_ + kLookAheadNs;
}

bool JackClient::settled() const noexcept {
    return !online() || std::none_of(outActive_.begin(), outActive_.end(), [](const auto& active) {
        const OutLane* lane = active;
        return lane != nullptr && lane->port != nullptr && lane->settling > 0;
    });
}

std::vector<PortSystem::Port> JackClient::list(unsigned long flags) {
    std::vector<Port> ports;
    if (!online()) return ports;
    const char** names = jack_get_ports(client_, nullptr, JACK_DEFAULT_MIDI_TYPE, flags);
    for (const char** name = names; name != nullptr && *name != nullptr; ++name) {
        const jack_port_t* port = jack_port_by_name(client_, *name);
        if (port == nullptr || jack_port_is_mine(client_, port) != 0 || isOwnPort(*name)) continue;
        // A numbered port of the server itself has its device's name as an alias.
        std::string first(static_cast<std::size_t>(jack_port_name_size()), '\0'), second = first;
        char* aliases[2] = {first.data(), second.data()};
        const int count = jack_port_get_aliases(port, aliases);
        ports.push_back({jackPortName(*name, count > 0 ? first.c_str() : ""), *name, isBridgedPort(*name)});
    }
    jack_free(names);
    return ports;
}

std::vector<PortSystem::Port> JackClient::outputs() {
    return list(JackPortIsInput);
}
std::vector<PortSystem::Port> JackClient::inputs() {
    return list(JackPortIsOutput);
}

jack_port_t* JackClient::registerPort(const char* name, unsigned long flags) {
    return jack_port_register(client_, name, JACK_DEFAULT_MIDI_TYPE, flags, 0);
}

// The connection tells more than the other port's name: that may come back before anybody noticed it was
// gone.
bool JackClient::connected(jack_port_t* port, const std::string& address, std::uint32_t session) {
    return online() && session == session_ && port != nullptr &&
           jack_port_connected_to(port, address.c_str()) != 0;
}

JackClient::OutLane* JackClient::freeOutLane() {
    for (int i = 1; i < kLanes; ++i) {
        if (!outLanes_[i]) {
            outLanes_[i] = std::make_unique<OutLane>();
            outActive_[i] = outLanes_[i].get();
        }
        if (!outLanes_[i]->taken) return outLanes_[i].get();
    }
    return nullptr;
}

std::unique_ptr<OutputLink> JackClient::openOutput(const std::string& address) {
    OutLane* lane = online() ? freeOutLane() : nullptr;
    if (lane == nullptr) return nullptr;
    const auto number = std::find_if(outLanes_.begin(), outLanes_.end(),
                                     [&](const auto& each) { return each.get() == lane; }) -
                        outLanes_.begin();
    jack_port_t* port = registerPort(("to device " + std::to_string(number)).c_str(), JackPortIsOutput);
    if (port == nullptr) return nullptr;
    if (jack_connect(client_, jack_port_name(port), address.c_str()) != 0) {
        jack_port_unregister(client_, port);
        return nullptr;
    }
    lane->ring.clear();
    lane->settling = rate_ / kSettleParts;
    lane->taken = true;
    lane->port = port;
    return std::make_unique<Output>(*this, *lane, address, session_);
}

void JackClient::releaseOutput(OutLane& lane, std::uint32_t session) {
    if (session == 0) return; // the virtual port stays
    const bool current = session == session_;
    if (current) drain(lane);
    jack_port_t* port = lane.port.exchange(nullptr);
    lane.taken = false;
    quiesce();
    if (current && online() && port != nullptr) jack_port_unregister(client_, port);
}

std::unique_ptr<InputLink> JackClient::openInput(const std::string& address, InputSink& sink) {
    InLane& lane = inLanes_[1];
    if (!online() || lane.taken) return nullptr;
    jack_port_t* port = registerPort("from device", JackPortIsInput);
    if (port == nullptr) return nullptr;
    if (jack_connect(client_, address.c_str(), jack_port_name(port)) != 0) {
        jack_port_unregister(client_, port);
        return nullptr;
    }
    lane.taken = true;
    lane.sink = &sink;
    lane.port = port;
    return std::make_unique<Input>(*this, lane, address, session_);
}

std::unique_ptr<InputLink> JackClient::openVirtualInput(InputSink& sink) {
    InLane& lane = inLanes_[0];
    if (lane.taken) return nullptr;
    lane.taken = true;
    lane.sink = &sink;
    return std::make_unique<Input>(*this, lane, "", 0);
}

void JackClient::releaseInput(InLane& lane, std::uint32_t session, bool keepPort) {
    lane.sink = nullptr;
    jack_port_t* port = keepPort ? nullptr : lane.port.exchange(nullptr);
    lane.taken = false;
    quiesce();
    if (port != nullptr && session == session_ && online()) jack_port_unregister(client_, port);
}

bool JackClient::setAudio(AudioSource* source) {
    audio_ = nullptr;
    quiesce();
    for (jack_port_t*& port : audioPorts_) {
        if (port != nullptr && online()) jack_port_unregister(client_, port);
        port = nullptr;
    }
    if (source == nullptr || !online()) return false;
    const char* names[] = {"Synth left", "Synth right"};
    for (int i = 0; i < 2; ++i)
        audioPorts_[i] = jack_port_register(client_, names[i], JACK_DEFAULT_AUDIO_TYPE,
                                            JackPortIsOutput | JackPortIsTerminal, 0);
    if (audioPorts_[0] == nullptr || audioPorts_[1] == nullptr) return false;
    audio_ = source;
    const char** card =
        jack_get_ports(client_, nullptr, JACK_DEFAULT_AUDIO_TYPE, JackPortIsInput | JackPortIsPhysical);
    for (int i = 0; i < 2 && card != nullptr && card[i] != nullptr; ++i)
        jack_connect(client_, jack_port_name(audioPorts_[i]), card[i]);
    jack_free(card);
    return true;
}

OutputLink& JackClient::virtualOutput() {
    return *virtualOutput_;
}

} // namespace marlune

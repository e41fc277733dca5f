#include "platform/alsa_ports.h"

#include <RtMidi.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <vector>

#include "platform/alsa_announce.h"
#include "platform/port_names.h"

namespace marlune {

namespace {

// Setting a callback keeps the library from printing; what matters shows in the state of the port.
void ignoreError(RtMidiError::Type /*type*/, const std::string& /*text*/, void* /*data*/) {}

// Runs an action of the library; false where it threw.
template <class Action>
bool attempt(Action action) {
    try {
        action();
        return true;
    } catch (const RtMidiError&) {
        return false;
    }
}

template <class Port>
std::unique_ptr<Port> newPort() {
    std::unique_ptr<Port> port;
    attempt([&] {
        port = std::make_unique<Port>(RtMidi::LINUX_ALSA, kClientName);
        port->setErrorCallback(ignoreError);
    });
    return port;
}

std::vector<std::string> rawNames(RtMidi& port) {
    std::vector<std::string> names;
    attempt([&] {
        const unsigned count = port.getPortCount();
        for (unsigned i = 0; i < count; ++i) names.push_back(port.getPortName(i));
    });
    return names;
}

// The address of a port is its whole name with the numbers: good for as long as the port stays.
std::vector<PortSystem::Port> listed(RtMidi& port) {
    std::vector<PortSystem::Port> ports;
    for (const std::string& raw : rawNames(port))
        if (!raw.empty() && !isOwnPort(raw)) ports.push_back({normalPortName(raw), raw, false});
    return ports;
}

template <class Port>
std::unique_ptr<Port> connected(const std::string& address, const char* ownName) {
    auto port = newPort<Port>();
    if (!port) return nullptr;
    const auto names = rawNames(*port);
    const auto at = std::find(names.begin(), names.end(), address);
    if (at == names.end()) return nullptr;
    const bool open = attempt([&] { port->openPort(static_cast<unsigned>(at - names.begin()), ownName); });
    return open && port->isPortOpen() ? std::move(port) : nullptr;
}

// Whether the port at an address is still the one it was when this was made. Empty address: our own port.
class Peer {
  public:
    Peer(RtMidi& list, const AlsaAnnounce& announce, std::string address)
        : list_(list), announce_(announce), address_(std::move(address)), departures_(departures()) {}

    bool alive() const {
        if (address_.empty()) return true;
        if (departures() != departures_) return false;
        const auto names = rawNames(list_);
        return std::find(names.begin(), names.end(), address_) != names.end();
    }

  private:
    // The address ends with the numbers: "client:port 128:0".
    std::uint32_t departures() const {
        int client = -1;
        int port = -1;
        const std::size_t blank = address_.rfind(' ');
        if (blank == std::string::npos) return 0;
        if (std::sscanf(address_.c_str() + blank, "%d:%d", &client, &port) != 2) return 0;
        return announce_.departures(client, port);
    }

    RtMidi& list_;
    const AlsaAnnounce& announce_;
    std::string address_;
    std::uint32_t departures_;
};

class AlsaOutput : public OutputLink {
  public:
    AlsaOutput(std::unique_ptr<RtMidiOut> port, Peer peer) : port_(std::move(port)), peer_(std::move(peer)) {}

    void send(const MidiMessage& message, std::int64_t /*due*/) noexcept override {
        if (!port_ || message.size == 0) return;
        attempt([&] { port_->sendMessage(message.bytes, message.size); });
    }

    bool alive() noexcept override { return peer_.alive(); }

  private:
    std::unique_ptr<RtMidiOut> port_; // null: swallows all
    Peer peer_;
};

class AlsaInput : public InputLink {
  public:
    AlsaInput(std::unique_ptr<RtMidiIn> port, Peer peer) : port_(std::move(port)), peer_(std::move(peer)) {}

    bool alive() noexcept override { return peer_.alive(); }

  private:
    std::unique_ptr<RtMidiIn> port_; // its end joins the thread that calls the sink
    Peer peer_;
};

// The library's thread.
void deliver(double /*time*/, std::vector<unsigned char>* bytes, void* sink) {
    if (bytes == nullptr || bytes->empty() || bytes->size() > 3) return;
    if (midiMessageLength(bytes->front()) != static_cast<int>(bytes->size())) return;
    MidiMessage message;
    message.size = static_cast<std::uint8_t>(bytes->size());
    std::copy(bytes->begin(), bytes->end(), message.bytes);
    auto& into = *static_cast<InputSink*>(sink);
    if (message.bytes[0] >= 0xF0)
        into.clocked(message, kArrivesNow);
    else
        into.received(message);
}

// The port that others can send to stands all the time, also while nobody here listens.
class VirtualInput {
  public:
    VirtualInput() : port_(newPort<RtMidiIn>()) {
        if (!port_) return;
        port_->ignoreTypes(true, false, false);
        port_->setCallback(
            [](double time, std::vector<unsigned char>* bytes, void* self) {
                auto& here = *static_cast<VirtualInput*>(self);
                here.inside_ = true;
                if (InputSink* sink = here.sink_.load()) deliver(time, bytes, sink);
                here.inside_ = false;
            },
            this);
        attempt([&] { port_->openVirtualPort(kVirtualInName); });
    }

    // Returns once the former sink is called no more.
    void setSink(InputSink* sink) {
        sink_ = sink;
        while (inside_.load()) usleep(100);
    }

  private:
    std::atomic<InputSink*> sink_{nullptr};
    std::atomic<bool> inside_{false};
    std::unique_ptr<RtMidiIn> port_; // last: its thread ends before the rest
};

class VirtualInputLink : public InputLink {
  public:
    VirtualInputLink(VirtualInput& input, InputSink& sink) : input_(input) { input_.setSink(&sink); }
    ~VirtualInputLink() override { input_.setSink(nullptr); }
    VirtualInputLink(const VirtualInputLink&) = delete;
    VirtualInputLink& operator=(const VirtualInputLink&) = delete;
    bool alive() noexcept override { return true; }

  private:
    VirtualInput& input_;
};

class AlsaPorts : public PortSystem {
  public:
    AlsaPorts(std::unique_ptr<RtMidiOut> outList, std::unique_ptr<RtMidiIn> inList)
        : outList_(std::move(outList)), inList_(std::move(inList)) {
        auto port = newPort<RtMidiOut>();
        if (port && !attempt([&] { port->openVirtualPort(kVirtualOutName); })) port = nullptr;
        virtualOutput_ = std::make_unique<AlsaOutput>(std::move(port), Peer(*outList_, announce_, ""));
    }

    std::vector<Port> outputs() override { return listed(*outList_); }
    std::vector<Port> inputs() override { return listed(*inList_); }

    std::unique_ptr<OutputLink> openOutput(const std::string& address) override {
        Peer peer(*outList_, announce_, address); // before: who leaves while we connect is missed as well
        auto port = connected<RtMidiOut>(address, "to device");
        if (!port) return nullptr;
        return std::make_unique<AlsaOutput>(std::move(port), std::move(peer));
    }

    std::unique_ptr<InputLink> openInput(const std::string& address, InputSink& sink) override {
        Peer peer(*inList_, announce_, address);
        auto port = connected<RtMidiIn>(address, "from device");
        if (!port) return nullptr;
        port->ignoreTypes(true, false, false);
        port->setCallback(deliver, &sink);
        return std::make_unique<AlsaInput>(std::move(port), std::move(peer));
    }

    OutputLink& virtualOutput() override { return *virtualOutput_; }
    std::unique_ptr<InputLink> openVirtualInput(InputSink& sink) override {
        return std::make_unique<VirtualInputLink>(virtualInput_, sink);
    }
    void poll() override { announce_.poll(); }

  private:
    AlsaAnnounce announce_;
    std::unique_ptr<RtMidiOut> outList_; // asked for names only
    std::unique_ptr<RtMidiIn> inList_;
    std::unique_ptr<AlsaOutput> virtualOutput_;
    VirtualInput virtualInput_;
};

} // namespace

std::unique_ptr<PortSystem> openAlsaPorts() {
    // Without a sequencer the library prints before anything can keep it from doing so.
    if (access("/dev/snd/seq", R_OK | W_OK) != 0) return nullptr;
    auto outList = newPort<RtMidiOut>();
    auto inList = newPort<RtMidiIn>();
    if (!outList || !inList) return nullptr;
    return std::make_unique<AlsaPorts>(std::move(outList), std::move(inList));
}

} // namespace marlune

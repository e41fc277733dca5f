// The lists of devices over plugging, unplugging and restarts, on a made-up MIDI system.
#include "platform/devices.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "boundary/hex_text.h"
#include "boundary/midi_bytes.h"
#include "platform/device_memory.h"
#include "platform/play_clock.h"
#include "platform/port_names.h"
#include "support/test_program.h"

namespace marlune {
namespace {

using Ports = std::vector<PortSystem::Port>;

// "Name@address, *Name@address": the star marks a bridge's port.
Ports ports(const std::string& text) {
    Ports list;
    std::istringstream in(text);
    for (std::string name, address; getline(in >> std::ws, name, '@') && getline(in, address, ',');) {
        const bool bridge = name[0] == '*';
        list.push_back({name.substr(bridge ? 1 : 0), address, bridge});
    }
    return list;
}

// What is sent ends up in `log` as "address:bytes".
class FakeSystem : public PortSystem {
  public:
    explicit FakeSystem(const std::string& shown) : shown_(ports(shown)) {}
    void show(const std::string& text) { shown_ = ports(text); }
    bool shows(const std::string& address) const {
        const auto isIt = [&](const Port& port) { return port.address == address; };
        return address == "virtual" || std::any_of(shown_.begin(), shown_.end(), isIt);
    }
    Ports outputs() override { return shown_; }
    Ports inputs() override { return shown_; }
    std::unique_ptr<OutputLink> openOutput(const std::string& address) override {
        return shows(address) ? std::make_unique<Out>(*this, address) : nullptr;
    }
    std::unique_ptr<InputLink> openInput(const std::string& address, InputSink& sink) override {
        if (!shows(address)) return nullptr;
        sinks[address] = &sink;
        return std::make_unique<In>(*this, address);
    }
    OutputLink& virtualOutput() override { return virtual_; }
    std::unique_ptr<InputLink> openVirtualInput(InputSink& sink) override {
        return openInput("virtual", sink);
    }
    void poll() override {}

    std::string taken() { return std::exchange(log, ""); }
    std::string log;
    std::map<std::string, InputSink*> sinks;

  private:
    template <class Kind>
    struct Link : Kind {
        Link(FakeSystem& s, std::string a) : system(s), address(std::move(a)) {}
        bool alive() noexcept override { return system.shows(address); }
        FakeSystem& system;
        std::string address;
    };
    struct Out : Link<OutputLink> {
        using Link::Link;
        void send(const MidiMessage& message, std::int64_t) noexcept override {
            if (alive()) system.log += address + ":" + hexText(message) + " ";
        }
    };
    struct In : Link<InputLink> {
        using Link::Link;
        ~In() override { system.sinks.erase(address); }
    };
    Ports shown_;
    Out virtual_{*this, "virtual"};
};

struct World {
    explicit World(const std::string& jackPorts, const std::string& alsaPorts = "",
                   const std::vector<std::string>& remembered = {})
        : jack(jackPorts),
          alsa(alsaPorts),
          outputs(
              {{&jack, &alsa}, &clock, {}}, [this] { return jack.openOutput("synth"); }, remembered),
          inputs({{&jack, &alsa}, &clock, {}}, remembered) {}
    std::string names() { // of the system's
        std::string text;
        for (int i = 2; i < outputs.count(); ++i) text += (i > 2 ? ", " : "") + outputs.name(i);
        return text;
    }
    std::string poll() {
        std::vector<std::string> texts;
        outputs.poll(texts);
        inputs.poll(texts);
        return test::joined(texts);
    }
    SystemPlayClock clock;
    FakeSystem jack, alsa;
    SystemOutputs outputs;
    SystemInputs inputs;
};

TEST(PortNames, AreTheSameWhicheverSystemShowsThePort) {
    const std::pair<const char*, const char*> rows[] = {
        {"USB Keys:USB Keys MIDI 1 20:0", "USB Keys MIDI 1"},
        {"a2j:USB Keys [20] (playback): USB Keys MIDI 1", "USB Keys MIDI 1"},
        {"Midi-Bridge:USB Keys:(playback_0) USB Keys MIDI 1", "USB Keys MIDI 1"},
        {"Midi-Bridge:USB Keys MIDI 1 20:0 (capture)", "USB Keys MIDI 1"},
        {"Midi Through:Midi Through Port-0 14:0", "Midi Through Port-0"},
        {"FLUID Synth (3127):Synth input port (3127:0) 128:0", "FLUID Synth:Synth input port"},
        {"Synth (left):in", "Synth (left):in"},
        {"  two\tblanks\n here ", "two blanks here"},
        {"(playback_0)", "MIDI port"},
    };
    for (const auto& [raw, name] : rows) EXPECT_EQ(normalPortName(raw), name) << raw;
    EXPECT_EQ(jackPortName("system:midi_playback_1", "alsa_pcm:USB-Keys/midi_playback_1"), "USB Keys");
    EXPECT_EQ(normalPortName(std::string(kMaxPortName - 1, 'x') + "\xC3\xA4").size(), kMaxPortName - 1);
    EXPECT_TRUE(isOwnPort("a2j:Marlune 200Q [129] (capture): Marlune 200Q Out"));
    EXPECT_TRUE(isBridgedPort("system:midi_capture_2"));
    EXPECT_FALSE(isBridgedPort("Hydrogen-midi:RX"));
}

TEST(DeviceLists, AnIndexKeepsItsDeviceOverPluggingAndRestarts) {
    World world("A@1, B@2");
    EXPECT_EQ(world.outputs.name(0), "Built-in synthesizer");
    const std::pair<const char*, const char*> rows[] = {
        {"B@2", "A (absent), B"},
        {"C@3, B@2", "A (absent), B, C"},
        {"C@3, B@9, A@1", "A, B, C"}, // B has another address now
        {"C@3, B@9, A@1, B@4", "A, B, C, B (2)"},
        {"C@3, A@1, B@4", "A, B (absent), C, B (2)"}, // the second twin stays the second
        {"C@3, A@1, B@5, B@4", "A, B, C, B (2)"},
    };
    for (const auto& [shown, names] : rows) {
        world.jack.show(shown);
        world.poll();
        EXPECT_EQ(world.names(), names);
    }
    // Over restarts as well.
    World first("A@1, B@2, C@3");
    ASSERT_NE(first.outputs.open(3), nullptr);
    EXPECT_EQ(first.outputs.remembered(), (std::vector<std::string>{"A", "B"}));
    World second("X@1, B@5", "", first.outputs.remembered());
    EXPECT_EQ(second.names(), "A (absent), B, X");
    for (const int closed : {2, 99, -1}) EXPECT_EQ(second.outputs.open(closed), nullptr);
}

TEST(DeviceLists, APortShownTwiceIsListedOnce) {
    World world("*usb keys midi 1@j1, *Elsewhere@j2, App:in@j3, Twin@j4, *Twin@j5",
                "USB Keys MIDI 1@a1, Twin@a2");
    EXPECT_EQ(world.names(), "USB Keys MIDI 1, App:in, Twin");
    OutputPort* port = world.outputs.open(2);
    port->send({1, {0xF8}}, 0);
    EXPECT_EQ(world.jack.taken(), "j1:f8 ");
    world.jack.show("");
    EXPECT_EQ(world.poll(), "") << "the other system still has it";
    port->send({1, {0xF8}}, 0);
    EXPECT_EQ(world.alsa.taken(), "a1:f8 ");
    EXPECT_EQ(World("*Keys@j1").names(), "Keys");
}

TEST(OpenDevices, ReturnWithTheirNotesReleasedAndAreHeardAgain) {
    test::CountingSink sink;
    World world("A@1");
    OutputPort* port = world.outputs.open(2);
    ASSERT_EQ(world.outputs.open(2), port);
    world.outputs.close(port); // one user is left
    ASSERT_TRUE(world.inputs.open(1, sink));
    for (const MidiMessage& each : {noteOn(0, 60, 100), noteOn(9, 36, 90), release(0, 60), noteOn(1, 127, 1)})
        port->send(each, 0);
    world.jack.taken();
    world.jack.show("");
    EXPECT_EQ(world.poll(), "MIDI device A is gone. MIDI device A is gone."); // output and input
    EXPECT_EQ(world.poll(), "");
    EXPECT_TRUE(world.jack.sinks.empty());
    port->send(release(9, 36), 0); // gets nowhere
    world.jack.show("A@7");
    EXPECT_EQ(world.poll(), "MIDI device A is back. MIDI device A is back.");
    EXPECT_EQ(world.jack.taken(), "7:91 7f 00 7:99 24 00 ");
    port->send(noteOn(0, 61, 1), 0);
    EXPECT_EQ(world.jack.taken(), "7:90 3d 01 ");
    world.jack.sinks.at("7")->received({});
    EXPECT_EQ(sink.count, 1);
}

TEST(OpenDevices, OursAreOfferedInBothSystems) {
    test::CountingSink sink;
    World world("A@1");
    world.outputs.open(1)->send({1, {0xFA}}, 0);
    EXPECT_EQ(world.jack.taken() + world.alsa.taken(), "virtual:fa virtual:fa ");
    ASSERT_TRUE(world.inputs.open(1, sink));
    ASSERT_TRUE(world.inputs.open(0, sink)); // instead of the other
    EXPECT_EQ(world.jack.sinks.size() + world.alsa.sinks.count("virtual"), 2U);
    EXPECT_FALSE(world.inputs.open(7, sink));
    EXPECT_TRUE(world.jack.sinks.empty());
}

TEST(DeviceMemory, KeepsNamesAndSurvivesDamage) {
    const test::TemporaryFolder folder;
    const std::string path = folder.file("devices.state");
    ASSERT_TRUE(saveDeviceNames(path, {{"A", "B (2)"}, {"C"}}));
    EXPECT_EQ(loadDeviceNames(path).outputs, (std::vector<std::string>{"A", "B (2)"}));
    EXPECT_EQ(loadDeviceNames(path).inputs, std::vector<std::string>{"C"});
    std::ofstream damaged(path, std::ios::binary);
    damaged << "garbage\nout \nout A\nout A\nout \x01z\nin " << std::string(5000, 'q') << "\nout B (2)\nin C"
            << std::string(1, '\0') << "\n";
    for (int i = 0; i < 20000; ++i) damaged << "out n" << i << "\n";
    damaged.close();
    const DeviceNames names = loadDeviceNames(path);
    EXPECT_TRUE(names.inputs.empty());
    EXPECT_LE(names.outputs.size(), 128U);
    EXPECT_EQ(World("B@1, B@2", "", names.outputs).names().substr(0, 17), "A (absent), B (2)");
    EXPECT_FALSE(saveDeviceNames("/nowhere/at/all", names));
}

} // namespace
} // namespace marlune

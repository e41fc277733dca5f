#include "platform/platform.h"

#include <algorithm>

#include "platform/alsa_ports.h"
#include "platform/device_memory.h"
#include "platform/devices.h"
#include "platform/jack_client.h"
#include "platform/synth.h"

namespace marlune {

namespace {

// A user of the synthesizer.
class SynthLink : public OutputLink {
  public:
    explicit SynthLink(Synth& synth) : synth_(synth) { synth_.addUser(); }
    ~SynthLink() override { synth_.removeUser(); }
    SynthLink(const SynthLink&) = delete;
    SynthLink& operator=(const SynthLink&) = delete;
    void send(const MidiMessage& message, std::int64_t due) noexcept override { synth_.send(message, due); }
    std::int64_t latencyNs() const noexcept override { return synth_.latencyNs(); }
    bool alive() noexcept override { return true; }

  private:
    Synth& synth_;
};

} // namespace

struct Platform::Parts {
    explicit Parts(const PlatformOptions& options)
        : stateFile(options.stateFile),
          jack(options.systemPorts ? std::make_unique<JackClient>(clock) : nullptr),
          alsa(options.systemPorts ? openAlsaPorts() : nullptr),
          clocks(jack.get()),
          synth(clock, jack.get(), {options.sound, options.room}),
          names(loadDeviceNames(stateFile)),
          outputs(
              world(), [this] { return std::make_unique<SynthLink>(synth); }, names.outputs),
          inputs(world(), names.inputs) {}

    DeviceWorld world() {
        DeviceWorld world;
        if (jack) world.systems.push_back(jack.get());
        if (alsa) world.systems.push_back(alsa.get());
        world.clock = &clock;
        world.chosen = [this] { saveDeviceNames(stateFile, {outputs.remembered(), inputs.remembered()}); };
        return world;
    }

    std::string stateFile;
    SystemPlayClock clock;
    std::unique_ptr<JackClient> jack;
    std::unique_ptr<PortSystem> alsa;
    Clocks clocks;
    Synth synth;
    DeviceNames names;
    SystemOutputs outputs;
    SystemInputs inputs;
};

Platform::Platform(const PlatformOptions& options) : parts_(std::make_unique<Parts>(options)) {}

Platform::~Platform() = default;

PlayClock& Platform::clock() {
    return parts_->clock;
}
OutputDevices& Platform::outputs() {
    return parts_->outputs;
}
Clocks& Platform::clocks() {
    return parts_->clocks;
}
InputDevices& Platform::inputs() {
    return parts_->inputs;
}
bool Platform::settled() const {
    return (!parts_->jack || parts_->jack->settled()) && !parts_->synth.opening();
}
std::string Platform::soundDriver() const {
    return parts_->synth.driverName();
}

float Platform::soundPeak() {
    return parts_->synth.takeMeter().peak;
}
void Platform::muteSound(bool on) {
    parts_->synth.mute(on);
}

std::vector<std::string> Platform::poll() {
    std::vector<std::string> texts;
    if (parts_->jack) parts_->jack->poll();
    if (parts_->alsa) parts_->alsa->poll();
    parts_->synth.poll();
    parts_->outputs.poll(texts);
    parts_->inputs.poll(texts);
    if (const std::string text = parts_->synth.complaint(); !text.empty()) texts.push_back(text);
    // An instrument that is both an input and an output says so once.
    std::vector<std::string> once;
    for (const std::string& text : texts)
        if (std::find(once.begin(), once.end(), text) == once.end()) once.push_back(text);
    return once;
}

} // namespace marlune

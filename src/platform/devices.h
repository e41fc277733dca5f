// All MIDI devices of this machine in two lists that last: built-in and virtual ones first, then the
// system's.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/device_list.h"
#include "platform/device_port.h"
#include "platform/port_system.h"

namespace marlune {

inline constexpr char kSynthName[] = "Built-in synthesizer";

// What both directions share. User-interface thread.
struct DeviceWorld {
    std::vector<PortSystem*> systems; // the one to be preferred first; outlive the lists
    PlayClock* clock = nullptr;
    std::function<void()> chosen; // a list remembers something new; may be empty
};

// Built-in ones (index 0 the synthesizer, 1 our virtual port) always open. User-interface thread.
class SystemOutputs : public OutputDevices {
  public:
    // openSynth: a connection to the built-in synthesizer.
    SystemOutputs(DeviceWorld world, std::function<std::unique_ptr<OutputLink>()> openSynth,
                  const std::vector<std::string>& remembered);

    int count() override { return list_.count(); }
    std::string name(int index) override { return list_.name(index); }

    // Null for an absent device.
    OutputPort* open(int index) override;
    void close(OutputPort* port) override;

    // About once a second. Appends what happened to open devices ("MIDI device X is gone.", "... is back.")
    // and connects returned ones again. True when the list changed.
    bool poll(std::vector<std::string>& texts);

    std::vector<std::string> remembered() const { return list_.remembered(); }

  private:
    struct Open {
        DevicePort port;
        int users = 0;
        bool gone = false;
    };

    bool refresh();
    std::unique_ptr<OutputLink> connect(int index);

    DeviceWorld world_;
    std::function<std::unique_ptr<OutputLink>()> openSynth_;
    DeviceList list_;
    std::map<int, Open> open_; // by index; its ports keep their place in memory
};

// Index 0 is our virtual port, which always opens. One device at a time: open() closes the former one.
// User-interface thread.
class SystemInputs : public InputDevices {
  public:
    SystemInputs(DeviceWorld world, const std::vector<std::string>& remembered);

    int count() override { return list_.count(); }
    std::string name(int index) override { return list_.name(index); }
    bool open(int index, InputSinks& sinks) override;
    void close() override;
    bool poll(std::vector<std::string>& texts);
    std::vector<std::string> remembered() const { return list_.remembered(); }

  private:
    bool refresh();
    bool connect();

    DeviceWorld world_;
    DeviceList list_;
    int index_ = -1; // the open device
    InputSinks* sinks_ = nullptr;
    std::vector<std::unique_ptr<InputLink>> links_; // several for the virtual port; empty while it is gone
};

} // namespace marlune

#include "platform/devices.h"

#include <algorithm>

namespace marlune {

namespace {

// Sends to the virtual ports of all systems.
class VirtualOutputs : public OutputLink {
  public:
    explicit VirtualOutputs(const std::vector<PortSystem*>& systems) {
        for (PortSystem* system : systems) links_.push_back(&system->virtualOutput());
    }
    void send(const MidiMessage& message, std::int64_t due) noexcept override {
        for (OutputLink* link : links_) link->send(message, due);
    }
    std::int64_t latencyNs() const noexcept override {
        return links_.empty() ? 0 : links_.front()->latencyNs();
    }
    bool alive() noexcept override { return true; }

  private:
    std::vector<OutputLink*> links_;
};

std::string goneText(const std::string& name) {
    return "MIDI device " + name + " is gone.";
}
std::string backText(const std::string& name) {
    return "MIDI device " + name + " is back.";
}

} // namespace

SystemOutputs::SystemOutputs(DeviceWorld world, std::function<std::unique_ptr<OutputLink>()> openSynth,
                             const std::vector<std::string>& remembered)
    : world_(std::move(world)),
      openSynth_(std::move(openSynth)),
      list_({kSynthName, kVirtualOutName}, remembered) {
    refresh();
}

bool SystemOutputs::refresh() {
    std::vector<std::vector<PortSystem::Port>> seen;
    for (PortSystem* system : world_.systems) seen.push_back(system->outputs());
    return list_.update(seen);
}

std::unique_ptr<OutputLink> SystemOutputs::connect(int index) {
    if (index == 0) return openSynth_();
    if (index == 1) return std::make_unique<VirtualOutputs>(world_.systems);
    for (const DeviceList::Place& place : list_.places(index))
        if (auto link = world_.systems[place.system]->openOutput(place.address)) return link;
    return nullptr;
}

OutputPort* SystemOutputs::open(int index) {
    if (index < 0 || index >= count()) return nullptr;
    if (const auto found = open_.find(index); found != open_.end()) {
        ++found->second.users;
        return &found->second.port;
    }
    auto link = connect(index);
    if (!link) return nullptr;
    if (list_.choose(index) && world_.chosen) world_.chosen();
    Open& device = open_[index];
    device.users = 1;
    device.port.attach(std::move(link), world_.clock->nowNs());
    return &device.port;
}

void SystemOutputs::close(OutputPort* port) {
    const auto found =
        std::find_if(open_.begin(), open_.end(), [&](const auto& each) { return &each.second.port == port; });
    if (found != open_.end() && --found->second.users == 0) open_.erase(found);
}

bool SystemOutputs::poll(std::vector<std::string>& texts) {
    const bool changed = refresh();
    for (auto& [index, device] : open_) {
        if (list_.isFixed(index)) continue;
        if (list_.present(index) && device.port.alive()) continue;
        device.port.detach();
        // A device that another system still shows, or that was away for a moment, goes on without a word.
        device.port.attach(connect(index), world_.clock->nowNs());
        const bool gone = !device.port.attached();
        if (gone != device.gone)
            texts.push_back(gone ? goneText(list_.plainName(index)) : backText(list_.plainName(index)));
        device.gone = gone;
    }
    return changed;
}

SystemInputs::SystemInputs(DeviceWorld world, const std::vector<std::string>& remembered)
    : world_(std::move(world)), list_({kVirtualInName}, remembered) {
    refresh();
}

bool SystemInputs::refresh() {
    std::vector<std::vector<PortSystem::Port>> seen;
    for (PortSystem* system : world_.systems) seen.push_back(system->inputs());
    return list_.update(seen);
}

bool SystemInputs::connect() {
    links_.clear();
    if (list_.isFixed(index_)) {
        for (std::size_t i = 0; i < world_.systems.size() && i < kInputLinks; ++i)
            if (auto link = world_.systems[i]->openVirtualInput(sinks_->link(static_cast<int>(i))))
                links_.push_back(std::move(link));
        return true;
    }
    for (const DeviceList::Place& place : list_.places(index_)) {
        auto link = world_.systems[place.system]->openInput(place.address, sinks_->link(0));
        if (!link) continue;
        links_.push_back(std::move(link));
        return true;
    }
    return false;
}

bool SystemInputs::open(int index, InputSinks& sinks) {
    close();
    if (index < 0 || index >= count()) return false;
    index_ = index;
    sinks_ = &sinks;
    if (!connect()) {
        close();
        return false;
    }
    if (list_.choose(index) && world_.chosen) world_.chosen();
    return true;
}

void SystemInputs::close() {
    links_.clear();
    index_ = -1;
    sinks_ = nullptr;
}

bool SystemInputs::poll(std::vector<std::string>& texts) {
    const bool changed = refresh();
    if (index_ < 0 || list_.isFixed(index_)) return changed;
    if (!links_.empty() && list_.present(index_) && links_.front()->alive()) return changed;
    const bool wasThere = !links_.empty();
    const bool there = connect();
    if (wasThere != there)
        texts.push_back(there ? backText(list_.plainName(index_)) : goneText(list_.plainName(index_)));
    return changed;
}

} // namespace marlune

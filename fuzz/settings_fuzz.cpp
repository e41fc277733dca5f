// Both configuration files and the MIDI input, one after the other: the first 518 bytes are marlune.cfg, then
// comes labels.cfg up to a zero byte, and the rest arrives at the input as a stream of MIDI bytes. Whatever
// marlune.cfg holds is carried, and no illegal byte goes out.
#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "commands/panel_events.h"
#include "edit/song_tools.h"
#include "midi/midi_input.h"
#include "panel/key_slider.h"
#include "setup/config_file.h"
#include "song/mode_switch.h"
#include "support/test_program.h"
#include "transport/transport.h"

namespace marlune {
namespace {

// Cuts a byte stream into messages the way a device driver does: three bytes at a time from a status byte on.
void deliver(test::TestProgram& program, const std::uint8_t* bytes, std::size_t size) {
    for (std::size_t i = 0; i < size && program.devices.input != nullptr; ++i) {
        MidiMessage message;
        for (; message.size < 3 && i + message.size < size; ++message.size) {
            message.bytes[message.size] = bytes[i + message.size];
        }
        const int length = midiMessageLength(message.bytes[0]);
        if (length > 0 && length < message.size) message.size = static_cast<std::uint8_t>(length);
        program.devices.input->received(message);
        midiArrived();
    }
}

} // namespace
} // namespace marlune

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace marlune;
    static const test::TemporaryFolder folder;
    const std::uint8_t* const end = data + size;
    const std::uint8_t* const labels = data + std::min<std::size_t>(size, 518);
    const std::uint8_t* const stream = std::find(labels, end, std::uint8_t{0});
    test::writeBytes(folder.file("marlune.cfg"), {data, labels});
    test::writeBytes(folder.file("labels.cfg"), {labels, stream});
    test::Options options;
    options.configFolder = folder.path;
    options.recorded = false;
    test::TestProgram program(options);
    const auto count = static_cast<std::size_t>(end - stream);
    deliver(program, stream, count / 2);
    mnuToolsInit_Click();
    Check1_Click();
    recButton_Click();
    playButton();
    deliver(program, stream + count / 2, count - count / 2);
    program.play(2);
    playButton();
    for (const std::string& message : program.devices.ports[0].sent) {
        for (std::size_t i = 3; i < message.size(); i += 3) {
            if (message[i] >= '8') std::abort();
        }
    }
    saveGlobalConfig();
    auto saved = test::readBytes(folder.file("marlune.cfg"));
    if (labels - data < 518) return 0;
    // The device indices were fitted to the list on purpose.
    for (const int at : {494, 495, 496, 497, 514, 515}) saved[at] = data[at];
    if (!std::equal(saved.begin(), saved.end(), data, labels)) std::abort();
    return 0;
}

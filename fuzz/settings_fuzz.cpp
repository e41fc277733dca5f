// Both configuration files and the MIDI input, one after the other: the first 518 bytes are marlune.cfg, then
// comes labels.cfg up to a zero byte, and the rest arrives at the input as a stream of MIDI bytes. Whatever
// marlune.cfg holds is carried, and no illegal byte goes out. Every input is loaded and takes the stream; a
// program of its own, started, played and saved, is for every thousandth.
#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>

#include "commands/panel_events.h"
#include "edit/song_tools.h"
#include "edit/undo_history.h"
#include "midi/midi_input.h"
#include "panel/key_slider.h"
#include "project/global_config.h"
#include "setup/config_file.h"
#include "song/mode_switch.h"
#include "support/test_program.h"
#include "transport/transport.h"
#include "turns.h"

namespace marlune {
namespace {

using fuzz::require;
constexpr int kDeviceBytes[] = {494, 495, 496, 497, 514, 515}; // fitted to the list of devices on purpose

const test::TemporaryFolder& folder() {
    static const test::TemporaryFolder only;
    return only;
}

// Cuts a byte stream into messages the way a device driver does: three bytes at a time from a status byte on.
// together: the program is busy and reads them all at once.
void deliver(test::TestProgram& program, const std::uint8_t* bytes, std::size_t size, bool together = false) {
    for (std::size_t i = 0; i < size && program.devices.input != nullptr; ++i) {
        MidiMessage message;
        for (; message.size < 3 && i + message.size < size; ++message.size) {
            message.bytes[message.size] = bytes[i + message.size];
        }
        const int length = midiMessageLength(message.bytes[0]);
        if (length > 0 && length < message.size) message.size = static_cast<std::uint8_t>(length);
        program.devices.input->received(message);
        if (!together) midiArrived();
    }
    midiArrived();
}

void requireLegalOutput(test::TestProgram& program) {
    for (const std::string& message : program.devices.ports[0].sent)
        for (std::size_t i = 3; i < message.size(); i += 3) require(message[i] < '8');
    program.devices.ports[0].sent.clear();
}

std::unique_ptr<test::TestProgram> started(const std::string& configuration) {
    test::Options options;
    options.configFolder = configuration;
    options.recorded = false;
    return std::make_unique<test::TestProgram>(options);
}

void wholeProgram(const std::uint8_t* told, std::size_t size, const std::uint8_t* stream, std::size_t count) {
    const auto program = started(folder().path);
    deliver(*program, stream, count / 2);
    mnuToolsInit_Click();
    Check1_Click();
    recButton_Click();
    playButton();
    deliver(*program, stream + count / 2, count - count / 2);
    program->play(2);
    playButton();
    requireLegalOutput(*program);
    saveGlobalConfig();
    auto saved = test::readBytes(folder().file("marlune.cfg"));
    if (size < sizeof config) return;
    for (const int at : kDeviceBytes) saved[at] = told[at];
    require(std::equal(saved.begin(), saved.end(), told, told + size));
}

} // namespace
} // namespace marlune

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace marlune;
    static fuzz::Turn whole(1000), fresh(500);
    static test::TestProgram* program =
        nullptr; // for many inputs; the last one is left to the end of the process
    const std::uint8_t* const end = data + size;
    const std::uint8_t* const labels = data + std::min(size, sizeof config);
    const std::uint8_t* const stream = std::find(labels, end, std::uint8_t{0});
    const auto count = static_cast<std::size_t>(end - stream);
    test::writeBytes(folder().file("marlune.cfg"), {data, labels});
    test::writeBytes(folder().file("labels.cfg"), {labels, stream});
    if (whole.due()) {
        delete std::exchange(program, nullptr);
        wholeProgram(data, static_cast<std::size_t>(labels - data), stream, count);
    } else {
        if (fresh.due() || program == nullptr) {
            delete program;
            program = started("").release();
            beginEdit(); // left open: what each message has changed is not looked for
        }
        setConfigFolder(folder().path);
        const bool loaded = loadGlobalConfig();
        require(!loaded || size < sizeof config || std::memcmp(&config, data, sizeof config) == 0);
        setConfigFolder("");
        deliver(*program, stream, count, true);
        requireLegalOutput(*program);
    }
    return 0;
}

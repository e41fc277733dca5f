// The dialogs of the Options and Tools menus as they open, and what each says, saves and shows.
#include "support/program_test.h"

namespace marlune {
namespace {

struct SetupSession : ProgramTest {
    SetupSession() { setConfigFolder(folder.path); }

    // The settings that differ from those of a fresh program.
    std::string settings() const {
        std::string text;
        const auto tell = [&text](const std::string& name, int value, int was) {
            if (value != was) text += name + " " + std::to_string(value) + " ";
        };
        const auto tellAll = [&](const char* name, const auto& values, const auto& were) {
            for (std::size_t i = 0; i < values.size(); ++i)
                tell(name + std::to_string(i), values[i], were[i]);
        };
        tellAll("controller", config.outputController, fresh.outputController);
        tellAll("note", config.drumNoteDefault, fresh.drumNoteDefault);
        tellAll("channel", config.moduleChannel, fresh.moduleChannel);
        tellAll("base", config.moduleBaseNote, fresh.moduleBaseNote);
        tellAll("velocity", config.moduleVelocity, fresh.moduleVelocity);
        tellAll("map", config.controllerMap, fresh.controllerMap);
        tell("control", config.controlChannel, fresh.controlChannel);
        tell("select", config.selectBase, fresh.selectBase);
        tell("step", config.stepBase, fresh.stepBase);
        tell("phrase", config.phraseChannel, fresh.phraseChannel);
        tell("in", config.midiInDevice, fresh.midiInDevice);
        tell("out", config.midiOutDevice, fresh.midiOutDevice);
        tell("sync", config.syncOutDevice, fresh.syncOutDevice);
        tell("offset", config.syncOffset, fresh.syncOffset);
        tell("bar", config.statusBarVisible, fresh.statusBarVisible);
        return text;
    }

    // The same of the file.
    std::string saved() const {
        const auto bytes = readBytes(folder.file("marlune.cfg"));
        if (bytes.size() != sizeof config) return "none";
        const GlobalConfig now = config;
        std::memcpy(&config, bytes.data(), sizeof config);
        std::string text = settings();
        config = now;
        return text;
    }

    GlobalConfig fresh = config;
};

// Channels on which the input takes notes, controllers and note-offs, and the system messages.
std::string open() {
    std::string text;
    for (const int status : {0x90, 0xB0, 0x80, 0xF0}) {
        for (int s = status; s < status + 16; ++s)
            if (!MIDIIn1.isBlocked(s)) text += " " + std::to_string(s - status + 1);
        text += ",";
    }
    return text;
}

TEST_F(SetupSession, OutputDialog) {
    expectSession(program);
    EXPECT_EQ(settings(),
              "controller5 71 controller11 72 controller12 80 controller19 81 note0 30 note6 31 "
              "channel0 2 channel1 3 channel2 11 base0 50 base1 51 velocity0 40 velocity1 41 ");
    EXPECT_EQ(saved(), settings());
}

TEST_F(SetupSession, InputDialog) {
    expectSession(program);
    EXPECT_EQ(settings(), "map12 -1 map31 -1 map71 0 map72 19 control 4 select 61 step 35 phrase 6 ");
    EXPECT_EQ(saved(), settings());
    EXPECT_EQ(open(), " 1 2 7 10, 5,, 9 15,");
}

TEST_F(SetupSession, DeviceDialogAndLabels) {
    config.syncOffset = 3;
    expectSession(program);
    EXPECT_EQ(settings() + "saved " + saved(), "in 1 out 1 offset -2 bar 0 saved in 1 out 1 offset -2 ");
    EXPECT_EQ(open(), " 1 2 10, 1,, 9 15,");
}

} // namespace
} // namespace marlune

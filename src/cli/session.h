// The program without a window, brought up around one of the two engines.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "cli/console_shell.h"
#include "cli/wire_file.h"
#include "engine/engine_runner.h"
#include "engine/virtual_engine.h"
#include "platform/platform.h"
#include "util/stop_watch.h"

namespace marlune {

struct SessionOptions {
    bool live = false;            // real time and real devices; else virtual time
    std::string configFolder;     // where marlune.cfg is read from; "" keeps the defaults
    std::string device;           // output by name or index; "" for the configured one
    OutputPort* render = nullptr; // virtual time: everything goes there
    bool log = false;             // keep what is played in `log`; it grows with every message
};

class Session {
  public:
    explicit Session(const SessionOptions& options);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // What is wrong with the options (an unknown device), or empty.
    [[nodiscard]] const std::string& error() const { return error_; }

    // Plays from the present position until so many bars have sounded to their end, or a signal came.
    // each: called after every batch of messages.
    void play(int bars, const std::function<void()>& each);

    // Real time: handles what the engine and the MIDI input announce within so many ms.
    void runEvents(int ms);

    // Real time: notices devices that came or went, about once a second; tells of them on stderr.
    void lookAfterDevices();

    ConsoleShell shell;
    WireFile log;
    [[nodiscard]] std::int64_t virtualNs() const { return virtual_ ? virtual_->nowNs() : 0; }

  private:
    class RenderDevices;
    void startLive(const SessionOptions& options);
    void chooseDevice(const std::string& device);
    void waitForConnections();
    void playLive(const std::function<void()>& each);

    std::string error_;
    bool logs_ = false;
    std::unique_ptr<Platform> platform_;
    std::unique_ptr<RenderDevices> renderDevices_;
    std::unique_ptr<Engine> live_;
    std::unique_ptr<VirtualEngine> virtual_;
    PlaybackEngine* engine_ = nullptr;
    int wake_ = -1;
    CStopWatch sinceDevicePoll_;
};

} // namespace marlune

#include "platform/synth.h"

#include <dirent.h>
#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>

namespace marlune {

namespace {

// Whether a sound server may be there: trying its driver costs a synthesizer, looking for its socket nothing.
bool hasSocket(const char* variable, const char* name) {
    if (std::getenv(variable) != nullptr) return true;
    const char* folder = std::getenv("XDG_RUNTIME_DIR");
    const std::string runtime = folder != nullptr ? folder : "/run/user/" + std::to_string(getuid());
    return access((runtime + name).c_str(), F_OK) == 0;
}

struct SoundServer {
    const char* driver;
    bool (*mayRun)();
};
constexpr SoundServer kServers[] = {
    {"pipewire", [] { return hasSocket("PIPEWIRE_REMOTE", "/pipewire-0"); }},
    {"pulseaudio", [] { return hasSocket("PULSE_SERVER", "/pulse/native"); }},
};

constexpr int kUsualRate = 48000;
constexpr int kPeriod = 256;
constexpr int kPeriods = 4;

// How late the engine thread may be without moving an event.
constexpr std::int64_t kLookAheadNs = 5'000'000;

// A distance between the audio device's time and ours beyond which the two are joined anew.
constexpr std::int64_t kTearNs = 40'000'000;

// How slowly the device's time follows ours, in callbacks.
constexpr std::int64_t kSlowness = 2000;

constexpr int kIdlePolls = 5;
constexpr int kStalledPolls = 4;

void ignoreAlsa(const char* /*file*/, int /*line*/, const char* /*function*/, int /*error*/,
                const char* /*format*/, ...) {}

// The sound library writes to stderr by itself; it is here only if FluidSynth brought it along.
void silenceAlsa() {
    using Handler = void (*)(const char*, int, const char*, int, const char*, ...);
    if (void* found = dlsym(RTLD_DEFAULT, "snd_lib_error_set_handler"))
        reinterpret_cast<int (*)(Handler)>(found)(ignoreAlsa);
}

bool hasSoundCard() {
    DIR* folder = opendir("/dev/snd");
    if (folder == nullptr) return false;
    bool found = false;
    while (const dirent* entry = readdir(folder)) { // pcmC0D0p: playback
        const std::size_t length = std::strlen(entry->d_name);
        found = found || (std::strncmp(entry->d_name, "pcm", 3) == 0 && entry->d_name[length - 1] == 'p');
    }
    closedir(folder);
    return found;
}

} // namespace

Synth::Synth(PlayClock& clock, JackClient* jack, bool sound) : clock_(clock), jack_(jack), sound_(sound) {
    silenceFluidSynth();
    silenceAlsa();
}

Synth::~Synth() {
    stop();
}

void Synth::addUser() {
    ++users_;
    idlePolls_ = 0;
    if (!running_) start();
}

void Synth::removeUser() {
    users_ = std::max(0, users_ - 1);
}

bool Synth::onJack() const {
    return running_ && !driver_;
}

void Synth::poll() {
    if (users_ == 0) {
        if (running_ && ++idlePolls_ > kIdlePolls) stop();
        return;
    }
    const std::uint32_t callbacks = callbacks_.load();
    stalledPolls_ = running_ && callbacks != seenCallbacks_ ? 0 : stalledPolls_ + 1;
    seenCallbacks_ = callbacks;
    const bool online = jack_ != nullptr && jack_->online();
    const bool serverLeft = onJack() && (!online || jack_->sampleRate() != time_.rate);
    const bool serverCame = !running_ && online;
    if (!serverLeft && !serverCame && stalledPolls_ < kStalledPolls) return;
    stop();
    start();
}

void Synth::start() {
    stalledPolls_ = 0;
    if (!sound_ || startJack()) return;
    for (const SoundServer& server : kServers)
        if (server.mayRun() && startDriver(server.driver)) return;
    if (hasSoundCard()) startDriver("alsa");
}

void Synth::stop() {
    if (onJack() && jack_ != nullptr) jack_->setAudio(nullptr);
    running_ = false;
    driver_ = nullptr;
    driverName_ = "";
    ring_.clear();
}

void Synth::prepare(int sampleRate) {
    core_ = std::make_unique<SynthCore>(sampleRate); // a fresh one: nothing sounds on from before
    time_.rate = sampleRate;
    frame_ = -1;
    latency_ = 0;
    taken_ = SynthCore::kBlock;
    ring_.clear();
    running_ = true;
}

bool Synth::startJack() {
    if (jack_ == nullptr || !jack_->online()) return false;
    prepare(jack_->sampleRate());
    if (core_->ready() && jack_->setAudio(this))
        driverName_ = "jack";
    else
        stop();
    return running_;
}

bool Synth::startDriver(const char* name) {
    settings_.reset(new_fluid_settings());
    if (fluid_settings_setstr(settings_.get(), "audio.driver", name) != FLUID_OK) return false;
    fluid_settings_setnum(settings_.get(), "synth.sample-rate", kUsualRate);
    fluid_settings_setint(settings_.get(), "audio.period-size", kPeriod);
    fluid_settings_setint(settings_.get(), "audio.periods", kPeriods);
    fluid_settings_setstr(settings_.get(), "audio.sample-format", "float");
    prepare(kUsualRate);
    if (core_->ready()) driver_.reset(new_fluid_audio_driver2(settings_.get(), onAudio, this));
    if (driver_)
        driverName_ = name;
    else
        stop();
    return driver_ != nullptr;
}

void Synth::send(const MidiMessage& message, std::int64_t due) noexcept {
    if (running_.load(std::memory_order_relaxed)) ring_.push({due, message});
}

// --- Audio thread ---

int Synth::onAudio(void* self, int frames, int /*effects*/, float** /*effect*/, int outputs, float** output) {
    if (outputs >= 2) static_cast<Synth*>(self)->fill(frames, output[0], output[1]);
    return FLUID_OK;
}

void Synth::fill(int frames, float* left, float* right) noexcept {
    callbacks_.fetch_add(1, std::memory_order_relaxed);
    if (!core_) return;
    // Devices ask in bursts, and their clocks drift: the frames' time follows ours slowly, so that the
    // distances between events stay even.
    const std::int64_t now = clock_.nowNs();
    const std::int64_t apart = frame_ < 0 ? 0 : now - time_.nsAt(frame_);
    if (frame_ < 0 || std::abs(apart) > kTearNs) {
        frame_ = 0;
        time_.base = now;
    } else {
        time_.base += apart / kSlowness;
    }
    // How far the device runs ahead of the events: the rest of a burst, a callback, a block.
    const std::int64_t ahead = std::max<std::int64_t>(0, time_.nsAt(frame_) - now) + kLookAheadNs;
    latency_ = std::max(latency_, frames + 2 * SynthCore::kBlock + ahead * time_.rate / FrameTime::kSecond);
    for (int done = 0; done < frames;) {
        if (taken_ == SynthCore::kBlock) nextBlock();
        const int count = std::min(frames - done, SynthCore::kBlock - taken_);
        std::copy_n(left_.data() + taken_, count, left + done);
        std::copy_n(right_.data() + taken_, count, right + done);
        taken_ += count;
        done += count;
        frame_ += count;
    }
}

// The events of a block are needed one block before its sound, see SynthCore::play().
void Synth::nextBlock() noexcept {
    const std::int64_t start = frame_ + SynthCore::kBlock;
    while (const StampedMessage* next = ring_.front()) {
        std::int64_t offset = time_.frameAt(next->due) + latency_ - start;
        if (offset > time_.rate) offset = 0; // nobody plans a second ahead: a stray stamp
        if (offset >= SynthCore::kBlock) break;
        core_->play(next->message, static_cast<int>(std::max<std::int64_t>(0, offset)));
        ring_.pop();
    }
    core_->render(left_.data(), right_.data());
    taken_ = 0;
}

} // namespace marlune

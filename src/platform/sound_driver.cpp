#include "platform/sound_driver.h"

#include <dirent.h>
#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

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

constexpr int kPeriod = 256;
constexpr int kPeriods = 4;

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

std::vector<const char*> candidates() {
    std::vector<const char*> drivers;
    for (const SoundServer& server : kServers)
        if (server.mayRun()) drivers.push_back(server.driver);
    if (hasSoundCard()) drivers.push_back("alsa");
    return drivers;
}

} // namespace

SoundDriver::SoundDriver() {
    silenceAlsa();
}

SoundDriver::Sound::~Sound() {
    delete_fluid_audio_driver(driver);
    delete_fluid_settings(settings);
}

int SoundDriver::onAudio(void* self, int frames, int /*effects*/, float** /*effect*/, int outputs,
                         float** output) {
    auto& sound = *static_cast<Sound*>(self);
    sound.inside = true;
    AudioSource* source = sound.source;
    if (source != nullptr && outputs >= 2) source->fill(frames, output[0], output[1]);
    sound.inside = false;
    return FLUID_OK;
}

// On a thread of its own.
std::shared_ptr<SoundDriver::Sound> SoundDriver::make(const std::shared_ptr<Sound>& sound) {
    for (const char* name : candidates()) {
        sound->settings = new_fluid_settings();
        if (fluid_settings_setstr(sound->settings, "audio.driver", name) == FLUID_OK) {
            fluid_settings_setnum(sound->settings, "synth.sample-rate", kRate);
            fluid_settings_setint(sound->settings, "audio.period-size", kPeriod);
            fluid_settings_setint(sound->settings, "audio.periods", kPeriods);
            fluid_settings_setstr(sound->settings, "audio.sample-format", "float");
            sound->driver = new_fluid_audio_driver2(sound->settings, onAudio, sound.get());
        }
        sound->name = name;
        if (sound->driver != nullptr) return sound;
        delete_fluid_settings(sound->settings);
        sound->settings = nullptr;
    }
    sound->name = "";
    return sound;
}

void SoundDriver::open(AudioSource& source) {
    close();
    if (!last_.expired() || candidates().empty()) return;
    sound_ = std::make_shared<Sound>();
    sound_->source = &source;
    last_ = sound_;
    since_ = std::chrono::steady_clock::now();
    // Who is discarded goes on that thread: the end of a driver may hang as well.
    awaited_.start([sound = sound_] { return make(sound); }, [](const std::shared_ptr<Sound>&) {});
}

void SoundDriver::close() {
    if (!sound_) return;
    look();
    sound_->source = nullptr;
    while (sound_->inside) std::this_thread::yield();
    awaited_.abandon();
    if (opened_) runBounded([sound = std::move(sound_)]() mutable { sound = nullptr; }, kEndPatience);
    sound_ = nullptr;
    opened_ = false;
}

void SoundDriver::look() {
    if (awaited_.take(std::chrono::milliseconds(0))) opened_ = true;
}

bool SoundDriver::opening() {
    look();
    return awaited_.underWay() && std::chrono::steady_clock::now() - since_ < kPatience;
}

const char* SoundDriver::name() {
    look();
    return opened_ ? sound_->name : "";
}

} // namespace marlune

#include "platform/sound_file.h"

#include <sndfile.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace marlune {

namespace {

// A symbolic link keeps pointing at its target.
std::string whereItLeads(const std::string& path) {
    std::error_code error;
    const auto target = std::filesystem::weakly_canonical(path, error);
    return error ? path : target.string();
}

} // namespace

struct SoundFile::Handle {
    explicit Handle(SNDFILE* opened) : file(opened) {}
    ~Handle() { sf_close(file); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    SNDFILE* file;
};

SoundFile::SoundFile(const std::string& path, const SoundFormat& format)
    : path_(whereItLeads(path)), partPath_(path_ + ".XXXXXX") {
    SF_INFO info{};
    info.samplerate = format.sampleRate;
    info.channels = 2;
    info.format = SF_FORMAT_WAV | (format.bits == 24 ? SF_FORMAT_PCM_24 : SF_FORMAT_PCM_16);
    const int descriptor = mkstemp(partPath_.data());
    if (descriptor < 0) return;
    const mode_t mask = umask(0);
    umask(mask);
    fchmod(descriptor, 0666 & ~mask);
    SNDFILE* file = sf_open_fd(descriptor, SFM_WRITE, &info, SF_TRUE);
    ok_ = file != nullptr;
    if (!ok_) std::remove(partPath_.c_str());
    if (!ok_) return;
    sf_command(file, SFC_SET_CLIPPING, nullptr, SF_TRUE);
    handle_ = std::make_unique<Handle>(file);
}

SoundFile::~SoundFile() {
    if (!handle_) return;
    handle_.reset();
    std::remove(partPath_.c_str());
}

bool SoundFile::write(const std::vector<float>& samples) {
    const auto count = static_cast<sf_count_t>(samples.size());
    ok_ = ok_ && sf_write_float(handle_->file, samples.data(), count) == count;
    return ok_;
}

bool SoundFile::finish() {
    if (!handle_) return false;
    sf_write_sync(handle_->file);
    ok_ = ok_ && sf_error(handle_->file) == SF_ERR_NO_ERROR;
    if (!ok_) return false; // the destructor clears away
    handle_.reset();
    ok_ = std::rename(partPath_.c_str(), path_.c_str()) == 0;
    if (!ok_) std::remove(partPath_.c_str());
    return ok_;
}

} // namespace marlune

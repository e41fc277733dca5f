// A sound file that grows while it is rendered.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace marlune {

struct SoundFormat {
    int sampleRate = 44100;
    int bits = 16; // 16 or 24
};

// RIFF WAVE, two channels in turn. Written beside the file of that name and put in its place by finish():
// until then, and where anything failed, that one is as it was before. One thread.
class SoundFile {
  public:
    SoundFile(const std::string& path, const SoundFormat& format);
    ~SoundFile(); // unfinished: nothing stays
    SoundFile(const SoundFile&) = delete;
    SoundFile& operator=(const SoundFile&) = delete;

    // False where the disk refuses, from then on for good; also where the file could not be made at all.
    bool write(const std::vector<float>& samples);
    bool finish();

    bool ok() const { return ok_; }

  private:
    struct Handle;
    std::string path_, partPath_;
    std::unique_ptr<Handle> handle_;
    bool ok_ = false;
};

} // namespace marlune

// What an audio device asks for its next frames.
#pragma once

namespace marlune {

class AudioSource {
  public:
    // The device's thread; real-time safe. Writes all frames.
    virtual void fill(int frames, float* left, float* right) noexcept = 0;

  protected:
    ~AudioSource() = default;
};

} // namespace marlune

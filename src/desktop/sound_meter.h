// The built-in synthesizer in the status bar: a mute button, a level, an overload lamp. User-interface
// thread.
#pragma once

#include <QTimer>
#include <QWidget>
#include <functional>

class QToolButton;

namespace marlune {

// What the meter looks at.
struct SoundSource {
    std::function<float()> peak; // the largest value since the last call; 1 is full scale, beyond is overload
    std::function<void(bool)> mute;
    std::function<bool()> sounding; // whether there is an audio device
};

class SoundMeter final : public QWidget {
    Q_OBJECT

  public:
    static constexpr int kLampMs = 2000; // how long the lamp tells of an overload
    static constexpr int kLookMs = 40;

    explicit SoundMeter(const SoundSource& source);

    void look(int ms); // as much time has passed; the timer calls it

    // What is shown: the level in dB of full scale, kSilence at the least.
    [[nodiscard]] double level() const { return level_; }
    [[nodiscard]] bool overloaded() const { return lampMs_ > 0; }
    [[nodiscard]] QToolButton* muteButton() const { return mute_; }

    static constexpr double kSilence = -48;

    [[nodiscard]] QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    void mute(bool on);
    void tell();

    SoundSource source_;
    QToolButton* mute_;
    QTimer timer_;
    double level_ = kSilence;
    int lampMs_ = 0;
    bool sounding_ = false;
};

} // namespace marlune

#include "support/sound_measures.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <complex>
#include <numbers>
#include <span>

namespace marlune::test {

namespace {

using Complex = std::complex<double>;

constexpr std::size_t kWindow = 2048;

void transform(std::span<Complex> x) {
    const std::size_t half = x.size() / 2;
    if (half == 0) return;
    std::vector<Complex> even(half), odd(half);
    for (std::size_t i = 0; i < half; ++i) {
        even[i] = x[2 * i];
        odd[i] = x[2 * i + 1];
    }
    transform(even);
    transform(odd);
    for (std::size_t i = 0; i < half; ++i) {
        const Complex turned =
            std::polar(1.0, -std::numbers::pi * static_cast<double>(i) / static_cast<double>(half)) * odd[i];
        x[i] = even[i] + turned;
        x[i + half] = even[i] - turned;
    }
}

std::span<const float> part(const Sound& sound, int rate, double from, double to) {
    const auto first = static_cast<std::size_t>(from * rate), last = static_cast<std::size_t>(to * rate);
    return std::span(sound).subspan(2 * first, 2 * (last - first));
}

// Magnitudes up to half the rate, through a Hann window.
std::vector<double> spectrum(std::span<const float> frames) {
    const std::size_t count = frames.size() / 2;
    std::vector<Complex> x(std::bit_ceil(count));
    for (std::size_t i = 0; i < count; ++i) {
        const double turn = 2 * std::numbers::pi * static_cast<double>(i) / static_cast<double>(count);
        x[i] = (double{frames[2 * i]} + double{frames[2 * i + 1]}) * (0.5 - 0.5 * std::cos(turn));
    }
    transform(x);
    std::vector<double> sizes(x.size() / 2);
    std::transform(x.begin(), x.begin() + static_cast<std::ptrdiff_t>(sizes.size()), sizes.begin(),
                   [](const Complex& value) { return std::abs(value); });
    return sizes;
}

} // namespace

double levelOf(const Sound& sound, int rate, double from, double to) {
    const auto frames = part(sound, rate, from, to);
    double energy = 1e-20;
    for (const float x : frames) energy += double{x} * x;
    return 10 * std::log10(energy / static_cast<double>(frames.size()));
}

double spectralCentre(const Sound& sound, int rate, double from, double to) {
    const auto frames = part(sound, rate, from, to);
    double weighted = 0, total = 1e-20;
    for (std::size_t at = 0; at + 2 * kWindow <= frames.size(); at += kWindow) {
        const auto sizes = spectrum(frames.subspan(at, 2 * kWindow));
        for (std::size_t i = 0; i < sizes.size(); ++i) {
            weighted += sizes[i] * static_cast<double>(i);
            total += sizes[i];
        }
    }
    return weighted / total * rate / kWindow;
}

double energyAbove(const Sound& sound, int rate, double hertz) {
    const auto sizes = spectrum(sound);
    double above = 0, total = 1e-20;
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        total += sizes[i] * sizes[i];
        if (static_cast<double>(i) * rate / 2 / static_cast<double>(sizes.size()) > hertz)
            above += sizes[i] * sizes[i];
    }
    return above / total;
}

double truePeak(const Sound& sound) {
    constexpr int kSide = 12; // samples of the sinc on either side
    const auto count = static_cast<int>(sound.size() / 2);
    double peak = 1e-10;
    for (int phase = 0; phase < 4; ++phase) {
        double taps[2 * kSide];
        for (int k = 0; k < 2 * kSide; ++k) {
            const double t = k - kSide + 1 - phase / 4.0, x = std::numbers::pi * t;
            taps[k] = std::abs(t) < 1e-9
                          ? 1
                          : std::sin(x) / x * (0.5 + 0.5 * std::cos(x / kSide)) * (std::abs(t) < kSide);
        }
        for (int side = 0; side < 2; ++side)
            for (int i = kSide; i + kSide < count; ++i) {
                double sum = 0;
                for (int k = 0; k < 2 * kSide; ++k)
                    sum += taps[k] * double{sound[2 * static_cast<std::size_t>(i + k - kSide + 1) + side]};
                peak = std::max(peak, std::abs(sum));
            }
    }
    return 20 * std::log10(peak);
}

} // namespace marlune::test

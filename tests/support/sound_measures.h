// What can be measured of a sound: left and right in turn, full scale 1.
#pragma once

#include <vector>

namespace marlune::test {

using Sound = std::vector<float>;

// Of both channels from a second to another, in dB of a full-scale square wave; -200 for silence.
double levelOf(const Sound& sound, int rate, double from, double to);

// Where the weight of the spectrum of both channels' sum lies, Hz: of the magnitudes in windows of 2048
// frames, half of which overlap.
double spectralCentre(const Sound& sound, int rate, double from, double to);

// Part of the energy that lies above a frequency, 0..1.
double energyAbove(const Sound& sound, int rate, double hertz);

// The largest value between the samples, four times oversampled, in dB of full scale.
double truePeak(const Sound& sound);

} // namespace marlune::test

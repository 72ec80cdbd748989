#pragma once

#include <QByteArray>

#include <vector>

/// Sounds as RIFF WAVE files, one channel of 16-bit samples. The format is Microsoft's,
/// "Multimedia Programming Interface and Data Specifications 1.0".
namespace morvane::WaveFile {

constexpr int samplesPerSecond = 44100;

/// A whole file of these samples. Samples beyond −1 and 1 are clipped.
QByteArray of(const std::vector<double> &samples);

} // namespace morvane::WaveFile

#pragma once

#include <QByteArray>

#include <vector>

/// Sounds as RIFF WAVE files, one channel of 16-bit samples. The format is Microsoft's,
/// "Multimedia Programming Interface and Data Specifications 1.0".
namespace morvane::WaveFile {

constexpr int samplesPerSecond = 44100;

/// A whole file of these samples. What lies beyond −1 and 1 is cut off.
QByteArray of(const std::vector<double> &samples);

} // namespace morvane::WaveFile

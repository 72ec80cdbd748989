#include "Core/Shell/WaveFile.h"

#include <QDataStream>
#include <QIODevice>

#include <algorithm>

namespace morvane::WaveFile {

namespace {

constexpr quint32 headerSize = 44;
constexpr quint16 integerPcm = 1;
constexpr quint16 channels = 1;
constexpr quint16 bytesPerSample = 2;

} // namespace

QByteArray of(const std::vector<double> &samples) {
    const auto dataSize = static_cast<quint32>(samples.size()) * bytesPerSample;
    QByteArray result;
    result.reserve(qsizetype(headerSize) + dataSize);
    QDataStream stream(&result, QIODevice::WriteOnly);
    stream.setByteOrder(QDataStream::LittleEndian);
    stream.writeRawData("RIFF", 4);
    stream << headerSize - 8 + dataSize;
    stream.writeRawData("WAVEfmt ", 8);
    stream << quint32(16) << integerPcm << channels << quint32(samplesPerSecond)
           << quint32(samplesPerSecond * channels * bytesPerSample)
           << quint16(channels * bytesPerSample) << quint16(8 * bytesPerSample);
    stream.writeRawData("data", 4);
    stream << dataSize;
    for (const double sample : samples) {
        stream << static_cast<qint16>(std::clamp(sample, -1.0, 1.0) * 32767);
    }
    return result;
}

} // namespace morvane::WaveFile

// Makes the program's own sounds, needs-input.wav and done.wav, at build time.
// Usage: make_sounds FOLDER

#include "Core/Shell/WaveFile.h"

#include <QFile>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numbers>
#include <span>
#include <vector>

namespace morvane {
namespace {

/// A note as of a wooden bar that is struck with something soft.
struct Note {
    double start;     ///< seconds
    double frequency; ///< Hz
    double length;    ///< seconds, until it has faded
};

// The first asks: two quick notes that rise by a fifth. The second says that it is over: two
// slower, lower notes that fall by a third to the tonic.
constexpr Note needsInput[] = {{0.0, 587.33, 0.20}, {0.12, 880.00, 0.30}};
constexpr Note done[] = {{0.0, 659.26, 0.26}, {0.17, 523.25, 0.40}};

constexpr double loudness = 0.35; // of the full range, for each note
constexpr double attack = 0.006;  // seconds

/// The bar's first overtone lies two octaves above and fades sooner.
double sampleOf(const Note &note, double time) {
    const double t = time - note.start;
    if (t < 0 || t > note.length) {
        return 0;
    }
    const double angular = 2 * std::numbers::pi * note.frequency;
    const double fade = std::exp(-6 * t / note.length) * (1 - t / note.length);
    const double overtone = 0.15 * std::exp(-30 * t) * std::sin(4 * angular * t);
    return loudness * std::min(t / attack, 1.0) * fade * (std::sin(angular * t) + overtone);
}

QByteArray soundOf(std::span<const Note> notes) {
    const double length = notes.back().start + notes.back().length;
    std::vector<double> samples(static_cast<std::size_t>(length * WaveFile::samplesPerSecond));
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double time = static_cast<double>(i) / WaveFile::samplesPerSecond;
        for (const Note &note : notes) {
            samples[i] += sampleOf(note, time);
        }
    }
    return WaveFile::of(samples);
}

bool write(const QString &path, const QByteArray &bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush();
}

} // namespace
} // namespace morvane

int main(int argc, char **argv) {
    using namespace morvane;
    if (argc != 2) {
        std::fputs("usage: make_sounds FOLDER\n", stderr);
        return 2;
    }
    const QString folder = QFile::decodeName(argv[1]);
    const bool isWritten =
        write(folder + QStringLiteral("/needs-input.wav"), soundOf(needsInput)) &&
        write(folder + QStringLiteral("/done.wav"), soundOf(done));
    return isWritten ? EXIT_SUCCESS : EXIT_FAILURE;
}

#include "App/CommandLine.h"

#include "Core/Ground/VisibleText.h"
#include "Core/Shell/BuildInfo.h"
#include "Platform/Linux/Desktop/AutostartEntry.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>
#include <cstdlib>

namespace morvane::CommandLine {

namespace {

constexpr int misunderstood = 2;

QString version() {
    return QCoreApplication::translate("CommandLine", "Morvane %1 (build %2)")
        .arg(BuildInfo::version(), BuildInfo::build());
}

QString help() {
    return QCoreApplication::translate(
        "CommandLine",
        "Usage: morvane [--help | --version | --at-login]\n"
        "\n"
        "Shows at the top of the screen what your command-line coding agents do, and lets\n"
        "you answer them there. Started while it runs, it opens its settings.\n"
        "\n"
        "  --help     print this, and end\n"
        "  --version  print which Morvane this is, and end\n"
        "  --at-login start as at a login, where nobody waits for it");
}

bool print(std::FILE *stream, const QString &text) {
    return std::fputs((text + QLatin1Char('\n')).toLocal8Bit().constData(), stream) >= 0 &&
           std::fflush(stream) == 0;
}

} // namespace

std::optional<int> answer(int argc, const char *const *argv) {
    QString question; // only the first is answered
    for (int i = 1; i < argc; ++i) {
        const QString argument = QFile::decodeName(argv[i]);
        if (argument == AutostartEntry::option) {
            continue;
        }
        if (argument != QLatin1String("--help") && argument != QLatin1String("--version")) {
            print(stderr, QCoreApplication::translate(
                              "CommandLine", "morvane: unknown argument \"%1\"; see morvane --help")
                              .arg(VisibleText::name(argument)));
            return misunderstood;
        }
        question = question.isEmpty() ? argument : question;
    }
    if (question.isEmpty()) {
        return std::nullopt;
    }
    const bool isHelp = question == QLatin1String("--help");
    return print(stdout, isHelp ? help() : version()) ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace morvane::CommandLine

#include "Platform/Linux/Desktop/DesktopEntry.h"

#include <QFile>

namespace morvane::DesktopEntry {

std::optional<QString> value(const QString &path, QLatin1String key) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        return std::nullopt;
    }
    bool inMainGroup = false;
    while (!file.atEnd()) {
        const QString line = QString::fromUtf8(file.readLine()).trimmed();
        const qsizetype separator = line.indexOf(QLatin1Char('='));
        if (line.startsWith(QLatin1Char('['))) {
            inMainGroup = line == QLatin1String("[Desktop Entry]");
        } else if (inMainGroup && separator >= 0 && line.left(separator).trimmed() == key) {
            return line.mid(separator + 1).trimmed();
        }
    }
    return std::nullopt;
}

/// Three layers, each undone by its own reader: field codes, quotes, and the escapes of every
/// value, which come last and so double the backslashes of the quotes.
QByteArray execValue(const QString &program) {
    QString text = program;
    text.replace(QLatin1Char('%'), QLatin1String("%%"));
    for (const char *special : {"\\", "\"", "`", "$"}) {
        text.replace(QLatin1String(special), QLatin1Char('\\') + QLatin1String(special));
    }
    text = QLatin1Char('"') + text + QLatin1Char('"');
    text.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    text.replace(QLatin1Char('\n'), QLatin1String("\\n"));
    text.replace(QLatin1Char('\r'), QLatin1String("\\r"));
    text.replace(QLatin1Char('\t'), QLatin1String("\\t"));
    return text.toUtf8();
}

} // namespace morvane::DesktopEntry

#include "Platform/Linux/Desktop/DesktopEntry.h"

#include <QFile>
#include <QStandardPaths>

#include <utility>

namespace morvane::DesktopEntry {

namespace {

/// Undoes the escapes that any key's value may have. Any other backslash sequence stays as it is,
/// for the next reader.
QString unescaped(const QString &value) {
    QString result;
    for (qsizetype index = 0; index < value.size(); ++index) {
        const QChar next = index + 1 < value.size() ? value[index + 1] : QChar();
        constexpr QStringView letters = u"sntr\\";
        const qsizetype known = value[index] == u'\\' ? letters.indexOf(next) : -1;
        result += known < 0 ? value[index] : QStringView(u" \n\t\r\\")[known];
        index += known < 0 ? 0 : 1;
    }
    return result;
}

/// Splits a command line into words, and drops the field codes, such as those for the files to
/// open.
class CommandReader {
public:
    explicit CommandReader(const QString &text) : m_text(text) {}

    std::optional<QStringList> read() {
        while (m_index < m_text.size()) {
            if (!readCharacter(m_text[m_index++])) {
                return std::nullopt;
            }
        }
        endWord();
        return m_quote.isNull() && !m_words.value(0).isEmpty() ? std::optional(m_words)
                                                               : std::nullopt;
    }

private:
    bool readCharacter(QChar character) {
        if (m_quote.isNull() && (character == u' ' || character == u'\t' || character == u'\n')) {
            endWord();
        } else if (character == m_quote) {
            m_quote = QChar();
        } else if (m_quote.isNull() && (character == u'"' || character == u'\'')) {
            m_quote = character;
            m_isWord = true;
        } else if (character == u'\\' && m_quote != u'\'') {
            return readEscape();
        } else if (character == u'%') {
            return readFieldCode();
        } else {
            add(character);
        }
        return true;
    }

    /// Between quotes a backslash stands for itself before most characters.
    bool readEscape() {
        if (m_index == m_text.size()) {
            return false;
        }
        if (!m_quote.isNull() && !QStringView(u"\"`$\\").contains(m_text[m_index])) {
            add(u'\\');
        }
        add(m_text[m_index++]);
        return true;
    }

    bool readFieldCode() {
        const QChar code = m_index < m_text.size() ? m_text[m_index++] : QChar();
        if (code == u'%') {
            add(code);
        }
        return QStringView(u"%fFuUdDnNickvm").contains(code);
    }

    void add(QChar character) {
        m_word += character;
        m_isWord = true;
    }

    void endWord() {
        if (std::exchange(m_isWord, false)) {
            m_words.append(std::exchange(m_word, QString()));
        }
    }

    const QString m_text;
    qsizetype m_index = 0;
    QChar m_quote; ///< null outside of quotes
    QString m_word;
    bool m_isWord = false; ///< a pair of quotes makes an empty word, a field code none
    QStringList m_words;
};

} // namespace

/// An id with a slash is refused: what hooks report as an application must not lead out of the data
/// folders.
std::optional<QString> pathOf(const QString &id) {
    const QString path = id.contains(QLatin1Char('/'))
                             ? QString()
                             : QStandardPaths::locate(QStandardPaths::ApplicationsLocation,
                                                      id + QLatin1String(".desktop"));
    return path.isEmpty() ? std::nullopt : std::optional(path);
}

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

/// Escapes three layers, each undone by its own reader: field codes, quotes, and the escapes of
/// every value. Those come last and so double the backslashes of the quotes.
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

std::optional<QStringList> command(const QString &execValue) {
    return CommandReader(unescaped(execValue)).read();
}

} // namespace morvane::DesktopEntry

#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

namespace morvane {

/// Holds the includes of a source tree against a table of rooms. A room is a folder below the
/// tree's root, named by its path, such as "Core/Hooks".
class IncludeCheck {
public:
    /// Reads the table out of a page in Markdown: a row `| `Room` | what lives there | `Room`,
    /// … |`, whose last cell names the rooms that it may see besides itself. `Core/*` stands for
    /// every room below `Core`.
    static IncludeCheck ofPage(const QString &path);

    QStringList rooms() const { return m_mayBeSeen.keys(); }

    /// Every include of a header of the tree that the table has no arrow for, and every folder
    /// with sources that the table doesn't know, a sentence each.
    QStringList violations(const QString &tree) const;

private:
    bool allows(const QString &from, const QString &to) const;

    QHash<QString, QStringList> m_mayBeSeen; ///< from each room
};

} // namespace morvane

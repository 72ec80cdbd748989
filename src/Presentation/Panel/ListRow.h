#pragma once

#include "Core/Agents/AgentKind.h"
#include "Presentation/Panel/PanelButton.h"

#include <QColor>

#include <optional>

class QHBoxLayout;
class QVBoxLayout;

namespace morvane {

class AgentBadge;
class NameLine;
struct PanelContext;

/// The base of the panel's rows: it can be clicked, is highlighted under the pointer, and has a
/// mark at the left and beside it a column that begins with an editable name.
class ListRow : public PanelButton {
    Q_OBJECT

public:
    /// Whether a text field is open in the row.
    virtual bool isEditing() const;

    /// Whether text that somebody has typed would disappear with the row.
    virtual bool holdsText() const { return isEditing(); }

    /// Closes the field; nothing is committed.
    virtual void abandonEditing();

    /// Brings a row up to date that has left the list and stays only for its text.
    virtual void outliveEntry() = 0;

    /// The line that has the name.
    const QWidget &nameWidget() const;

    /// Updates the hover state of a row that may have moved, from the position of the pointer on
    /// the desktop; none if it is on none of the rows. Qt does so only when the pointer moves, not
    /// when a row moves under it.
    void followPointer(std::optional<QPoint> pointer);

    /// The middle of the row's first line, in its own points: the position of the row itself for
    /// the keys, as distinct from the controls below.
    QPoint firstLine() const;

protected:
    static constexpr double markPixel = 2; ///< a pixel of the row's mascot, in points

    struct Look {
        QColor nameColor;
        int topMargin = 0; ///< in points
    };

    ListRow(const PanelContext &context, const Look &look, QWidget *parent);

    const PanelContext &context() const { return m_context; }

    /// The mark and the column; what is added comes to their right.
    QHBoxLayout &line() const { return *m_line; }
    /// What is added comes below the name.
    QVBoxLayout &column() const { return *m_column; }
    void addMark(QWidget &mark);

    /// Shows the name of a working directory; it can be edited if the directory is known.
    void showName(const QString &name, const QString &cwd);
    /// As much of the name as is shown.
    QString name() const;
    void showAgent(std::optional<AgentKind> agent);

    /// The strip with buttons at the end of the column, if there is one.
    virtual const QWidget *strip() const = 0;

    bool hitButton(const QPoint &position) const override;
    void mousePressEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    bool takesPresses() const;

    const PanelContext &m_context;
    NameLine *m_nameLine;
    AgentBadge *m_agent;
    QHBoxLayout *m_line;
    QVBoxLayout *m_column;
    bool m_wasUnderPointer = false; ///< at the last `followPointer`
};

} // namespace morvane

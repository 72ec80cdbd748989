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

/// What the rows of the panel have in common: a click on them, the ground that shows the pointer,
/// a mark at the left, and beside it a column that begins with a name that can be edited.
class ListRow : public PanelButton {
    Q_OBJECT

public:
    /// Whether a text field is open in the row.
    virtual bool isEditing() const;

    /// Whether a text would be out of sight with the row.
    virtual bool holdsText() const { return isEditing(); }

    /// Closes the field; nothing is committed.
    virtual void abandonEditing();

    /// The row is no longer on the list and stays only for its text: it may have changed since.
    virtual void outliveEntry() = 0;

    /// The line that has the name.
    const QWidget &nameWidget() const;

    /// Tells a row that may have moved where the pointer is on the desktop, or that it is on none
    /// of the rows. Qt looks for the pointer when that moves, not when a row moves under it.
    void followPointer(std::optional<QPoint> pointer);

    /// The middle of the row's first line, in its own points: where the row itself is to the keys,
    /// other than what stands below in it.
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

    /// The name of a working directory, which can be changed where that is known.
    void showName(const QString &name, const QString &cwd);
    /// Of the name as much as is shown.
    QString name() const;
    void showAgent(std::optional<AgentKind> agent);

    /// What stands at the end of the column to be pressed, if anything does.
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
    bool m_wasUnderPointer = false; ///< when it was last told where that is
};

} // namespace morvane

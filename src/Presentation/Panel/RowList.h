#pragma once

#include "Presentation/Style/Animation.h"

#include <QAccessible>
#include <QPixmap>
#include <QWidget>

#include <functional>
#include <optional>

namespace morvane {

/// The list of the panel: headers and rows, one below the other. What stands in it is told by
/// entries; a widget is made when its entry first comes into sight, so that a long list opens as
/// quickly as a short one, and stays for as long as its entry does.
///
/// A change may move: what is new comes in, what is gone leaves as a picture of itself, and the
/// rest glides to its new place.
class RowList : public QWidget, private QAccessible::ActivationObserver {
    Q_OBJECT

public:
    struct Entry {
        QString key; ///< says which widget of the list before is this entry's
        /// Brings the widget up to date, or makes it, as a child of the list, when there is none.
        std::function<QWidget *(QWidget *present)> fill;
    };

    RowList(Scheduler &scheduler, QWidget *parent);
    ~RowList() override;

    /// Takes over what is to be shown, and keeps a row besides for as long as it has a text in it
    /// that would be out of sight with it. Takes effect with the next `layOut`; with a duration the
    /// change moves, without one a movement that is under way goes on.
    void setEntries(const QList<Entry> &entries, std::optional<Seconds> duration);

    /// Places everything at this width, makes what lies between the two heights, and gives the
    /// height of it all. With a screen reader about everything is made, so that it can be read.
    int layOut(int width, int from, int to);

    /// From now on everything is made, in sight or not.
    void makeAll();

    /// The widgets that are made, from top to bottom.
    QWidgetList inOrder() const;

    /// The entry that should stay in sight when others change: the one whose text somebody edits,
    /// else the first in sight of a list that is scrolled this far; none when that is at its top.
    std::optional<qsizetype> anchor(int offset) const;
    int top(qsizetype entry) const { return m_slots[entry].top; }

    /// Whether the row of this entry has a text in it that would be out of sight with it.
    bool holdsText(const QString &key) const;

    /// Whether a text is open in it, or a button down.
    bool isInHand() const;

    /// What somebody is about to press may have made way for something else. Until there has been
    /// time to see that, the rows take no press; a list that is opened has no such past.
    void holdPresses();
    bool holdsPresses() const { return m_holdsPresses; }

    /// Lets a movement begin so much lower, when the list is scrolled by as much.
    void shiftStart(int distance);

    /// Closes the text field in a row that has no part between the two heights.
    void abandonEditingOutside(int from, int to);

    /// Tells the rows where the pointer is.
    void followPointer();

signals:
    /// A row has changed its height by itself.
    void heightsChanged();

protected:
    bool event(QEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    struct Slot {
        Entry entry;
        QWidget *widget = nullptr; ///< none while it has not yet been in sight
        int top = 0;
        int height = 0;
        bool isPlaced = false;
        bool isMeasured = false;
        bool isEntering = false;
        int startTop = 0; ///< where the present movement began
        int startHeight = 0;
    };

    /// What has left the list, and can no longer be clicked.
    struct Ghost {
        QPixmap picture;
        QPoint position;
    };

    void accessibilityActiveChanged(bool active) override;
    void takeOver(const QList<Entry> &entries, bool moves);
    static bool holdsText(const Slot &slot);
    void letGo(const QList<Slot> &before, qsizetype place, bool moves);
    void passFocusOn(const QList<Slot> &before, qsizetype place);
    void dismiss(const Slot &slot, bool moves);
    static void make(Slot &slot);
    void start(Seconds duration);
    void finish();
    void measure(Slot &slot);
    void place();
    void place(Slot &slot) const;
    void orderForReaders();

    Scheduler &m_scheduler;
    QList<Slot> m_slots;
    QList<Ghost> m_ghosts;
    Animation m_movement;
    double m_share = 1; ///< of the movement, eased
    int m_width = 0;
    bool m_isRead = QAccessible::isActive(); ///< by a screen reader
    bool m_makesAll = false;
    int m_usualHeight; ///< of a row that hasn't been made
    bool m_holdsPresses = false;
    Task m_release; ///< lets the rows take presses again
};

} // namespace morvane

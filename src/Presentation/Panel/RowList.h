#pragma once

#include "Presentation/Style/Animation.h"

#include <QAccessible>
#include <QPixmap>
#include <QWidget>

#include <functional>
#include <optional>

namespace morvane {

/// The list of the panel: headers and rows, one below the other. Entries say what is in it; the
/// widget of an entry is made when it first comes into sight, so that a long list opens as quickly
/// as a short one, and lives as long as its entry.
///
/// A change may be animated: new rows fade in, removed ones fade out as pictures of themselves, and
/// the others glide to their new places.
class RowList : public QWidget, private QAccessible::ActivationObserver {
    Q_OBJECT

public:
    struct Entry {
        QString key; ///< identifies the widget across changes of the list
        /// Brings the widget up to date, or makes it, as a child of the list, when there is none.
        std::function<QWidget *(QWidget *present)> fill;
    };

    RowList(Scheduler &scheduler, QWidget *parent);
    ~RowList() override;

    /// Replaces the entries, but keeps a row while it holds text that would disappear with it.
    /// Takes effect with the next `layOut`. With a duration the change is animated; without one, a
    /// running animation continues.
    void setEntries(const QList<Entry> &entries, std::optional<Seconds> duration);

    /// Lays everything out at this width, makes the widgets between the two vertical positions, and
    /// returns the height of the whole. While a screen reader is active everything is made, so that
    /// it can be read.
    int layOut(int width, int from, int to);

    /// From now on everything is made, in sight or not.
    void makeAll();

    /// The widgets made so far, from top to bottom.
    QWidgetList inOrder() const;

    /// The entry that should keep its place when others change: the one whose text somebody edits,
    /// else the first in sight at this scroll offset; none while the list is at its top.
    std::optional<qsizetype> anchor(int offset) const;
    int top(qsizetype entry) const { return m_slots[entry].top; }

    /// Whether text would disappear with the row of this entry.
    bool holdsText(const QString &key) const;

    /// Whether a text field is open or a button is held down in the list.
    bool isInUse() const;

    /// Makes the rows ignore presses for the reading time, because what somebody is about to press
    /// may have made way for something else. Does nothing in a list that isn't visible yet.
    void holdPresses();
    bool holdsPresses() const { return m_holdsPresses; }

    /// Moves the start of a running animation down, when the list is scrolled by as much.
    void shiftStart(int distance);

    /// Closes the text fields of rows that are wholly outside these two vertical positions.
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
        int startTop = 0; ///< where the running animation began
        int startHeight = 0;
    };

    /// The picture of a row that has left the list and can no longer be clicked.
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
    double m_share = 1; ///< of the animation, eased
    int m_width = 0;
    bool m_isScreenReaderActive = QAccessible::isActive(); ///< a screen reader is active
    bool m_makesAll = false;
    int m_usualHeight; ///< assumed for a row that hasn't been made
    bool m_holdsPresses = false;
    Task m_release; ///< lets the rows take presses again
};

} // namespace morvane

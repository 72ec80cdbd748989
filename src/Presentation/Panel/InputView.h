#pragma once

#include "Presentation/Panel/InputRows.h"
#include "Presentation/Style/WheelDistance.h"

#include <QAccessible>
#include <QWidget>

namespace morvane {

/// Shows what a tool call is given as it will be taken: in a grid as terminals have it, from left
/// to right whatever the script, with the signs of lines in a column of their own; prose in words
/// instead, each line in its own direction. What is too long for a row goes on in the next, which
/// is marked for that; what is too high is scrolled, by the wheel or the keys.
class InputView : public QWidget, private QAccessible::ActivationObserver {
    Q_OBJECT

public:
    explicit InputView(QWidget *parent);
    ~InputView() override;

    void setLines(const QList<ReadableInput::Line> &lines);

    /// Such lines as a screen reader reads them.
    static QString spoken(const QList<ReadableInput::Line> &lines);

    /// How high it may become, in points.
    void setHeightLimit(int limit);

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    using Line = ReadableInput::Line;

    const QList<InputRows::Row> &rows(int width) const;
    int contentHeight(int width) const;
    void paint(QPainter &painter, const InputRows::Row &row, int top) const;
    void paintCells(QPainter &painter, QStringView text, int baseline) const;
    void paintWords(QPainter &painter, const InputRows::Row &row, int baseline) const;
    void paintThumb(QPainter &painter) const;
    bool isCut() const;
    bool scrollTo(int offset);
    void updateFocusPolicy();
    void accessibilityActiveChanged(bool active) override;

    InputRows m_rows;
    int m_heightLimit = 0;
    int m_offset = 0; ///< how far it is scrolled
    WheelDistance m_wheel;
    bool m_isRead = QAccessible::isActive(); ///< by a screen reader
};

} // namespace morvane

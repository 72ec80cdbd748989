#pragma once

#include "Presentation/Panel/InputRows.h"
#include "Presentation/Style/WheelDistance.h"

#include <QAccessible>
#include <QWidget>

namespace morvane {

/// Shows a tool call's input as the tool will take it: on a grid, as terminals have it, from left
/// to right in every script, with the signs of lines in a column of their own; prose as running
/// text instead, each line in its own direction. A line that is too long for a row continues in the
/// next, which is marked; an input that is too tall scrolls, by the wheel or the keys.
class InputView : public QWidget, private QAccessible::ActivationObserver {
    Q_OBJECT

public:
    explicit InputView(QWidget *parent);
    ~InputView() override;

    void setLines(const QList<ReadableInput::Line> &lines);

    /// The lines as a screen reader reads them.
    static QString spoken(const QList<ReadableInput::Line> &lines);

    /// The most height that it takes, in points.
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
    bool m_isScreenReaderActive = QAccessible::isActive(); ///< a screen reader is active
};

} // namespace morvane

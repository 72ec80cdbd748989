#pragma once

#include <QColor>
#include <QLabel>

namespace morvane {

/// Plain text in one colour that never asks for more width than there is: it breaks into at most
/// `maxLines` lines, within a word where it must, and ends in an ellipsis if that isn't enough. 0
/// lines means no limit. Left-aligned unless centred; each paragraph reads in the direction of its
/// own first letter, however it breaks.
class TextLabel : public QLabel {
    Q_OBJECT

public:
    TextLabel(const QFont &font, const QColor &color, int maxLines, QWidget *parent);

    void setColor(const QColor &color);
    const QColor &color() const { return m_color; }

    /// The text as it is shown at this width.
    const QStringList &lines(int width) const;

    bool hasHeightForWidth() const override { return m_maxLines != 1; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    /// The cached result of `lines`: breaking is expensive and is asked for again and again.
    struct Broken {
        QString text;
        int width = -1;
        QStringList lines;
        QList<Qt::LayoutDirection> directions; ///< of each line
    };

    QString printable() const;
    Broken broken(int width) const;

    QColor m_color;
    int m_maxLines;
    mutable Broken m_broken;
    mutable Broken m_measured; ///< the width of the whole text in one line
};

} // namespace morvane

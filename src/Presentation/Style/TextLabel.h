#pragma once

#include <QColor>
#include <QLabel>

namespace morvane {

/// Plain text in one colour that never asks for more width than there is: it breaks into at most
/// `maxLines` lines, inside of a word where it has to, and ends in an ellipsis where that isn't
/// enough. 0 lines are without a limit. It stands at the left; each of its paragraphs reads in the
/// direction of that one's first letter, however it breaks.
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
    /// What `lines` has found last: breaking is dear, and is asked for again and again.
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
    mutable Broken m_measured; ///< as one line
};

} // namespace morvane

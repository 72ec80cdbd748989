#pragma once

#include <QColor>
#include <QLabel>

#include <functional>
#include <utility>

namespace morvane {

/// A short text on a tinted ground, in a row. Hidden while it has no text; elided if the text is
/// too wide.
class Badge : public QLabel {
    Q_OBJECT

public:
    explicit Badge(QWidget *parent);

    void setContent(const QString &text, const QColor &tint, const QString &help = {});

    using Picture = std::function<void(QPainter &, const QRectF &frame, const QColor &)>;

    /// Puts a small picture before the text, and takes the ground away.
    void setPicture(Picture picture) { m_picture = std::move(picture); }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    int padding() const { return m_picture ? 0 : 5; }
    int pictureSpace() const { return m_picture ? 12 : 0; }

    QColor m_tint;
    Picture m_picture;
};

} // namespace morvane

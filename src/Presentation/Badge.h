#pragma once

#include "Presentation/SystemImage.h"

#include <QColor>
#include <QLabel>

#include <optional>

namespace morvane {

/// A short text on a tinted ground, in a row's meta line. Hidden while it has no text; cut off
/// where the text is unreasonably long.
class Badge : public QLabel {
    Q_OBJECT

public:
    explicit Badge(QWidget *parent);

    void setContent(const QString &text, const QColor &tint, const QString &help = {});

    /// Puts a small picture before the text, and takes the ground away.
    void setImage(SystemImage image) { m_image = image; }

    const QColor &tint() const { return m_tint; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    int padding() const { return m_image ? 0 : 5; }
    int imageSpace() const { return m_image ? 12 : 0; }

    QColor m_tint;
    std::optional<SystemImage> m_image;
};

} // namespace morvane

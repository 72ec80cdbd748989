#pragma once

#include "Presentation/Panel/PanelButton.h"
#include "Presentation/Style/SystemImage.h"

#include <QColor>

#include <optional>

namespace morvane {

/// A button of a strip: its title, and the digit that presses it where one does. While it waits to
/// be read it is disabled, and faint.
class DecideButton : public PanelButton {
    Q_OBJECT

public:
    DecideButton(const QString &title, const QColor &tint, QWidget *parent);

    void setTitle(const QString &title);

    /// Makes it stand back behind the buttons that decide.
    void setQuiet();

    /// Puts a small picture right before the title, which may begin with a blank.
    void setLeadingImage(SystemImage image) { m_leadingImage = image; }

    /// Puts a small picture behind the title.
    void setTrailingImage(SystemImage image) { m_trailingImage = image; }

    void setShortcutDigit(std::optional<int> digit);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    int digitSpace() const;

    QColor m_tint;
    bool m_isQuiet = false;
    std::optional<int> m_digit;
    std::optional<SystemImage> m_leadingImage;
    std::optional<SystemImage> m_trailingImage;
};

} // namespace morvane

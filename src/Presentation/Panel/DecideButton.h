#pragma once

#include "Presentation/Panel/PanelButton.h"
#include "Presentation/Style/SystemImage.h"

#include <QColor>

#include <optional>

namespace morvane {

/// A button of a strip: its title, and the digit that presses it, if any. It is disabled and faint
/// until the strip has been shown long enough to be read.
class DecideButton : public PanelButton {
    Q_OBJECT

public:
    DecideButton(const QString &title, const QColor &tint, QWidget *parent);

    void setTitle(const QString &title);

    /// Makes it less prominent than the buttons that decide.
    void setQuiet();

    /// Puts a small picture directly before the title; a blank at the start of the title makes a
    /// gap.
    void setLeadingImage(SystemImage image) { m_leadingImage = image; }

    /// Puts a small picture after the title.
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

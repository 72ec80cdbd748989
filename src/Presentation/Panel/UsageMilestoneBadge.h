#pragma once

#include "Core/Usage/UsageMilestone.h"

#include <QWidget>

#include <optional>

namespace morvane {

/// Announces that a limit has come near its end: a bell and how much is used, in a small capsule.
class UsageMilestoneBadge : public QWidget {
    Q_OBJECT

public:
    enum class Size { regular, compact };

    UsageMilestoneBadge(Size size, QWidget *parent);

    /// None hides the badge.
    void setMilestone(const std::optional<UsageMilestone> &milestone);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString percent() const;

    const QMargins m_padding;
    UsageMilestone m_milestone;
};

} // namespace morvane

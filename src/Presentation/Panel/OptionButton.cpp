#include "Presentation/Panel/OptionButton.h"

#include "Core/Ground/BoundedText.h"
#include "Core/Ground/VisibleText.h"
#include "Core/Settings/PanelKey.h"
#include "Presentation/Style/Colors.h"
#include "Presentation/Style/TextLabel.h"
#include "Presentation/Style/Typography.h"

#include <QFontMetrics>
#include <QHBoxLayout>
#include <QPainter>

namespace morvane {

namespace {

constexpr double optionRadius = 7;
constexpr double restFill = 0.09;
constexpr double hoverFill = 0.18;
constexpr double pressedFill = 0.3;

} // namespace

OptionButton::OptionButton(const AgentOption &option, const QColor &accent,
                           std::optional<int> shortcutDigit, QWidget *parent)
    : PanelButton(parent), m_accent(accent) {
    setText(VisibleText::paragraph(option.label));
    setShortcut({}); // an ampersand in an agent's text is no mnemonic
    setAccessibleName(spokenLabel());
    const QString details = VisibleText::paragraph(option.description.value_or(QString()));
    setAccessibleDescription(BoundedText::of(details, BoundedText::paragraphLength));
    // A button's own policy is a fixed height, which would cut off text of several lines.
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    setCursor(Qt::PointingHandCursor);

    auto *line = new QHBoxLayout(this);
    line->setContentsMargins(11, 6, 11, 6);
    line->setSpacing(9);
    const QFont labelFont = Typography::text(Typography::bodySize, QFont::DemiBold);
    if (shortcutDigit) {
        auto *digit = new TextLabel(labelFont, Colors::faded(accent, Colors::shortcut), 1, this);
        digit->setText(*shortcutDigit <= PanelKey::digitCount ? QString::number(*shortcutDigit)
                                                              : QString());
        digit->setMinimumWidth(QFontMetrics(labelFont).horizontalAdvance(u'0'));
        line->addWidget(digit, 0, Qt::AlignTop);
    }
    auto *texts = new QVBoxLayout;
    texts->setSpacing(2);
    line->addLayout(texts, 1);
    auto *label = new TextLabel(labelFont, accent, 0, this);
    label->setText(text());
    texts->addWidget(label);
    if (!details.isEmpty()) {
        auto *description = new TextLabel(Typography::text(Typography::secondarySize),
                                          Colors::secondaryText, 0, this);
        description->setText(details);
        texts->addWidget(description);
    }
}

QString OptionButton::spokenLabel() const {
    return BoundedText::of(text(), BoundedText::paragraphLength);
}

void OptionButton::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isEnabled() ? 1 : Colors::waiting);
    const double opacity = isDown() ? pressedFill : underMouse() ? hoverFill : restFill;
    painter.setPen(Qt::NoPen);
    painter.setBrush(Colors::faded(m_accent, opacity));
    painter.drawRoundedRect(rect(), optionRadius, optionRadius);
    paintFocus(painter, optionRadius);
}

} // namespace morvane

#include "moc_OptionButton.cpp"

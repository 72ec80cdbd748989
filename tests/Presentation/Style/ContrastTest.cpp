#include "Presentation/Style/Colors.h"
#include "Presentation/Style/StateLook.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace morvane {
namespace {

double luminance(const QColor &color) {
    const auto linear = [](double value) {
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

/// As WCAG 2 has it.
double contrast(const QColor &one, const QColor &other) {
    const auto [dark, light] = std::minmax({luminance(one), luminance(other)});
    return (light + 0.05) / (dark + 0.05);
}

QColor over(const QColor &top, const QColor &ground) {
    const double share = top.alphaF();
    const auto mix = [share](double above, double below) {
        return static_cast<float>(share * above + (1 - share) * below);
    };
    return QColor::fromRgbF(mix(top.redF(), ground.redF()), mix(top.greenF(), ground.greenF()),
                            mix(top.blueF(), ground.blueF()));
}

/// The grounds of the panel's texts, with black and with white shining through where it can.
QList<QColor> panelGrounds() {
    return {over(Colors::capsuleFill, Qt::black), over(Colors::capsuleFill, Qt::white),
            Colors::notchFill};
}

void expectReadable(const QColor &text, const QColor &ground) {
    EXPECT_GE(contrast(over(text, ground), ground), 4.5)
        << text.name(QColor::HexArgb).toStdString() << " on " << ground.name().toStdString();
}

TEST(Contrast, TextsThatMatterCanBeReadOnEveryGround) {
    const QList<QColor> texts{
        Colors::primaryText,    Colors::secondaryText, Colors::tertiaryText, Colors::questionAccent,
        Colors::approvalAccent, Colors::denyAccent,    Colors::connected,    Colors::warning,
        Colors::fillingContext, Colors::tightContext,  Colors::removedLine,  Colors::addedLine};
    const QList<QColor> grounds = panelGrounds() << Colors::windowFill
                                                 << over(Colors::formGround, Colors::windowFill);
    for (const QColor &ground : grounds) {
        for (const QColor &text : texts) {
            expectReadable(text, ground);
        }
    }
    expectReadable(Colors::primaryText, Colors::switchOn);
    for (const auto state : {SessionState::working, SessionState::needsInput, SessionState::done,
                             SessionState::failed, SessionState::idle}) {
        expectReadable(StateLook::of(state).mascot, over(Colors::capsuleFill, Qt::white));
    }
}

TEST(Contrast, BadgesAndButtonsCanBeReadOnAGroundOfTheirColor) {
    const auto expectReadableOn = [](const QColor &tint, const QColor &text) {
        for (const QColor &below : panelGrounds()) {
            expectReadable(text, over(Colors::faded(tint, Colors::tintedGround), below));
        }
    };
    for (const QColor &badge :
         {Colors::secondaryText, Colors::tertiaryText, Colors::fillingContext, Colors::tightContext,
          Colors::neverAsks, Colors::asksLess, Colors::asksAsUsual}) {
        expectReadableOn(badge, badge);
    }
    for (const QColor &button : {Colors::questionAccent, Colors::approvalAccent, Colors::denyAccent,
                                 Colors::quietAccent}) {
        expectReadableOn(button, button);
        expectReadableOn(button, Colors::faded(button, Colors::shortcut));
    }
}

} // namespace
} // namespace morvane

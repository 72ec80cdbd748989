#include "Presentation/Mascot/MenuBarIcon.h"
#include "Presentation/Style/Colors.h"
#include "Presentation/Style/StateLook.h"

#include <QIcon>
#include <QImage>
#include <QPixmap>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace morvane {
namespace {

using Linear = std::array<double, 3>;

Linear linear(const QColor &color) {
    const auto channel = [](double value) {
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return {channel(color.redF()), channel(color.greenF()), channel(color.blueF())};
}

double luminance(const Linear &color) {
    return 0.2126 * color[0] + 0.7152 * color[1] + 0.0722 * color[2];
}

/// As WCAG 2 has it.
double contrast(const Linear &one, const Linear &other) {
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

/// What lies below the panel's texts, over the brightest and the darkest that can shine through.
QList<QColor> panelGrounds() {
    return {over(Colors::capsuleFill, Qt::black), over(Colors::capsuleFill, Qt::white),
            Colors::notchFill};
}

QList<QColor> grounds() {
    return panelGrounds() << Colors::windowFill << over(Colors::formGround, Colors::windowFill);
}

void expectReadable(const QColor &text, const QColor &ground) {
    EXPECT_GE(contrast(linear(over(text, ground)), linear(ground)), 4.5)
        << text.name(QColor::HexArgb).toStdString() << " on " << ground.name().toStdString();
}

TEST(Contrast, TextsThatMatterCanBeReadOnEveryGround) {
    const QList<QColor> texts{
        Colors::primaryText,    Colors::secondaryText, Colors::tertiaryText, Colors::questionAccent,
        Colors::approvalAccent, Colors::denyAccent,    Colors::connected,    Colors::warning,
        Colors::fillingContext, Colors::tightContext,  Colors::removedLine,  Colors::addedLine};
    for (const QColor &ground : grounds()) {
        for (const QColor &text : texts) {
            expectReadable(text, ground);
        }
    }
    expectReadable(Colors::primaryText, Colors::switchOn);
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

TEST(Contrast, WhatCallsForAPersonIsSeenOnBlack) {
    for (const auto state : {SessionState::working, SessionState::needsInput, SessionState::done,
                             SessionState::failed, SessionState::idle}) {
        expectReadable(StateLook::of(state).mascot, over(Colors::capsuleFill, Qt::white));
    }
}

/// Machado, Oliveira and Fernandes, "A Physiologically-based Model for Simulation of Color Vision
/// Deficiency", 2009, at full severity.
using Vision = std::array<Linear, 3>;
constexpr Vision protan{{{0.152286, 1.052583, -0.204868},
                         {0.114503, 0.786281, 0.099216},
                         {-0.003882, -0.048116, 1.051998}}};
constexpr Vision deutan{{{0.367322, 0.860646, -0.227968},
                         {0.280085, 0.672501, 0.047413},
                         {-0.011820, 0.042940, 0.968881}}};
constexpr Vision tritan{{{1.255528, -0.076749, -0.178779},
                         {-0.078411, 0.930809, 0.147602},
                         {0.004733, 0.691367, 0.303900}}};

Linear seen(const Vision &vision, const QColor &color) {
    const Linear light = linear(color);
    Linear result{};
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            result[row] += vision[row][column] * light[column];
        }
        result[row] = std::clamp(result[row], 0.0, 1.0);
    }
    return result;
}

TEST(Contrast, StatesDifferByTheirShapeWhateverColorsAPersonSees) {
    const QList<SessionState> states{SessionState::needsInput, SessionState::failed,
                                     SessionState::done};
    const auto icon = [](SessionState state) {
        return MenuBarIcon::icon(StateLook::of(state).tray, state).pixmap(22, 22).toImage();
    };
    for (const Vision &vision : {protan, deutan, tritan}) {
        for (const SessionState one : states) {
            for (const SessionState other : states) {
                const QImage first = icon(one);
                const QImage second = icon(other);
                int differing = 0;
                for (int y = 0; y < first.height(); ++y) {
                    for (int x = 0; x < first.width(); ++x) {
                        const QColor a = over(first.pixelColor(x, y), Qt::black);
                        const QColor b = over(second.pixelColor(x, y), Qt::black);
                        differing += contrast(seen(vision, a), seen(vision, b)) >= 3 ? 1 : 0;
                    }
                }
                // Of the hundred pixels that a mark has.
                EXPECT_TRUE(one == other || differing >= 25)
                    << static_cast<int>(one) << ' ' << static_cast<int>(other) << ' ' << differing;
            }
        }
    }
}

} // namespace
} // namespace morvane

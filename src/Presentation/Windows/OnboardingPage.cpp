#include "Presentation/Windows/OnboardingPage.h"

#include "Core/Agents/AgentAdapter.h"
#include "Core/Hooks/AgentConnections.h"
#include "Core/Settings/MorvaneSettings.h"
#include "Core/Settings/PanelKey.h"
#include "Presentation/Mascot/PixelArt.h"
#include "Presentation/Mascot/PixelFrameView.h"
#include "Presentation/Style/Colors.h"
#include "Presentation/Style/PlatformWords.h"
#include "Presentation/Style/TextLabel.h"
#include "Presentation/Style/Typography.h"
#include "Presentation/Windows/AgentList.h"
#include "Presentation/Windows/PictureView.h"
#include "Presentation/Windows/Pill.h"
#include "Presentation/Windows/ToggleRow.h"

#include <QHBoxLayout>
#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>

namespace morvane {

namespace {

constexpr int sideMargin = 44;
constexpr int rowImageSide = 20;

QWidget *rowOf(SystemImage image, const QColor &tint, QWidget *text, QWidget *parent) {
    auto *row = new QWidget(parent);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(12);
    text->setParent(row);
    layout->addWidget(new PictureView(rowImageSide, image, tint, row), 0, Qt::AlignTop);
    layout->addWidget(text, 1);
    return row;
}

/// Joins names as in a sentence: "A", "A and B", "A, B and C".
QString joined(const QStringList &names) {
    if (names.size() < 2) {
        return names.join(QString());
    }
    return OnboardingPage::tr("%1 and %2")
        .arg(names.first(names.size() - 1).join(OnboardingPage::tr(", ")), names.last());
}

QString toldOf(const std::vector<AgentKind> &kinds) {
    QStringList names;
    for (const AgentKind kind : kinds) {
        names.append(displayName(kind));
    }
    return (kinds.size() == 1
                ? OnboardingPage::tr("%1 has been installed since Morvane was set up. Connect it "
                                     "to see its sessions in the notch.")
                : OnboardingPage::tr("%1 have been installed since Morvane was set up. Connect "
                                     "them to see their sessions in the notch."))
        .arg(joined(names));
}

} // namespace

OnboardingPage::OnboardingPage(const WindowContext &context, QWidget *parent)
    : QWidget(parent), m_context(context), m_layout(new QVBoxLayout(this)) {
    m_layout->setContentsMargins(sideMargin, 0, sideMargin, 0);
    m_layout->setSpacing(12);
}

OnboardingPage *OnboardingPage::welcome(const WindowContext &context, QWidget *parent) {
    auto *page = new OnboardingPage(context, parent);
    page->m_layout->addStretch(3);
    page->addMascot(76);
    page->m_layout->addSpacing(14);
    page->addTitle(tr("Welcome to Morvane"), 30);
    page->addText(PlatformWords::everythingStaysHere());
    page->m_layout->addSpacing(10);
    page->addPill(
        [page] { return PlatformWords::whereToLook(page->m_context.program.hasTrayIcon()); });
    page->m_layout->addStretch(4);
    return page;
}

OnboardingPage *OnboardingPage::connectAgents(const WindowContext &context, QWidget *parent) {
    auto *page = new OnboardingPage(context, parent);
    page->m_layout->addSpacing(44);
    page->addTitle(tr("Connect your agents"), 24);
    page->addText(tr("Morvane hears about a session through the agent's own hooks. Connect the "
                     "ones you use."));
    page->m_layout->addSpacing(8);
    page->addAgents([&connections = context.connections] { return connections.offeredAgents(); },
                    tr("A hook entry goes into each agent's settings file — backed up first, "
                       "removable from Settings."),
                    tr("No supported agents detected yet. Install Claude Code, Codex, Gemini CLI, "
                       "Cursor or another supported agent and it will appear in Settings."));
    return page;
}

OnboardingPage *OnboardingPage::ready(const WindowContext &context, QWidget *parent) {
    auto *page = new OnboardingPage(context, parent);
    page->m_layout->addStretch(2);
    page->addMascot(68);
    page->m_layout->addSpacing(10);
    page->addTitle(tr("You're set"), 30);
    page->m_layout->addSpacing(10);
    TextLabel *open = page->addHint(SystemImage::cursorarrowMotionlines);
    page->m_updates.push_back([page, open] {
        open->setText(
            PlatformWords::openThePanel(page->panelKey(), page->m_context.program.hasTrayIcon()));
    });
    if (!context.program.desktopChoosesKeys()) {
        // Desktops that choose the keys grant none that are needed only for a while.
        page->addHint(SystemImage::keyboard)
            ->setText(tr("%1 jump to recently completed sessions.")
                          .arg(PlatformWords::digitShortcuts(1, PanelKey::digitCount)));
    }
    page->addHint(SystemImage::terminal)->setText(tr("Click a session to jump to its terminal."));
    page->m_layout->addSpacing(14);
    page->addWindowFocus();
    page->addLaunchAtLogin();
    page->addFootnote({});
    page->m_layout->addStretch(3);
    return page;
}

OnboardingPage *OnboardingPage::newAgents(const std::vector<AgentKind> &kinds,
                                          const WindowContext &context, QWidget *parent) {
    auto *page = new OnboardingPage(context, parent);
    page->m_layout->addSpacing(36);
    page->addMascot(68);
    page->m_layout->addSpacing(6);
    page->addTitle(kinds.size() == 1 ? tr("New agent detected") : tr("New agents detected"), 24);
    page->addText(toldOf(kinds));
    page->m_layout->addSpacing(4);
    const auto listed = [kinds, &connections = context.connections] {
        Agents result = connections.offeredAgents();
        std::erase_if(result, [&](const AgentAdapter *agent) {
            return std::ranges::find(kinds, agent->kind()) == kinds.end();
        });
        return result;
    };
    page->addAgents(listed, tr("You can always connect or disconnect agents in Settings."), {});
    return page;
}

void OnboardingPage::refresh() {
    for (const auto &update : m_updates) {
        update();
    }
}

int OnboardingPage::heightForWidth(int width) const {
    return m_layout->totalMinimumHeightForWidth(width);
}

QString OnboardingPage::panelKey() const {
    const ProgramActions &program = m_context.program;
    return PlatformWords::panelKey(m_context.settings.panelKey(), program.panelKeyState(),
                                   program.desktopChoosesKeys());
}

void OnboardingPage::addMascot(int side) {
    auto *mascot = new PixelFrameView(side / 8.0, this);
    mascot->setFrame(PixelArt::alienDone(), Colors::mascot);
    m_layout->addWidget(mascot, 0, Qt::AlignHCenter);
}

void OnboardingPage::addTitle(const QString &title, int size) {
    auto *label =
        new TextLabel(Typography::text(size, QFont::DemiBold), Colors::primaryText, 0, this);
    label->setText(title);
    label->setAlignment(Qt::AlignHCenter);
    m_layout->addWidget(label);
}

void OnboardingPage::addText(const QString &text) {
    auto *label = new TextLabel(Typography::text(14), Colors::secondaryText, 0, this);
    label->setText(text);
    label->setAlignment(Qt::AlignHCenter);
    m_layout->addWidget(label);
}

void OnboardingPage::addFootnote(const QString &usual) {
    auto *label =
        new TextLabel(Typography::text(Typography::secondarySize), Colors::secondaryText, 0, this);
    label->setAlignment(Qt::AlignHCenter);
    m_layout->addWidget(label);
    m_updates.push_back([label, usual, &connections = m_context.connections] {
        const auto notice = connections.notice();
        label->setText(notice.value_or(usual));
        label->setColor(notice ? Colors::warning : Colors::secondaryText);
        label->setVisible(!label->text().isEmpty());
    });
}

void OnboardingPage::addPill(const std::function<QString()> &text) {
    auto *pill = new Pill(this);
    m_layout->addWidget(pill, 0, Qt::AlignHCenter);
    m_updates.push_back([pill, text] { pill->setText(text()); });
}

void OnboardingPage::addAgents(const std::function<Agents()> &listed, const QString &footnote,
                               const QString &without) {
    auto *scroll = new QScrollArea(this);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setFocusPolicy(Qt::NoFocus);
    auto *content = new QWidget(scroll);
    auto *layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 8, 0);
    auto *list = new AgentList(m_context.connections, AgentRow::Detail::name, content);
    layout->addWidget(list);
    auto *none = new TextLabel(Typography::text(14), Colors::primaryText, 0, content);
    none->setText(without);
    none->setAlignment(Qt::AlignHCenter);
    layout->addWidget(none);
    layout->addStretch();
    scroll->setWidget(content);
    scroll->viewport()->setAutoFillBackground(false);
    content->setAutoFillBackground(false);
    m_layout->addWidget(scroll, 1);
    m_updates.push_back([=] {
        const Agents agents = listed();
        list->show(agents);
        none->setVisible(agents.empty());
    });
    addFootnote(footnote);
}

TextLabel *OnboardingPage::addHint(SystemImage image) {
    auto *label = new TextLabel(Typography::text(14), Colors::primaryText, 0, nullptr);
    m_layout->addWidget(rowOf(image, Colors::questionAccent, label, this));
    return label;
}

void OnboardingPage::addWindowFocus() {
    const auto text = [](const QString &words) {
        auto *label =
            new TextLabel(Typography::text(Typography::nameSize), Colors::primaryText, 0, nullptr);
        label->setText(words);
        return label;
    };
    QWidget *granted = rowOf(SystemImage::checkmarkCircleFill, Colors::connected,
                             text(tr("Window focus granted")), this);
    QWidget *refused = rowOf(SystemImage::macwindow, Colors::secondaryText,
                             text(PlatformWords::windowFocusNeeds()), this);
    m_layout->addWidget(granted);
    m_layout->addWidget(refused);
    m_updates.push_back([granted, refused, canFocusWindows = m_context.program.canFocusWindows] {
        granted->setVisible(canFocusWindows());
        refused->setVisible(!canFocusWindows());
    });
}

void OnboardingPage::addLaunchAtLogin() {
    auto *toggle = new ToggleRow(tr("&Launch at login"), this);
    m_layout->addWidget(toggle);
    connect(toggle, &QAbstractButton::clicked, this, m_context.program.setLaunchAtLogin);
    m_updates.push_back([toggle, launchAtLogin = m_context.program.launchAtLogin] {
        toggle->setChecked(launchAtLogin());
    });
}

} // namespace morvane

#include "moc_OnboardingPage.cpp"

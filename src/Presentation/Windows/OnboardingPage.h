#pragma once

#include "Core/Agents/AgentKind.h"
#include "Presentation/Style/SystemImage.h"
#include "Presentation/Windows/WindowContext.h"

#include <QWidget>

#include <functional>
#include <vector>

class QVBoxLayout;

namespace morvane {

class AgentAdapter;
class TextLabel;

/// One step of the welcome: the mascot, a title and a text, and below them what the step is about.
class OnboardingPage : public QWidget {
    Q_OBJECT

public:
    static OnboardingPage *welcome(const WindowContext &context, QWidget *parent);
    static OnboardingPage *connectAgents(const WindowContext &context, QWidget *parent);
    static OnboardingPage *ready(const WindowContext &context, QWidget *parent);
    static OnboardingPage *newAgents(const std::vector<AgentKind> &kinds,
                                     const WindowContext &context, QWidget *parent);

    /// Shows how everything stands now.
    void refresh();

    /// The least height, with the list of agents, which scrolls by itself, at its smallest.
    int heightForWidth(int width) const override;

private:
    using Agents = std::vector<const AgentAdapter *>;

    OnboardingPage(const WindowContext &context, QWidget *parent);

    QString panelKey() const;
    void addMascot(int side);
    void addTitle(const QString &title, int size);
    void addText(const QString &text);
    /// Shows the connections' notice, or `usual` if there is none.
    void addFootnote(const QString &usual);
    void addPill(const std::function<QString()> &text);
    /// Shows `without` while there is nothing to list.
    void addAgents(const std::function<Agents()> &listed, const QString &footnote,
                   const QString &without);
    TextLabel *addHint(SystemImage image);
    void addWindowFocus();
    void addLaunchAtLogin();

    WindowContext m_context;
    QVBoxLayout *m_layout;
    std::vector<std::function<void()>> m_updates;
};

} // namespace morvane

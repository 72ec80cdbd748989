#pragma once

#include "Core/Agents/AgentKind.h"
#include "Presentation/Style/KeyStroke.h"
#include "Presentation/Windows/WindowContext.h"

#include <QWidget>

#include <variant>
#include <vector>

namespace morvane {

class FormButton;
class OnboardingPage;
class PageStack;
class PictureView;

/// Gets agents connected: in three steps for a newcomer, and in one for agents that have appeared
/// on the machine since. Connecting one doesn't move on by itself.
class OnboardingView : public QWidget {
    Q_OBJECT

public:
    struct FirstRun {};
    using NewAgents = std::vector<AgentKind>;
    using Mode = std::variant<FirstRun, NewAgents>;

    OnboardingView(const Mode &mode, const WindowContext &context, QWidget *parent);

    int step() const { return m_step; }

    void go(int step);

    /// Shows how everything stands now.
    void refresh();

signals:
    /// "Done" was pressed.
    void finished();

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;

private:
    void addPages(const Mode &mode);
    void addPage(OnboardingPage *page);
    QWidget *makeFooter();
    QWidget *makeDots();
    void goOn();
    int lastStep() const { return static_cast<int>(m_pages.size()) - 1; }

    WindowContext m_context;
    int m_step = 0;
    PageStack *m_stack;
    std::vector<OnboardingPage *> m_pages;
    std::vector<PictureView *> m_dots;
    FormButton *m_back = nullptr;
    FormButton *m_next = nullptr;
    KeyStroke m_return;
};

} // namespace morvane

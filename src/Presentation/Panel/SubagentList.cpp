#include "Presentation/Panel/SubagentList.h"

#include "Core/Ground/BoundedText.h"
#include "Presentation/Style/Colors.h"
#include "Presentation/Style/SystemImage.h"
#include "Presentation/Style/TextLabel.h"
#include "Presentation/Style/Typography.h"

#include <QPainter>
#include <QVBoxLayout>

namespace morvane {

namespace {

constexpr int mostTaskLines = 100; ///< the list around it scrolls
constexpr int chevronSpace = 13;
constexpr double chevronSide = 7;
constexpr double focusRadius = 4;

} // namespace

SubagentList::SubagentList(QWidget *parent)
    : PanelButton(parent), m_count(new TextLabel(Typography::text(Typography::secondarySize),
                                                 Colors::secondaryText, 1, this)),
      m_tasks(new TextLabel(Typography::text(Typography::secondarySize), Colors::tertiaryText,
                            mostTaskLines, this)) {
    setCheckable(true);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    setCursor(Qt::PointingHandCursor);
    auto *lines = new QVBoxLayout(this);
    lines->setContentsMargins(chevronSpace, 3, 0, 0);
    lines->setSpacing(2);
    lines->addWidget(m_count);
    lines->addWidget(m_tasks);
    m_tasks->hide();
    connect(this, &SubagentList::toggled, m_tasks, &QWidget::setVisible);
    hide();
}

void SubagentList::setSubagents(const QList<Subagent> &subagents) {
    const QString count =
        subagents.size() == 1 ? tr("1 subagent") : tr("%1 subagents").arg(subagents.size());
    QStringList tasks;
    for (const Subagent &subagent : subagents) {
        tasks.append((subagent.done ? QStringLiteral("✓  ") : QStringLiteral("·  ")) +
                     BoundedText::of(subagent.task, BoundedText::lineLength));
    }
    m_count->setText(count);
    setAccessibleName(count);
    m_tasks->setText(tasks.join(u'\n'));
    setVisible(!subagents.isEmpty());
}

void SubagentList::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    const QRectF frame(0, m_count->geometry().center().y() - chevronSide / 2 + 0.5, chevronSide,
                       chevronSide);
    const SystemImage image = isChecked() ? SystemImage::chevronDown : SystemImage::chevronRight;
    morvane::paint(painter, image, frame, Colors::tertiaryText);
    paintFocus(painter, focusRadius);
}

} // namespace morvane

#include "moc_SubagentList.cpp"

#include "Presentation/Panel/SessionMetaLine.h"

#include "Core/Sessions/Session.h"
#include "Presentation/Panel/ContextBadge.h"
#include "Presentation/Panel/PermissionModeBadge.h"
#include "Presentation/Style/Colors.h"
#include "Presentation/Style/SystemImage.h"

#include <QHBoxLayout>

namespace morvane {

SessionMetaLine::SessionMetaLine(QWidget *parent)
    : QWidget(parent), m_host(new Badge(this)), m_branch(new Badge(this)),
      m_mode(new PermissionModeBadge(this)), m_context(new ContextBadge(this)) {
    m_branch->setPicture([](QPainter &painter, const QRectF &frame, const QColor &color) {
        paint(painter, SystemImage::arrowTriangleBranch, frame, color);
    });
    auto *line = new QHBoxLayout(this);
    line->setContentsMargins(0, 2, 0, 0);
    line->setSpacing(6);
    for (Badge *badge : std::initializer_list<Badge *>{m_host, m_branch, m_mode, m_context}) {
        line->addWidget(badge);
    }
    line->addStretch();
}

void SessionMetaLine::setSession(const Session &session) {
    m_host->setContent(session.hostAppName.value_or(QString()), Colors::secondaryText);
    m_host->setAccessibleName(tr("in %1").arg(m_host->text()));
    m_branch->setContent(session.gitBranch.value_or(QString()), Colors::tertiaryText);
    m_branch->setAccessibleName(tr("branch %1").arg(m_branch->text()));
    m_mode->setMode(session.notablePermissionMode());
    m_context->setSession(session);
    setVisible(!m_host->isHidden() || !m_branch->isHidden() || !m_mode->isHidden() ||
               !m_context->isHidden());
}

} // namespace morvane

#include "moc_SessionMetaLine.cpp"

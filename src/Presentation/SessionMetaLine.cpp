#include "Presentation/SessionMetaLine.h"

#include "Core/Session.h"
#include "Presentation/Colors.h"
#include "Presentation/ContextBadge.h"
#include "Presentation/PermissionModeBadge.h"

#include <QHBoxLayout>

namespace morvane {

SessionMetaLine::SessionMetaLine(QWidget *parent)
    : QWidget(parent), m_host(new Badge(this)), m_branch(new Badge(this)),
      m_mode(new PermissionModeBadge(this)), m_context(new ContextBadge(this)) {
    m_branch->setImage(SystemImage::arrowTriangleBranch);
    auto *line = new QHBoxLayout(this);
    line->setContentsMargins(0, 2, 0, 0);
    line->setSpacing(6);
    for (Badge *badge :
         {m_host, m_branch, static_cast<Badge *>(m_mode), static_cast<Badge *>(m_context)}) {
        line->addWidget(badge);
    }
    line->addStretch();
}

void SessionMetaLine::setSession(const Session &session) {
    m_host->setContent(session.hostAppName.value_or(QString()), Colors::secondaryText);
    m_branch->setContent(session.gitBranch.value_or(QString()), Colors::white(0.5));
    m_mode->setMode(session.notablePermissionMode());
    m_context->setSession(session);
    setVisible(!m_host->isHidden() || !m_branch->isHidden() || !m_mode->isHidden() ||
               !m_context->isHidden());
}

} // namespace morvane

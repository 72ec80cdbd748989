#include "Presentation/Panel/CompactView.h"

#include "Presentation/Panel/CompactInfoView.h"
#include "Presentation/Panel/CompactStatusView.h"
#include "Presentation/Style/ActivateLayouts.h"
#include "Presentation/Style/ReadAsText.h"

#include <QHBoxLayout>

namespace morvane {

CompactView::CompactView(const PanelContext &context, QWidget *parent)
    : QWidget(parent), m_status(new CompactStatusView(context, this)),
      m_info(new CompactInfoView(context, m_status->mascot(), this)) {
    readAsText(*this);
    auto *line = new QHBoxLayout(this);
    line->setContentsMargins(14, 6, 14, 7);
    line->setSpacing(9);
    line->addWidget(m_status);
    line->addWidget(m_info);
    connect(m_info, &CompactInfoView::timeChanged, this, [this] {
        describe();
        emit contentResized();
    });
}

void CompactView::refresh() {
    m_status->refresh();
    m_info->refresh();
    describe();
    activateLayouts(*this);
}

void CompactView::describe() {
    QStringList words{m_info->count(), m_status->accessibleName(), m_info->time(),
                      m_info->milestone()};
    words.removeAll(QString());
    setAccessibleName(words.join(QStringLiteral(", ")));
}

QSize CompactView::sizeHint() const {
    return layout()->totalSizeHint();
}

} // namespace morvane

#include "moc_CompactView.cpp"

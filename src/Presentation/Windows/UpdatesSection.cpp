#include "Presentation/Windows/UpdatesSection.h"

#include "Core/Ground/TimeFormat.h"
#include "Core/Shell/UpdateManager.h"
#include "Platform/Scheduler.h"
#include "Presentation/Style/TextLabel.h"

#include <QHBoxLayout>

namespace morvane {

UpdatesSection::UpdatesSection(const WindowContext &context, QWidget *parent)
    : FormSection(tr("Updates"), parent), m_updates(context.updates),
      m_scheduler(context.scheduler) {
    addToggle(
        tr("Check for up&dates automatically"),
        [&updates = context.updates] { return updates.automaticChecks(); },
        [&updates = context.updates](bool on) { updates.setAutomaticChecks(on); });
    addCaption(tr("Once a day Morvane's server is asked for a newer version, and you are always "
                  "asked before anything is installed. An update is verified against the signing "
                  "key first, and is otherwise discarded."));
    TextLabel *reason = addCaption();
    onRefresh([reason, &updates = m_updates] {
        reason->setText(updates.unavailableReason().value_or(QString()));
        reason->setVisible(updates.unavailableReason().has_value());
    });
    addCheck(context.program);
}

void UpdatesSection::addCheck(const ProgramActions &program) {
    TextLabel *last = makeText({});
    FormButton *check = makeButton(tr("Check no&w"), program.checkForUpdates);
    addRow(last)->addWidget(check);
    onRefresh([this, last, check] {
        check->setEnabled(m_updates.canCheck());
        showLastCheck(*last);
    });
}

void UpdatesSection::showLastCheck(TextLabel &label) {
    m_nextText.cancel();
    const auto date = m_updates.lastUpdateCheckDate();
    if (!date) {
        label.setText(tr("never checked"));
        return;
    }
    const Date now = m_scheduler.now();
    label.setText(tr("last checked %1").arg(TimeFormat::ago(*date, now)));
    if (isVisible()) {
        m_nextText = m_scheduler.after(TimeFormat::untilAgoChanges(*date, now),
                                       [this, &label] { showLastCheck(label); });
    }
}

void UpdatesSection::showEvent(QShowEvent *event) {
    FormSection::showEvent(event);
    refresh();
}

} // namespace morvane

#include "moc_UpdatesSection.cpp"

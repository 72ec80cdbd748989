#include "Presentation/Windows/RemovalSection.h"

#include "Presentation/Style/PlatformWords.h"

#include <QMessageBox>
#include <QPushButton>

namespace morvane {

RemovalSection::RemovalSection(const WindowContext &context, QWidget *parent)
    : FormSection({}, parent), m_program(context.program) {
    addButtons({makeButton(
        tr("Remove Morvane"), [this] { confirmRemoveEverything(); },
        FormButton::Role::destructive)});
    addCaption(tr("Disconnects every agent, deletes ~/.morvane, removes the login item, and clears "
                  "your preferences and session history. %1")
                   .arg(PlatformWords::removeTheProgram()));
}

/// The text is plain, because file names in it may look like markup.
QMessageBox *RemovalSection::makeAlert(const QString &message, const QString &text) {
    auto *alert = new QMessageBox(window());
    alert->setIcon(QMessageBox::Critical);
    alert->setWindowTitle(QStringLiteral("Morvane"));
    alert->setTextFormat(Qt::PlainText);
    alert->setText(message);
    alert->setInformativeText(text);
    alert->setAttribute(Qt::WA_DeleteOnClose);
    return alert;
}

void RemovalSection::confirmRemoveEverything() {
    QMessageBox *alert = makeAlert(
        tr("Remove Morvane's hooks and data?"),
        tr("This disconnects every agent, deletes ~/.morvane, removes the login item, and clears "
           "your preferences and session history.\n\nYour agents' own settings files are otherwise "
           "left untouched, and a backup of each is written first. %1")
            .arg(PlatformWords::removeTheProgramToFinish()));
    const QAbstractButton *remove =
        alert->addButton(tr("Remove and Quit"), QMessageBox::DestructiveRole);
    QPushButton *cancel = alert->addButton(QMessageBox::Cancel);
    alert->setDefaultButton(cancel);
    alert->setEscapeButton(cancel);
    connect(alert, &QMessageBox::buttonClicked, this,
            [this, remove](const QAbstractButton *chosen) {
                if (chosen == remove) {
                    removeEverything();
                }
            });
    alert->open();
}

void RemovalSection::removeEverything() {
    QMessageBox *alert =
        makeAlert(tr("Morvane removed"),
                  tr("Removed:\n• %1\n\n%2")
                      .arg(m_program.removeEverything(), PlatformWords::removeTheProgram()));
    alert->setIcon(QMessageBox::Information);
    alert->addButton(tr("Quit"), QMessageBox::AcceptRole);
    connect(alert, &QMessageBox::finished, this, [this] { m_program.quit(); });
    alert->open();
}

} // namespace morvane

#include "moc_RemovalSection.cpp"

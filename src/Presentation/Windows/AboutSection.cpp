#include "Presentation/Windows/AboutSection.h"

#include "Core/Shell/BuildInfo.h"
#include "Presentation/Style/PlatformWords.h"
#include "Presentation/Style/TextLabel.h"

#include <QDesktopServices>
#include <QFile>
#include <QHBoxLayout>
#include <QMessageBox>
#include <QUrl>

namespace morvane {

AboutSection::AboutSection(QWidget *parent) : FormSection(tr("About"), parent) {
    addRow(tr("Version"))
        ->addWidget(makeText(tr("%1 (build %2)").arg(BuildInfo::version(), BuildInfo::build())));
    addRow(tr("Built"))->addWidget(makeText(BuildInfo::builtAtDescription()));
    if (const auto community = BuildInfo::communityURL()) {
        addRow(tr("Community & feedback"))
            ->addWidget(makeButton(tr("Open GitHub…"),
                                   [address = *community] { QDesktopServices::openUrl(address); }));
    }
    addRow(tr("Acknowledgements"))->addWidget(makeButton(tr("Acknowledgements"), [this] {
        showAcknowledgements();
    }));
}

void AboutSection::showAcknowledgements() {
    QFile file(QStringLiteral(":/acknowledgements/THIRD-PARTY.txt"));
    const QString text = file.open(QFile::ReadOnly) ? QString::fromUtf8(file.readAll())
                                                    : PlatformWords::acknowledgementsAreMissing();
    auto *alert = new QMessageBox(QMessageBox::NoIcon, tr("Acknowledgements"), text,
                                  QMessageBox::Close, window());
    alert->setTextFormat(Qt::PlainText);
    alert->setAttribute(Qt::WA_DeleteOnClose);
    alert->open();
}

} // namespace morvane

#include "moc_AboutSection.cpp"

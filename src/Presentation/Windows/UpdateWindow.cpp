#include "Presentation/Windows/UpdateWindow.h"

#include "Presentation/Style/Colors.h"
#include "Presentation/Style/TextLabel.h"
#include "Presentation/Style/Typography.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QVBoxLayout>

namespace morvane {

namespace {

using Phase = UpdateManager::Phase;

constexpr int startingWidth = 480;
constexpr int heightOfWords = 160; ///< without details
constexpr int heightWithDetails = 340;
constexpr int border = 22;
constexpr int titleSize = 16;

} // namespace

UpdateWindow::UpdateWindow(UpdateManager &updates)
    : ManagedWindow(tr("Morvane Update")), m_updates(updates) {
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(border, border, border, border);
    layout->setSpacing(10);
    m_title =
        new TextLabel(Typography::text(titleSize, QFont::DemiBold), Colors::primaryText, 0, this);
    m_explanation =
        new TextLabel(Typography::text(Typography::bodySize), Colors::secondaryText, 0, this);
    layout->addWidget(m_title);
    layout->addWidget(m_explanation);
    layout->addWidget(makeDetails(), 1);
    layout->addStretch();
    layout->addLayout(makeButtons());
    resize(startingWidth, heightOfWords);
    connect(&m_updates, &UpdateManager::changed, this, &UpdateWindow::refresh);
    refresh();
}

QPlainTextEdit *UpdateWindow::makeDetails() {
    m_details = new QPlainTextEdit(this);
    m_details->setReadOnly(true);
    m_details->setTabChangesFocus(true);
    m_details->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_details->hide();
    return m_details;
}

QLayout *UpdateWindow::makeButtons() {
    auto *layout = new QHBoxLayout;
    m_skip = new FormButton(tr("&Skip this version"), FormButton::Role::ordinary, this);
    m_close = new FormButton({}, FormButton::Role::ordinary, this);
    m_download = new FormButton(tr("&Download"), FormButton::Role::primary, this);
    layout->addWidget(m_skip);
    layout->addStretch();
    layout->addWidget(m_close);
    layout->addWidget(m_download);
    connect(m_skip, &QPushButton::clicked, this, [this] {
        m_updates.skip();
        close();
    });
    connect(m_close, &QPushButton::clicked, this, &QWidget::close);
    connect(m_download, &QPushButton::clicked, &m_updates, &UpdateManager::download);
    return layout;
}

/// Once the manager is idle the window is being closed, so it keeps its text.
void UpdateWindow::refresh() {
    const Phase phase = m_updates.phase();
    if (phase == Phase::idle) {
        return;
    }
    m_title->setText(title());
    m_explanation->setText(explanation());
    m_explanation->setVisible(!m_explanation->text().isEmpty());
    showDetails(details());
    const bool isOffer = phase == Phase::offered;
    const bool isUnderWay = phase == Phase::checking || phase == Phase::downloading;
    m_skip->setVisible(isOffer);
    m_download->setVisible(isOffer);
    m_close->setText(isOffer ? tr("&Later") : isUnderWay ? tr("&Cancel") : tr("&Close"));
}

void UpdateWindow::showDetails(const QString &text) {
    const bool isCommand = m_updates.phase() == Phase::handedOver;
    m_details->setFont(isCommand ? Typography::code(Typography::bodySize)
                                 : Typography::text(Typography::bodySize));
    m_details->setAccessibleName(isCommand ? tr("Command") : tr("Release notes"));
    // Setting the same text again would lose the scroll position and the selection.
    if (text != m_details->toPlainText()) {
        m_details->setPlainText(text);
    }
    if (m_details->isHidden() != text.isEmpty()) {
        m_details->setVisible(!text.isEmpty());
        resize(width(), text.isEmpty() ? heightOfWords : heightWithDetails);
    }
}

QString UpdateWindow::title() const {
    const QString &offered = m_updates.offer().version;
    switch (m_updates.phase()) {
    case Phase::idle:
        return {};
    case Phase::checking:
        return tr("Checking for updates…");
    case Phase::upToDate:
        return tr("Morvane is up to date");
    case Phase::offered:
        return tr("Morvane %1 is available").arg(offered);
    case Phase::downloading:
        return tr("Downloading Morvane %1…").arg(offered);
    case Phase::handedOver:
        return tr("Morvane %1 is ready to be installed").arg(offered);
    case Phase::failed:
        return tr("No update this time");
    }
    return {};
}

QString UpdateWindow::explanation() const {
    switch (m_updates.phase()) {
    case Phase::upToDate:
        return tr("%1 is the newest version.").arg(m_updates.currentVersion());
    case Phase::offered:
        return tr("You have %1. The package is verified once it is downloaded, and then opened in "
                  "your desktop's installer, where you decide whether to install it.")
            .arg(m_updates.currentVersion());
    case Phase::handedOver:
        return m_updates.installerOpened()
                   ? tr("The package is verified, and your desktop was asked to open it in its "
                        "installer. Should none appear, install it by this command in a terminal:")
                   : tr("The package is verified. This desktop names no installer for it; install "
                        "it by this command in a terminal:");
    case Phase::failed:
        return m_updates.failure();
    case Phase::idle:
    case Phase::checking:
    case Phase::downloading:
        break;
    }
    return {};
}

QString UpdateWindow::details() const {
    switch (m_updates.phase()) {
    case Phase::offered:
    case Phase::downloading:
        return m_updates.offer().notes;
    case Phase::handedOver:
        return QStringLiteral("sudo apt install '%1'")
            .arg(QString(m_updates.packagePath()).replace(u'\'', QLatin1String(R"('\'')")));
    default:
        return {};
    }
}

void UpdateWindow::closeEvent(QCloseEvent *event) {
    event->accept();
    m_updates.dismiss();
}

} // namespace morvane

#include "moc_UpdateWindow.cpp"

#pragma once

#include "Core/Shell/UpdateManager.h"
#include "Presentation/Windows/FormButton.h"
#include "Presentation/Windows/ManagedWindow.h"

class QPlainTextEdit;

namespace morvane {

class TextLabel;

/// Shows how far an update is, and takes the person's answers. Closing it ends what is under way.
/// Owned by `AppDelegate`.
class UpdateWindow : public ManagedWindow {
    Q_OBJECT

public:
    /// The manager must outlive the window.
    explicit UpdateWindow(UpdateManager &updates);

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    QLayout *makeButtons();
    QPlainTextEdit *makeDetails();
    void refresh();
    void showDetails(const QString &text);
    QString title() const;
    QString explanation() const;
    QString details() const;

    UpdateManager &m_updates;
    TextLabel *m_title = nullptr;
    TextLabel *m_explanation = nullptr;
    QPlainTextEdit *m_details = nullptr; ///< release notes, or a command to copy
    FormButton *m_skip = nullptr;
    FormButton *m_close = nullptr;
    FormButton *m_download = nullptr;
};

} // namespace morvane

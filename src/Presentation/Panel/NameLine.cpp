#include "Presentation/Panel/NameLine.h"

#include "Core/Ground/BoundedText.h"
#include "Presentation/Overlay/InlineNameField.h"
#include "Presentation/Panel/PencilButton.h"
#include "Presentation/Style/TextLabel.h"
#include "Presentation/Style/Typography.h"

#include <QHBoxLayout>

namespace morvane {

namespace {

constexpr int lineHeight = 20;
constexpr int fieldWidth = 260;

} // namespace

NameLine::NameLine(const PanelContext &context, const QColor &color, QWidget &row)
    : QWidget(&row), m_context(context),
      m_name(
          new TextLabel(Typography::text(Typography::nameSize, QFont::DemiBold), color, 1, this)),
      m_pencil(new PencilButton(row, this)), m_line(new QHBoxLayout(this)) {
    setFixedHeight(lineHeight);
    m_pencil->hide();
    m_line->setContentsMargins(0, 0, 0, 0);
    m_line->setSpacing(6);
    m_line->addWidget(m_name);
    m_line->addWidget(m_pencil);
    m_line->addStretch();
    connect(m_pencil, &PencilButton::clicked, this, &NameLine::beginEditing);
}

void NameLine::setName(const QString &name) {
    m_wholeName = name;
    m_name->setText(BoundedText::of(name, BoundedText::lineLength));
    m_pencil->setAccessibleName(tr("Rename %1").arg(m_name->text()));
}

QString NameLine::name() const {
    return m_name->text();
}

void NameLine::setRenamable(const QString &cwd) {
    m_cwd = cwd;
    m_pencil->setVisible(!cwd.isEmpty() && !m_name->isHidden());
}

void NameLine::addBadge(QWidget &badge) {
    m_line->insertWidget(m_line->indexOf(m_pencil), &badge);
}

void NameLine::abandonEditing() {
    if (m_field) {
        m_field->abandon();
    }
}

void NameLine::beginEditing() {
    if (m_field) {
        return;
    }
    const InlineNameField::Setup setup{.initial = m_wholeName,
                                       .placeholder = tr("session"),
                                       .title = tr("Rename %1").arg(m_name->text()),
                                       .commitsOnBlur = true};
    m_field = new InlineNameField(setup, m_context, this);
    m_field->setFont(m_name->font());
    m_field->setFixedSize(fieldWidth, lineHeight);
    connect(m_field, &InlineNameField::commit, this, [this, cwd = m_cwd](const QString &name) {
        endEditing();
        emit renamed(cwd, name);
    });
    connect(m_field, &InlineNameField::cancel, this, &NameLine::endEditing);
    m_name->hide();
    m_pencil->hide();
    m_line->insertWidget(0, m_field);
    m_field->show();
}

void NameLine::endEditing() {
    m_line->removeWidget(m_field);
    m_name->show();
    m_pencil->setVisible(!m_cwd.isEmpty());
    // Keeps the keyboard in this row.
    m_pencil->setFocus();
}

} // namespace morvane

#include "moc_NameLine.cpp"

#include "Presentation/Windows/FormSection.h"

#include "Presentation/Style/Colors.h"
#include "Presentation/Style/TextLabel.h"
#include "Presentation/Style/Typography.h"
#include "Presentation/Windows/InForm.h"
#include "Presentation/Windows/PictureView.h"
#include "Presentation/Windows/ToggleRow.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

#include <utility>

namespace morvane {

namespace {

constexpr int inset = 14;       ///< from the ground's edge to the rows
constexpr int rowSpace = 14;    ///< between two rows, with a line in the middle
constexpr int captionSpace = 6; ///< between a row and its caption
constexpr int indentation = 16;
constexpr double corner = 9;
constexpr const char *isCaption = "isCaption";

} // namespace

FormSection::FormSection(const QString &heading, QWidget *parent) : QWidget(parent) {
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(7);
    if (!heading.isEmpty()) {
        setAccessibleName(heading);
        auto *title = new TextLabel(Typography::text(Typography::nameSize, QFont::DemiBold),
                                    Colors::primaryText, 0, this);
        title->setText(heading);
        title->setContentsMargins(inset, 0, inset, 0);
        layout->addWidget(title);
    }
    m_ground = new QWidget(this);
    m_rows = new QVBoxLayout(m_ground);
    m_rows->setContentsMargins(inset, inset - 2, inset, inset - 2);
    m_rows->setSpacing(0);
    layout->addWidget(m_ground);
}

void FormSection::onRefresh(std::function<void()> update) {
    m_updates.push_back(std::move(update));
}

void FormSection::refresh() {
    for (const auto &update : m_updates) {
        update();
    }
    spaceRows();
    this->update();
}

/// Puts a space above each visible row but the first.
void FormSection::spaceRows() {
    bool isFirst = true;
    for (int index = 0; index < m_rows->count(); ++index) {
        QWidget *row = m_rows->itemAt(index)->widget();
        if (!row->isHidden()) {
            const int space = row->property(isCaption).toBool() ? captionSpace : rowSpace;
            row->setContentsMargins(0, std::exchange(isFirst, false) ? 0 : space, 0, 0);
            // Without this the section's layout would learn of the change only some time later.
            row->updateGeometry();
        }
    }
}

void FormSection::addWidget(QWidget *row) {
    m_rows->addWidget(row);
}

QHBoxLayout *FormSection::startRow() {
    auto *row = new QWidget(m_ground);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    m_rows->addWidget(row);
    return layout;
}

QHBoxLayout *FormSection::addRow(QWidget *label) {
    QHBoxLayout *layout = startRow();
    layout->addWidget(label, 1);
    return layout;
}

QHBoxLayout *FormSection::addRow(const QString &label) {
    return addRow(makeText(label));
}

QHBoxLayout *FormSection::addRow(SystemImage image, const QColor &tint, QWidget *label) {
    QHBoxLayout *layout = addRow(label);
    layout->insertWidget(0, new PictureView(15, image, tint, m_ground), 0, Qt::AlignTop);
    return layout;
}

void FormSection::addButtons(std::initializer_list<FormButton *> buttons) {
    QHBoxLayout *layout = startRow();
    for (FormButton *button : buttons) {
        layout->addWidget(button);
    }
    layout->addStretch();
}

ToggleRow *FormSection::addToggle(const QString &text, Read read, Write write) {
    auto *toggle = new ToggleRow(text, m_ground);
    startRow()->addWidget(toggle);
    connect(toggle, &QAbstractButton::clicked, this, std::move(write));
    onRefresh([toggle, read = std::move(read)] { toggle->setChecked(read()); });
    return toggle;
}

ToggleRow *FormSection::addToggle(const QString &text, MorvaneSettings &settings,
                                  bool (MorvaneSettings::*read)() const,
                                  void (MorvaneSettings::*write)(bool)) {
    return addToggle(
        text, [&settings, read] { return (settings.*read)(); },
        [&settings, write](bool on) { (settings.*write)(on); });
}

void FormSection::addPicker(const QString &label, const QStringList &options,
                            const std::function<int()> &read,
                            const std::function<void(int)> &write) {
    auto *text = new QLabel(label, m_ground);
    text->setFont(Typography::text(Typography::nameSize));
    auto *picker = new Picker(m_ground);
    picker->addItems(options);
    text->setBuddy(picker);
    addRow(text)->addWidget(picker);
    connect(picker, &QComboBox::activated, this, write);
    onRefresh([picker, read] { picker->setCurrentIndex(read()); });
}

void FormSection::indent(QWidget *widget) {
    QLayout *row = widget->parentWidget()->layout();
    QMargins margins = row->contentsMargins();
    margins.setLeft(indentation);
    row->setContentsMargins(margins);
}

TextLabel *FormSection::addCaption(const QString &text) {
    auto *caption = new TextLabel(Typography::text(Typography::secondarySize),
                                  Colors::secondaryText, 0, m_ground);
    caption->setText(text);
    caption->setProperty(isCaption, true);
    addWidget(caption);
    return caption;
}

void FormSection::addFooter(const QString &text) {
    auto *footer =
        new TextLabel(Typography::text(Typography::secondarySize), Colors::secondaryText, 0, this);
    footer->setContentsMargins(inset, 0, inset, 0);
    footer->setText(text);
    layout()->addWidget(footer);
}

TextLabel *FormSection::makeText(const QString &text) {
    auto *label =
        new TextLabel(Typography::text(Typography::nameSize), Colors::primaryText, 1, m_ground);
    label->setText(text);
    return label;
}

FormButton *FormSection::makeButton(const QString &text, const std::function<void()> &pressed,
                                    FormButton::Role role) {
    auto *button = new FormButton(text, role, m_ground);
    connect(button, &QAbstractButton::clicked, this, pressed);
    return button;
}

void FormSection::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Colors::formGround);
    painter.drawRoundedRect(m_ground->geometry(), corner, corner);
    painter.setRenderHint(QPainter::Antialiasing, false);
    bool isFirst = true;
    for (int index = 0; index < m_rows->count(); ++index) {
        const QWidget *row = m_rows->itemAt(index)->widget();
        if (row->isHidden()) {
            continue;
        }
        if (!std::exchange(isFirst, false) && !row->property(isCaption).toBool()) {
            const int top = row->mapTo(this, QPoint(0, rowSpace / 2)).y();
            painter.fillRect(QRect(m_ground->x() + inset, top, m_ground->width() - 2 * inset, 1),
                             Colors::hairline);
        }
    }
}

} // namespace morvane

#include "moc_FormSection.cpp"

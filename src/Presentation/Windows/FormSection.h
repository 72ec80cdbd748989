#pragma once

#include "Presentation/Style/SystemImage.h"
#include "Presentation/Windows/FormButton.h"

#include <QWidget>

#include <functional>
#include <initializer_list>
#include <vector>

class QHBoxLayout;
class QVBoxLayout;

namespace morvane {

class MorvaneSettings;
class TextLabel;
class ToggleRow;

/// A group of rows on one background, with a heading above and a small text below. Its owner calls
/// `refresh` whenever something that it shows has changed.
class FormSection : public QWidget {
    Q_OBJECT

public:
    /// There is no heading if `heading` is empty.
    FormSection(const QString &heading, QWidget *parent);

    void refresh();

protected:
    void paintEvent(QPaintEvent *event) override;

    using Read = std::function<bool()>;
    using Write = std::function<void(bool)>;

    /// `update` is called at each `refresh`.
    void onRefresh(std::function<void()> update);

    ToggleRow *addToggle(const QString &text, Read read, Write write);

    /// A toggle for one of the settings.
    ToggleRow *addToggle(const QString &text, MorvaneSettings &settings,
                         bool (MorvaneSettings::*read)() const,
                         void (MorvaneSettings::*write)(bool));

    /// A choice of one option; `read` and `write` go by its index in `options`.
    void addPicker(const QString &label, const QStringList &options,
                   const std::function<int()> &read, const std::function<void(int)> &write);

    /// Indents the row of this widget, because it belongs to the row above.
    static void indent(QWidget *widget);

    /// A small text that explains the row above it, from edge to edge.
    TextLabel *addCaption(const QString &text = {});

    /// A row with a label at its left; the caller adds what goes at its right.
    QHBoxLayout *addRow(QWidget *label);
    QHBoxLayout *addRow(const QString &label);

    /// A row with a picture before its label.
    QHBoxLayout *addRow(SystemImage image, const QColor &tint, QWidget *label);

    void addButtons(std::initializer_list<FormButton *> buttons);

    void addWidget(QWidget *row);
    void addFooter(const QString &text);

    TextLabel *makeText(const QString &text);
    FormButton *makeButton(const QString &text, const std::function<void()> &pressed,
                           FormButton::Role role = FormButton::Role::ordinary);

private:
    void spaceRows();
    QHBoxLayout *startRow();

    QWidget *m_ground = nullptr; ///< the background that holds the rows
    QVBoxLayout *m_rows = nullptr;
    std::vector<std::function<void()>> m_updates;
};

} // namespace morvane

#pragma once

#include <QPointer>
#include <QWidget>

class QHBoxLayout;

namespace morvane {

class InlineNameField;
class PencilButton;
class TextLabel;
struct PanelContext;

/// The first line of a row: the name, badges, and the pencil, which turns the name into a text
/// field. Its height is the same with the field as without.
class NameLine : public QWidget {
    Q_OBJECT

public:
    /// The context outlives the line.
    NameLine(const PanelContext &context, const QColor &color, QWidget &row);

    /// Doesn't touch an open field.
    void setName(const QString &name);

    /// As much of the name as a line shows.
    QString name() const;

    /// Offers to rename this working directory, or nothing if it is empty. An open field still
    /// renames the directory for which it was opened.
    void setRenamable(const QString &cwd);

    /// Puts a badge after the name.
    void addBadge(QWidget &badge);

    /// Stays true until the event that has closed the field is over.
    bool isEditing() const { return !m_field.isNull(); }
    void abandonEditing();

signals:
    void renamed(const QString &cwd, const QString &name);

private:
    void beginEditing();
    void endEditing();

    const PanelContext &m_context;
    QString m_wholeName;
    TextLabel *m_name; ///< as much of it as a line shows
    PencilButton *m_pencil;
    QHBoxLayout *m_line;
    QString m_cwd;
    QPointer<InlineNameField> m_field;
};

} // namespace morvane

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
/// field. Of the same height with the field as without.
class NameLine : public QWidget {
    Q_OBJECT

public:
    /// The context outlives the line.
    NameLine(const PanelContext &context, const QColor &color, QWidget &row);

    /// Leaves a field that is open as it is.
    void setName(const QString &name);

    /// Of it as much as a line shows.
    QString name() const;

    /// Offers to rename this working directory; nothing for an empty one. A field that is open
    /// renames the one that it was opened for.
    void setRenamable(const QString &cwd);

    /// Puts something behind the name.
    void addBadge(QWidget &badge);

    /// True until the event that has closed the field is over.
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

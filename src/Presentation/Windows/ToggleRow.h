#pragma once

#include <QCheckBox>

namespace morvane {

/// A sentence with an on/off switch at its right. The whole row takes the press; the sentence wraps
/// where it has no room. An ampersand in it marks the mnemonic.
class ToggleRow : public QCheckBox {
    Q_OBJECT

public:
    ToggleRow(const QString &text, QWidget *parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

protected:
    bool hitButton(const QPoint &position) const override { return rect().contains(position); }
    void paintEvent(QPaintEvent *event) override;

private:
    QRect textFrame(int width) const;
    void paintSwitch(QPainter &painter) const;
};

} // namespace morvane

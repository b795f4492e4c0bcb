#pragma once

#include <QLabel>

namespace orvel {

/// A line of text that gives way: what does not fit is an ellipsis, and the whole of it is the tooltip then.
class ElidedLabel : public QLabel {
    Q_OBJECT

  public:
    explicit ElidedLabel(QWidget *parent = nullptr);

    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
};

} // namespace orvel

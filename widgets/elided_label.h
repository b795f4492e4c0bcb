#pragma once

#include <QLabel>

namespace orvel {

/// A line of text that gives way: what does not fit is an ellipsis, and the whole of it is the tooltip then.
class ElidedLabel : public QLabel {
    Q_OBJECT

  public:
    explicit ElidedLabel(QWidget *parent = nullptr);

    /// Hides the one of QLabel, which tells nobody that the tooltip is another one now.
    void setText(const QString &text);

    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

  private:
    void tellWhole();
};

} // namespace orvel

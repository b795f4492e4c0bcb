#pragma once

#include <QBoxLayout>
#include <QWidget>

namespace orvel {

/// Widgets beside each other where there is room, otherwise one above the other.
class Reflow : public QWidget {
  public:
    explicit Reflow(QWidget *parent = nullptr);

    /// The last one takes the room that is left.
    void add(QWidget *widget);

    [[nodiscard]] QSize sizeHint() const override { return beside(); }
    /// As narrow as the widest widget; as high as they are now.
    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    void resizeEvent(QResizeEvent *event) override;

  private:
    [[nodiscard]] QSize beside() const;
    [[nodiscard]] QSize above() const;

    QBoxLayout *layout_;
};

} // namespace orvel

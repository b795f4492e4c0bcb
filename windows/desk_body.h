#pragma once

#include <QWidget>

#include <functional>

namespace orvel {

/// The middle of the main window. Where not all of it fits, it is arranged densely: it may be as small as the window
/// wants, and what cannot be done without stays in sight.
class DeskBody : public QWidget {
  public:
    /// arrange: does so, or takes it back.
    explicit DeskBody(std::function<void(bool dense)> arrange, QWidget *parent = nullptr);

    [[nodiscard]] bool isDense() const { return isDense_; }
    /// As small as it gets when it is dense; before, the window must be able to come there.
    [[nodiscard]] QSize minimumSizeHint() const override { return isDense_ ? least() : QSize(0, 0); }

  protected:
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

  private:
    void choose();
    [[nodiscard]] QSize least() const;

    std::function<void(bool dense)> arrange_;
    bool isDense_ = false;
    bool isArranging_ = false;
    QSize gain_{0, 0}; ///< what dense saves, in pixels
};

} // namespace orvel

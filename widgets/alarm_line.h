#pragma once

#include <QLabel>
#include <QStringList>

namespace orvel {

/// A large line in the recording's red, with a sign and words, for what is wrong. Takes no room when there is nothing
/// to tell. For a screen reader it is an alert, and what is new in it is announced.
class AlarmLine : public QLabel {
    Q_OBJECT

  public:
    explicit AlarmLine(QWidget *parent = nullptr);

    /// Sentences, the most urgent first: that one is shown, with how many more there are; all of them stand in the
    /// tooltip.
    void tell(const QStringList &sentences);

    [[nodiscard]] QSize minimumSizeHint() const override;

  private:
    QStringList told_;
};

} // namespace orvel

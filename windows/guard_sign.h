#pragma once

#include <QLabel>
#include <QStringList>

namespace orvel {

/// A large line in the colour of a recording, with a sign and words, for what may cost a take. Takes no room when there
/// is nothing to tell. Whoever listens to a screen reader hears what is new.
class GuardSign : public QLabel {
    Q_OBJECT

  public:
    explicit GuardSign(QWidget *parent = nullptr);

    /// Sentences, the most urgent first: that one is shown, with how many more there are; all of them stand in the
    /// tooltip.
    void tell(const QStringList &sentences);

    [[nodiscard]] QSize minimumSizeHint() const override;

  private:
    QStringList told_;
};

} // namespace orvel

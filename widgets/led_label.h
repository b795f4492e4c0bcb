#pragma once

#include <QBasicTimer>
#include <QColor>
#include <QString>
#include <QWidget>

#include <vector>

namespace orvel {

/// One line of text in LED dots, 24 characters wide unless told otherwise. A longer text is cut off at a whole
/// character, or scrolls when auto-scroll is on.
class LedLabel : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString text READ text WRITE setText)
    Q_PROPERTY(QString valueText READ text)

  public:
    explicit LedLabel(QWidget *parent = nullptr);

    QString text() const { return text_; }
    bool autoScroll() const { return autoScroll_; }
    int characters() const { return characters_; }
    int scrollSpeed() const { return scrollSpeed_; }
    /// How many columns of dots the text has moved to the left; 0 when it stands still at its start.
    int scrollOffset() const { return offset_; }

    void setText(const QString &text);
    void setAutoScroll(bool on);
    /// Milliseconds in which the text moves by one character; 200 unless told otherwise.
    void setScrollSpeed(int millisPerCharacter);
    void setCharacters(int characters);
    void setColour(const QColor &colour);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

  private:
    double dotPitch() const;
    int visibleColumns() const;
    void followScrolling();

    QString text_;
    std::vector<quint16> columns_;
    QColor colour_;
    QBasicTimer timer_;
    int characters_ = 24;
    int scrollSpeed_ = 200;
    int offset_ = 0;
    bool autoScroll_ = false;
};

} // namespace orvel

#pragma once

#include "recording/input_level.h"
#include "widgets/lamp.h"

#include <QLabel>
#include <QWidget>

namespace orvel {

/// Beside the meters: how the microphone is spoken into, and the lamp of a take that was too loud.
class InputPanel : public QWidget {
    Q_OBJECT

  public:
    explicit InputPanel(QWidget *parent = nullptr);

    QLabel *const lblInput;
    Lamp *const ledClip;
    QLabel *const lblClip;

    void show(InputVerdict verdict, bool hasClipped);
    using QWidget::show;
};

} // namespace orvel

#pragma once

#include "windows/desk_key.h"

#include <QDialog>
#include <QTableWidget>

#include <vector>

namespace orvel {

/// The sheet of keys.
class frmKeys : public QDialog {
    Q_OBJECT

  public:
    explicit frmKeys(const std::vector<DeskKeyStroke> &keys, QWidget *parent = nullptr);

    QTableWidget *const lstKeys;

  Q_SIGNALS:
    void manualWanted();
};

} // namespace orvel

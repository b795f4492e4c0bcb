#include "windows/frm_adv.h"

#include "station/ignore_errors.h"
#include "windows/named.h"
#include "windows/on.h"

#include <QGridLayout>
#include <QSignalBlocker>

#include <algorithm>

namespace orvel {

frmAdv::frmAdv(AudioRecord &AudioRecord1, QWidget *parent)
    : QDialog(parent), Combo1(named(new QComboBox(this), "Combo1", tr("Eigenschap"))),
      Check1(named(new QCheckBox(tr("Ingeschakeld"), this), "Check1", tr("Ingeschakeld"))),
      Slider1(named(new QSlider(Qt::Horizontal, this), "Slider1", tr("Waarde"))),
      lblValue(named(new QLabel(this), "lblValue", tr("Ingestelde waarde"))),
      lblNone(new QLabel(tr("Deze ingang heeft geen geavanceerde eigenschappen."), this)),
      cmdClose(named(new QPushButton(QIcon(QStringLiteral(":/icons/exit.svg")), tr("Sluiten"), this), "cmdClose",
                     tr("Sluiten"))),
      AudioRecord1_(AudioRecord1) {
    setObjectName(QStringLiteral("frmAdv"));
    setWindowTitle(QStringLiteral("Geavanceerde instellingen"));
    lblNone->setObjectName(QStringLiteral("lblNone"));
    layOut();
    on(Combo1, &QComboBox::currentIndexChanged, this, &frmAdv::Combo1_Click);
    on(Check1, &QCheckBox::clicked, this, &frmAdv::Check1_Click);
    on(Slider1, &QSlider::valueChanged, this, &frmAdv::Slider1_Change);
    on(cmdClose, &QPushButton::clicked, this, &QDialog::accept);
}

void frmAdv::layOut() {
    const int letter = fontMetrics().averageCharWidth();
    Combo1->setToolTip(tr("De eigenschap om te bekijken of te wijzigen"));
    lblValue->setProperty("role", QStringLiteral("value"));
    lblValue->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    lblNone->setProperty("role", QStringLiteral("muted"));
    auto *caption = new QLabel(tr("Eigenschap"), this);
    caption->setBuddy(Combo1);
    auto *layout = new QGridLayout(this);
    layout->setHorizontalSpacing(2 * letter);
    layout->setVerticalSpacing(fontMetrics().height());
    layout->addWidget(caption, 0, 0);
    layout->addWidget(Combo1, 0, 1, 1, 2);
    layout->addWidget(Check1, 1, 1, 1, 2);
    layout->addWidget(Slider1, 1, 1);
    layout->addWidget(lblValue, 1, 2);
    layout->addWidget(lblNone, 1, 0, 1, 3);
    layout->addWidget(cmdClose, 2, 2, Qt::AlignRight);
    layout->setColumnStretch(1, 1);
    // The window keeps its size whichever editor is shown.
    const auto heights = {Check1->sizeHint().height(), Slider1->sizeHint().height(), fontMetrics().height() * 2};
    layout->setRowMinimumHeight(1, std::max(heights));
    layout->setRowStretch(1, 1);
    layout->setColumnMinimumWidth(2, cmdClose->sizeHint().width());
    setMinimumWidth(60 * letter);
}

void frmAdv::Form_Load() {
    setWindowTitle(AudioRecord1_.lineName() + QStringLiteral(": Advanced Properties"));
    showNothing();
    const QSignalBlocker quiet(Combo1);
    for (int index = 0; index < AudioRecord1_.propertyCount(); ++index) {
        Combo1->addItem(AudioRecord1_.lineProperty(index).name);
    }
    if (Combo1->count() > 0) {
        Combo1->setEnabled(true);
        lblNone->hide();
        showProperty();
    }
}

void frmAdv::showNothing() {
    const QSignalBlocker quiet(Combo1);
    Combo1->clear();
    Combo1->setEnabled(false);
    Check1->hide();
    Slider1->hide();
    lblValue->hide();
    lblNone->show();
}

void frmAdv::Combo1_Click() {
    showProperty();
}

void frmAdv::Check1_Click() {
    write(Check1->isChecked());
}

void frmAdv::Slider1_Change() {
    write(Slider1->value());
}

void frmAdv::write(const QVariant &value) {
    // A card that refuses, or that is gone, says nothing: what it kept is shown.
    ignoringErrors([&] { AudioRecord1_.setLineProperty(Combo1->currentIndex(), value); });
    showProperty();
}

void frmAdv::showProperty() {
    const int index = Combo1->currentIndex();
    if (index < 0 || index >= AudioRecord1_.propertyCount()) {
        // The card was unplugged meanwhile.
        showNothing();
        return;
    }
    const LineProperty property = AudioRecord1_.lineProperty(index);
    const int type = property.value.typeId();
    if (type != QMetaType::Bool && type != QMetaType::Int) {
        return;
    }
    const bool isNumber = type == QMetaType::Int;
    Check1->setVisible(!isNumber);
    Slider1->setVisible(isNumber);
    lblValue->setVisible(isNumber);
    if (isNumber) {
        showNumber(property);
    } else {
        const QSignalBlocker quiet(Check1);
        Check1->setChecked(property.value.toBool());
        Check1->setAccessibleName(property.name);
    }
}

void frmAdv::showNumber(const LineProperty &property) {
    const QSignalBlocker quiet(Slider1);
    Slider1->setRange(property.minimum, property.maximum);
    Slider1->setPageStep(std::max((property.maximum - property.minimum) / 10, 1));
    Slider1->setValue(property.value.toInt());
    Slider1->setAccessibleName(property.name);
    lblValue->setText(property.value.toString());
}

} // namespace orvel

// Shows every widget and style of this room in one window, to be looked at: ORVEL_THEME=light|dark, QT_SCALE_FACTOR=2.
// An argument is a text size in points.
#include "widgets/gauge.h"
#include "widgets/knob.h"
#include "widgets/lamp.h"
#include "widgets/led_label.h"
#include "widgets/led_spin.h"
#include "widgets/led_text.h"
#include "widgets/level_meter.h"
#include "widgets/row_frame_delegate.h"
#include "widgets/theme.h"
#include "widgets/time_display.h"

#include <QApplication>
#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QStatusBar>
#include <QTabWidget>
#include <QTableWidget>
#include <QToolBar>

using namespace orvel;

namespace {

QIcon icon(const char *name) {
    return QIcon(QStringLiteral(":/icons/%1.svg").arg(QLatin1String(name)));
}

void fillToolBar(QMainWindow &window) {
    QToolBar &bar = *window.addToolBar("Werkbalk");
    bar.setMovable(false);
    for (const char *name :
         {"print", "playlist_import", "playlist_export", "settings", "information", "exit", "record", "stop", "play",
          "listen", "save", "sound_import", "multivoice", "delete", "folder", "microphone", "orvel"}) {
        bar.addAction(icon(name), name);
    }
    QAction *off = bar.addAction(icon("print"), "uit");
    off->setEnabled(false);
}

QWidget *lists() {
    auto *box = new QGroupBox("Bestanden");
    auto *tabs = new QTabWidget;
    auto *page = new QWidget;
    auto *inside = new QVBoxLayout(page);
    auto *list = new QListWidget;
    list->addItems({"ochtend.mdb", "middag.mdb", "avond.mdb", "nacht.mdb"});
    list->setCurrentRow(1);
    inside->addWidget(list);
    inside->addWidget(new QPushButton(icon("delete"), "Wis playlist"));
    tabs->addTab(page, "Te bewerken");
    tabs->addTab(new QWidget, "Afgewerkt");
    auto *layout = new QVBoxLayout(box);
    layout->addWidget(tabs);
    return box;
}

QWidget *grid() {
    auto *table = new QTableWidget(6, 6);
    table->setHorizontalHeaderLabels({"OK", "Stap", "Tijd", "Titel", "Intro", "Type"});
    table->setItemDelegate(new RowFrameDelegate(table));
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->verticalHeader()->hide();
    const QRgb backs[] = {0xffffffff, 0xffffd34d, 0xff9fd8ff, 0xff202020, 0xffc6efb0, 0xff0000ff};
    const QRgb texts[] = {0xff000000, 0xff000000, 0xff002244, 0xffffffff, 0xff103300, 0xffffffff};
    for (int row = 0; row < 6; ++row) {
        for (int column = 0; column < 6; ++column) {
            auto *item =
                new QTableWidgetItem(column == 0 ? QString() : QStringLiteral("cel %1.%2").arg(row).arg(column));
            if (column == 0) {
                item->setCheckState(row % 2 == 0 ? Qt::Checked : Qt::Unchecked);
            }
            item->setBackground(QColor(backs[row]));
            item->setForeground(QColor(texts[row]));
            table->setItem(row, column, item);
        }
    }
    table->resizeRowsToContents();
    table->horizontalHeader()->setStretchLastSection(true);
    table->selectRow(1);
    return table;
}

QWidget *recorder() {
    auto *strip = new QWidget;
    auto *layout = new QVBoxLayout(strip);
    auto *texts = new QHBoxLayout;
    auto *title = new QLabel("PRES0007");
    title->setProperty("role", "title");
    auto *running = new QLabel("OPNAME LOOPT");
    running->setProperty("role", "attention");
    auto *lamp = new Lamp;
    lamp->setLit(true);
    texts->addWidget(title);
    for (const char *text : {"Outtro : 4,3", "Intro : 7,6", "Totaal : 11,912 sec"}) {
        auto *label = new QLabel(text);
        label->setProperty("role", "value");
        texts->addSpacing(20);
        texts->addWidget(label);
    }
    texts->addStretch();
    texts->addWidget(lamp);
    texts->addWidget(running);
    layout->addLayout(texts);

    const QColor colours[] = {QColor(0, 0, 255), QColor(255, 255, 0), QColor(255, 0, 0)};
    auto *bars = new QHBoxLayout;
    int value = 11912;
    for (const QColor &colour : colours) {
        auto *bar = new Gauge;
        bar->setMaximum(11912);
        bar->setValue(value);
        bar->setBarColour(colour);
        value -= 4500;
        bars->addWidget(bar);
    }
    layout->addLayout(bars);

    auto *row = new QHBoxLayout;
    for (const bool recording : {false, true}) {
        auto *button = new QPushButton(recording ? "STOP OPNAME" : "START OPNAME");
        button->setIcon(icon(recording ? "record_stop" : "record"));
        button->setProperty("role", "record");
        setRecording(*button, recording);
        row->addWidget(button);
    }
    auto *count = new TimeDisplay(TimeDisplay::Fields::Seconds);
    count->setSeconds(3);
    auto *time = new TimeDisplay;
    time->setTime(0, 0, 4, 350);
    row->addWidget(count);
    row->addWidget(time);
    for (const auto &[name, text] : {std::pair{"listen", "Beluister Opname"}, std::pair{"save", "Bewaar opname"},
                                     std::pair{"sound_import", "Importeer"}}) {
        row->addWidget(new QPushButton(icon(name), text));
    }
    auto *off = new QPushButton(icon("multivoice"), "Multi - voice");
    off->setEnabled(false);
    row->addWidget(off);
    auto *multi = new Lamp;
    multi->setColour(Qt::yellow);
    row->addWidget(multi);
    layout->addLayout(row);
    return strip;
}

QWidget *processor() {
    auto *box = new QGroupBox("Compressor");
    auto *layout = new QGridLayout(box);
    auto *on = new QCheckBox("ingeschakeld");
    on->setChecked(true);
    layout->addWidget(on, 0, 0, 1, 2);
    int row = 1;
    for (const auto &[text, unit, value] :
         {std::tuple{"Treshold", "dB", -96}, std::tuple{"Rate", "%", 1}, std::tuple{"RMStime", "ms", 1000}}) {
        auto *spin = new LedSpin;
        spin->setRange(-96, 1000);
        spin->setDigits(row == 3 ? 4 : 3);
        spin->setUnit(unit);
        spin->setValue(value);
        spin->setEnabled(row != 2);
        auto *label = new QLabel(text);
        label->setBuddy(spin);
        layout->addWidget(label, row, 0);
        layout->addWidget(spin, row, 1);
        ++row;
    }
    return box;
}

QWidget *meters() {
    auto *box = new QGroupBox("Niveau");
    auto *layout = new QVBoxLayout(box);
    for (const float level : {0.9F, 1.0F}) {
        auto *meter = new LevelMeter;
        meter->setLevel(level);
        meter->advance(900);
        meter->setLevel(level / 2);
        layout->addWidget(meter);
    }
    layout->addWidget(new LevelScale);
    auto *standing = new QHBoxLayout;
    auto *meter = new LevelMeter(Qt::Vertical);
    meter->setLevel(0.3F);
    auto *knob = new Knob;
    knob->setValue(40000);
    auto *volume = new QSlider(Qt::Vertical);
    volume->setRange(0, 65535);
    volume->setValue(30000);
    auto *balance = new QSlider(Qt::Horizontal);
    balance->setValue(50);
    auto *off = new QSlider(Qt::Horizontal);
    off->setEnabled(false);
    standing->addWidget(meter);
    standing->addWidget(new LevelScale(Qt::Vertical));
    standing->addWidget(volume);
    auto *right = new QVBoxLayout;
    right->addWidget(knob, 0, Qt::AlignCenter);
    right->addWidget(balance);
    right->addWidget(off);
    standing->addLayout(right);
    layout->addLayout(standing);
    return box;
}

QWidget *controls() {
    auto *box = new QGroupBox("Bediening");
    auto *layout = new QVBoxLayout(box);
    auto *title = new LedLabel;
    title->setText("Zoë & Ünï - L'été indigo");
    auto *scrolling = new LedLabel;
    scrolling->setText("The quick brown fox jumps over the lazy dog (0123456789)");
    scrolling->setAutoScroll(true);
    auto *device = new LedText;
    device->setCharacters(16);
    device->setColour(QColor(0x5c, 0xe0, 0x8a));
    device->setText("Scarlett 2i2 USB");
    layout->addWidget(title);
    layout->addWidget(scrolling);
    layout->addWidget(device, 0, Qt::AlignLeft);
    auto *progress = new Gauge;
    progress->setCaption("Comprimeert bestand");
    progress->setValue(52);
    layout->addWidget(progress);
    auto *row = new QHBoxLayout;
    auto *combo = new QComboBox;
    combo->addItems({"128 Kbit/Sec", "192 Kbit/Sec"});
    auto *line = new QLineEdit("C:\\station\\data");
    line->setFocus();
    row->addWidget(combo);
    row->addWidget(line);
    auto *shut = new QLineEdit("uitgeschakeld");
    shut->setEnabled(false);
    row->addWidget(shut);
    layout->addLayout(row);
    auto *marks = new QHBoxLayout;
    for (int i = 0; i < 4; ++i) {
        auto *mark = new QCheckBox(i < 2 ? "aan / uit" : "dicht");
        mark->setChecked(i % 2 == 0);
        mark->setEnabled(i < 2);
        marks->addWidget(mark);
    }
    auto *radio = new QRadioButton("keuze");
    radio->setChecked(true);
    marks->addWidget(radio);
    layout->addLayout(marks);
    auto *save = new QPushButton("Bewaar");
    save->setProperty("role", "primary");
    auto *quiet = new QPushButton("Geavanceerd");
    quiet->setProperty("role", "quiet");
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(quiet);
    buttons->addWidget(new QPushButton("Annuleer"));
    buttons->addWidget(save);
    layout->addLayout(buttons);
    return box;
}

} // namespace

int main(int argc, char **argv) {
    QApplication application(argc, argv);
    if (argc > 1) {
        QFont font = QApplication::font();
        font.setPointSizeF(QString::fromLocal8Bit(argv[1]).toDouble());
        QApplication::setFont(font);
    }
    applyTheme(application);
    QMainWindow window;
    window.setWindowIcon(icon("orvel"));
    fillToolBar(window);
    auto *middle = new QWidget;
    auto *layout = new QVBoxLayout(middle);
    auto *top = new QHBoxLayout;
    top->addWidget(lists(), 1);
    top->addWidget(grid(), 3);
    auto *logo = new QLabel;
    logo->setPixmap(QIcon(":/logo.svg").pixmap(QSize(256, 96)));
    top->addWidget(logo);
    layout->addLayout(top, 1);
    layout->addWidget(recorder());
    auto *bottom = new QHBoxLayout;
    bottom->addWidget(processor());
    bottom->addWidget(meters());
    bottom->addWidget(controls());
    layout->addLayout(bottom);
    window.setCentralWidget(middle);
    window.statusBar()->showMessage("Klaar om op te nemen");
    window.resize(1280, 800);
    window.show();
    return QApplication::exec();
}

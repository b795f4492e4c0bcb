#include "windows/colour_page.h"

#include "platform/prompts.h"
#include "windows/on.h"

#include <QGridLayout>
#include <QPushButton>

#include <array>
#include <optional>
#include <utility>

namespace orvel {

struct ColourPage::Item {
    const char *panel;
    const char *caption;
    const char *backButton;
    std::int32_t Settings::*back;
    const char *textButton;
    std::int32_t Settings::*text;
};

namespace {

QString cssColour(std::int32_t stored) {
    const auto bits = static_cast<std::uint32_t>(stored);
    return QStringLiteral("rgb(%1, %2, %3)").arg(bits & 0xFFU).arg((bits >> 8U) & 0xFFU).arg((bits >> 16U) & 0xFFU);
}

} // namespace

ColourPage::ColourPage(Prompts &prompts, Settings &settings, std::function<void()> changed, QWidget *parent)
    : QGroupBox(QStringLiteral("PlaylistItems"), parent), prompts_(prompts), settings_(settings),
      changed_(std::move(changed)) {
    static constexpr std::array items = {
        Item{"panMuziek", "Muziek", "cmdMuzBack", &Settings::MusBack, "cmdMuzTxt", &Settings::MusTxt},
        Item{"panJingle", "Jingles", "cmdJingBack", &Settings::JingBack, "cmdJingTxt", &Settings::jingTxt},
        Item{"panReclame", "Reclame", "cmdRecBack", &Settings::RecBack, "cmdRecTxt", &Settings::RecTxt},
        Item{"panEvents", "Events", "cmdEventBack", &Settings::EventBack, "cmdEventTxt", &Settings::EventTxt},
        Item{"panPres", "Presentatie", "cmdPresBack", &Settings::PresBack, "cmdPresTxt", &Settings::PresTxt},
    };
    setObjectName(QStringLiteral("fraColors"));
    auto *grid = new QGridLayout(this);
    grid->setColumnStretch(0, 1);
    for (std::size_t row = 0; row < items.size(); ++row) {
        addItem(static_cast<int>(row), items.at(row));
    }
    grid->setRowStretch(static_cast<int>(items.size()), 1);
}

void ColourPage::addItem(int row, const Item &item) {
    auto *panel = new QLabel(QString::fromLatin1(item.caption), this);
    panel->setObjectName(QString::fromLatin1(item.panel));
    panel->setAlignment(Qt::AlignCenter);
    panel->setMinimumHeight(fontMetrics().height() * 2);
    panels_.emplace_back(panel, &item);
    auto *grid = qobject_cast<QGridLayout *>(layout());
    grid->addWidget(panel, row, 0);
    const std::array buttons = {std::tuple{item.backButton, QStringLiteral("Achtergrond"), item.back},
                                std::tuple{item.textButton, QStringLiteral("Tekst"), item.text}};
    int column = 1;
    for (const auto &[name, caption, field] : buttons) {
        auto *button = new QPushButton(caption, this);
        button->setObjectName(QString::fromLatin1(name));
        button->setAccessibleName(panel->text() + u' ' + caption);
        button->setAutoDefault(false);
        on(button, &QPushButton::clicked, this, [this, chosen = field] { choose(chosen); });
        grid->addWidget(button, row, column);
        ++column;
    }
}

void ColourPage::showColours() {
    for (const auto &[panel, item] : panels_) {
        panel->setStyleSheet(QStringLiteral("background: %1; color: %2; border-radius: 4px; font-weight: bold;")
                                 .arg(cssColour(settings_.*item->back), cssColour(settings_.*item->text)));
    }
}

void ColourPage::choose(std::int32_t Settings::*field) {
    const std::optional<std::int32_t> colour = prompts_.colour(settings_.*field);
    if (!colour) {
        return;
    }
    settings_.*field = *colour;
    showColours();
    changed_();
}

} // namespace orvel

// What stands on the windows can be read: every text and every picture as it is really drawn, in both themes.
#include "drawn_marks.h"
#include "every_window.h"

#include <QHash>

#include <algorithm>

namespace orvel {

namespace {

constexpr double ofTexts = 4.5;
constexpr double ofIconsAndDisabled = 3.0;

/// The colours of a place without those that `isInk` says are the mark itself, the most frequent first.
std::vector<QRgb> coloursBehind(const QImage &picture, const QRect &place, const std::function<bool(int, int)> &isInk) {
    QHash<QRgb, int> counts;
    for (int y = place.top(); y <= place.bottom(); ++y) {
        for (int x = place.left(); x <= place.right(); ++x) {
            if (picture.rect().contains(x, y) && !isInk(x, y)) {
                ++counts[picture.pixel(x, y)];
            }
        }
    }
    std::vector<QRgb> colours(counts.keyBegin(), counts.keyEnd());
    std::sort(colours.begin(), colours.end(), [&counts](QRgb a, QRgb b) { return counts[a] > counts[b]; });
    return colours;
}

QColor blended(QColor above, const QColor &below) {
    const float alpha = above.alphaF();
    const auto part = [alpha](float a, float b) { return a * alpha + b * (1 - alpha); };
    return QColor::fromRgbF(part(above.redF(), below.redF()), part(above.greenF(), below.greenF()),
                            part(above.blueF(), below.blueF()));
}

/// Holds a picture of a window against what was drawn on it.
class Eye {
  public:
    QStringList problems;
    int texts = 0;
    int icons = 0;

    explicit Eye(QWidget &shown)
        : shown_(shown), picture_(shown.grab().toImage().convertToFormat(QImage::Format_RGB32)) {}

    void look() {
        for (const DrawnMark &mark : marksOf(shown_)) {
            mark.text.isEmpty() ? lookAtIcon(mark) : lookAtText(mark);
        }
    }

  private:
    bool isOff(const QRect &place) const {
        const QWidget *part = shown_.childAt(place.center());
        return part != nullptr && !part->isEnabled();
    }
    bool isInSight(const DrawnMark &mark, const QColor &colour) const {
        for (int y = mark.place.top(); y <= mark.place.bottom(); ++y) {
            for (int x = mark.place.left(); x <= mark.place.right(); ++x) {
                if (picture_.rect().contains(x, y) && near(picture_.pixel(x, y), colour.rgb())) {
                    return true;
                }
            }
        }
        return false;
    }
    static bool near(QRgb a, QRgb b) {
        return std::abs(qRed(a) - qRed(b)) < 3 && std::abs(qGreen(a) - qGreen(b)) < 3 &&
               std::abs(qBlue(a) - qBlue(b)) < 3;
    }
    void lookAtText(const DrawnMark &mark) {
        const auto behind = coloursBehind(picture_, mark.place,
                                          [&](int x, int y) { return near(picture_.pixel(x, y), mark.colour.rgb()); });
        if (behind.empty()) {
            return; // scrolled out of sight
        }
        const QColor ground(behind.front());
        const QColor ink = blended(mark.colour, ground);
        // The same colour as the ground is either out of sight or not to be seen.
        if (!near(ink.rgb(), ground.rgb()) && !isInSight(mark, ink)) {
            return;
        }
        ++texts;
        expect(contrastOf(ink, ground), isOff(mark.place) ? ofIconsAndDisabled : ofTexts,
               QStringLiteral("\"%1\" %2 on %3").arg(mark.text, ink.name(), ground.name()), mark.place);
    }
    void lookAtIcon(const DrawnMark &mark) {
        constexpr int solid = 250; // its edges are between its colour and the ground
        const auto alpha = [&mark](int x, int y) {
            return qAlpha(mark.icon.pixel(x - mark.place.left(), y - mark.place.top()));
        };
        const auto behind = coloursBehind(picture_, mark.place, [&](int x, int y) { return alpha(x, y) > 0; });
        if (behind.empty()) {
            return;
        }
        const QColor ground(behind.front());
        std::vector<double> contrasts;
        for (int y = mark.place.top(); y <= mark.place.bottom(); ++y) {
            for (int x = mark.place.left(); x <= mark.place.right(); ++x) {
                if (picture_.rect().contains(x, y) && alpha(x, y) > solid) {
                    contrasts.push_back(contrastOf(QColor(picture_.pixel(x, y)), ground));
                }
            }
        }
        if (contrasts.empty()) {
            return;
        }
        ++icons;
        // Half of what is drawn shows its shape.
        const auto half = contrasts.begin() + static_cast<std::ptrdiff_t>(contrasts.size() / 2);
        std::nth_element(contrasts.begin(), half, contrasts.end());
        expect(*half, ofIconsAndDisabled, QStringLiteral("a picture on %1").arg(ground.name()), mark.place);
    }
    void expect(double contrast, double least, const QString &what, const QRect &place) {
        if (contrast >= least) {
            return;
        }
        const QWidget *part = shown_.childAt(place.center());
        problems << QStringLiteral("%1 %2 %3: %4, %5 at least")
                        .arg(part ? QString::fromLatin1(part->metaObject()->className()) : QString(),
                             part ? part->objectName() : QString(), what)
                        .arg(contrast, 0, 'f', 2)
                        .arg(least);
    }

    QWidget &shown_;
    QImage picture_;
};

class CanBeRead : public EveryWindow, public testing::WithParamInterface<ThemeVariant> {
  protected:
    void SetUp() override {
        QFont plain = QApplication::font();
        // The letters' edges are between their colour and the ground; without them a pixel is one or the other.
        plain.setStyleStrategy(QFont::NoAntialias);
        QApplication::setFont(plain);
        applyTheme(*qApp, GetParam());
    }
};

} // namespace

TEST_P(CanBeRead, WhateverStandsOnAWindow) {
    int texts = 0;
    int icons = 0;
    visitAll([&](QWidget &shown, const QString &shape) {
        SCOPED_TRACE((shown.objectName() + u' ' + shape).toStdString());
        QCoreApplication::processEvents();
        Eye eye(shown);
        eye.look();
        EXPECT_TRUE(eye.problems.isEmpty()) << eye.problems.join(u'\n').toStdString();
        EXPECT_GE(eye.texts, 2);
        texts += eye.texts;
        icons += eye.icons;
    });
    EXPECT_GE(texts, 300) << "the eye sees what is drawn";
    EXPECT_GE(icons, 60);
}

INSTANTIATE_TEST_SUITE_P(Both, CanBeRead, testing::Values(ThemeVariant::Dark, ThemeVariant::Light),
                         [](const auto &test) { return test.param == ThemeVariant::Dark ? "Dark" : "Light"; });

} // namespace orvel

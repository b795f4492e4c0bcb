#include "widgets/dot_matrix.h"

#include "widgets/dot_letters.h"

#include <QFont>
#include <QHash>
#include <QImage>
#include <QPainter>

#include <algorithm>

namespace orvel {

namespace {

constexpr int letterColumns = dotColumnsPerCharacter - 1;
constexpr int descenderRows = 2;

using Letter = std::array<quint16, letterColumns>;

// Accents as they stand in the top two rows, above a capital.
const Letter *accentOf(QChar mark) {
    static const QHash<QChar, Letter> accents = {
        {QChar(0x0300), {0, 1, 2, 0, 0}}, // grave
        {QChar(0x0301), {0, 0, 2, 1, 0}}, // acute
        {QChar(0x0302), {0, 2, 1, 2, 0}}, // circumflex
        {QChar(0x0303), {2, 1, 3, 2, 1}}, // tilde
        {QChar(0x0308), {0, 1, 0, 1, 0}}, // diaeresis
        {QChar(0x030A), {0, 3, 3, 0, 0}}, // ring
        {QChar(0x030C), {0, 1, 2, 1, 0}}, // caron
    };
    const auto found = accents.constFind(mark);
    return found == accents.constEnd() ? nullptr : &found.value();
}

const Letter *plainLetter(QChar character) {
    const int index = character.unicode() - u' ';
    const bool known = index >= 0 && index < static_cast<int>(dotLetters.size());
    return known ? &dotLetters.at(static_cast<std::size_t>(index)) : nullptr;
}

// Quotes, dashes and the like, as they are typed in titles.
QChar simpler(QChar character) {
    switch (character.unicode()) {
    case 0x2018:
    case 0x2019:
    case 0x00B4:
        return u'\'';
    case 0x201C:
    case 0x201D:
        return u'"';
    case 0x2010:
    case 0x2011:
    case 0x2013:
    case 0x2014:
        return u'-';
    case 0x00A0:
        return u' ';
    default:
        return character;
    }
}

// The letter with its accent: above a capital in the top rows, above a small letter in the free rows of its body.
bool composeLetter(const QString &cluster, Letter &letter) {
    const QString parts = cluster.normalized(QString::NormalizationForm_D);
    const Letter *base = plainLetter(simpler(parts.at(0)));
    if (base == nullptr) {
        return false;
    }
    letter = *base;
    for (const QChar mark : parts.mid(1)) {
        if (mark == QChar(0x0327)) { // cedilla, below the letter
            letter[2] |= 1U << 9U;
            letter[1] |= 1U << 10U;
            continue;
        }
        const Letter *accent = accentOf(mark);
        if (accent == nullptr) {
            return false;
        }
        if (parts.at(0) == u'i' || parts.at(0) == u'j') {
            std::transform(letter.begin(), letter.end(), letter.begin(), [](quint16 column) { return column & ~0xFU; });
        }
        const bool low = parts.at(0).isLower();
        for (std::size_t i = 0; i < letter.size(); ++i) {
            letter.at(i) = static_cast<quint16>(letter.at(i) | (low ? accent->at(i) << 1U : accent->at(i)));
        }
    }
    return true;
}

std::vector<quint16> columnsFromFont(const QString &cluster) {
    QFont font;
    font.setPixelSize(dotRows);
    font.setStyleStrategy(QFont::NoAntialias);
    font.setHintingPreference(QFont::PreferFullHinting);
    const int width = std::clamp(QFontMetrics(font).horizontalAdvance(cluster), 1, 4 * dotRows);
    QImage image(width, dotRows, QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(QPoint(0, dotRows - descenderRows), cluster);
    painter.end();
    std::vector<quint16> columns;
    for (int x = 0; x < width; ++x) {
        quint16 column = 0;
        for (int y = 0; y < dotRows; ++y) {
            column =
                static_cast<quint16>(column | (qGray(image.pixel(x, y)) > 127 ? 1U << static_cast<unsigned>(y) : 0U));
        }
        columns.push_back(column);
    }
    columns.push_back(0);
    return columns;
}

// One character as the reader sees it: a letter with the marks that follow it.
qsizetype clusterEnd(const QString &text, qsizetype start) {
    qsizetype end = start + (text.at(start).isHighSurrogate() && start + 1 < text.size() ? 2 : 1);
    while (end < text.size() && text.at(end).isMark()) {
        ++end;
    }
    return end;
}

} // namespace

std::vector<quint16> dotColumns(const QString &text) {
    std::vector<quint16> columns;
    columns.reserve(static_cast<std::size_t>(text.size() * dotColumnsPerCharacter));
    for (qsizetype at = 0; at < text.size();) {
        const qsizetype end = clusterEnd(text, at);
        const QString cluster = text.mid(at, end - at);
        Letter letter{};
        if (composeLetter(cluster, letter)) {
            columns.insert(columns.end(), letter.begin(), letter.end());
            columns.push_back(0);
        } else {
            const std::vector<quint16> drawn = columnsFromFont(cluster);
            columns.insert(columns.end(), drawn.begin(), drawn.end());
        }
        at = end;
    }
    return columns;
}

} // namespace orvel

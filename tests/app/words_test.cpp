// The program's own words: one for one thing, none that a presenter does not know without an explanation.
#include "program_texts.h"
#include "station.h"

#include <QHeaderView>
#include <QTableView>

namespace orvel {

namespace {

/// What is said otherwise, and how.
struct OtherWord {
    const char *pattern;
    const char *instead;
};

constexpr std::array otherWords = {
    OtherWord{"\\b[Oo]pnamen\\b", "opnames"},
    OtherWord{"\\b(?:[Cc]opi[eë]|[Kk]opie?er|[Kk]opïe)", "kopiëren, gekopieerd"},
    OtherWord{"\\b[Vv]oice[ -][Tt]rack", "voicetrack"},
    OtherWord{"\\b(?:[Aa]fspeellijst|[Pp]lay-list|[Ss]peellijst)", "playlist"},
    OtherWord{"\\b(?:[Ff]olders|[Dd]irectory)\\b", "map"},
    OtherWord{"\\b(?:[Bb]ack-?up|[Rr]estore|[Dd]efault|[Dd]evice|[Ss]oundcard|[Ww]arning)", "a Dutch word"},
    OtherWord{"is niet weggeschreven", "is niet bewaard"},
    OtherWord{"\\bstiller\\b", "zachter"},
    OtherWord{"\\b(?:Kies|Zet|Neem|Druk|Klik|Wacht|Sluit|Start|Steek)\\b[^.?]*\\b[UuJ][w]?\\b", "an imperative alone"},
};

} // namespace

TEST(TheWords, AreOneForOneThing) {
    const QSet<QString> texts = textsOfTheProgram();
    EXPECT_GT(texts.size(), 500);
    const QSet<QString> fixed = {QStringLiteral("Copieert....")}; // as it has always been
    for (const auto &[pattern, instead] : otherWords) {
        const QRegularExpression other(QString::fromUtf8(pattern));
        ASSERT_TRUE(other.isValid()) << pattern;
        for (const QString &text : texts) {
            EXPECT_TRUE(fixed.contains(text) || !other.match(text).hasMatch())
                << text.toStdString() << " -- say " << instead;
        }
    }
}

class TheTrade : public Station {};

TEST_F(TheTrade, HasAToolTipForItsWords) {
    addPlaylist(demo);
    ASSERT_TRUE(start());
    open(demo);
    const QAbstractItemModel &steps = window->panels().gridPanel->steps();
    const QStringList plain = QStringLiteral("OK Stap Tijd Uitvoerder Titel Jaar Min Sec id trackid type").split(u' ');
    for (int column = 0; column < steps.columnCount(); ++column) {
        const QString caption = steps.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
        EXPECT_NE(steps.headerData(column, Qt::Horizontal, Qt::ToolTipRole).toString().isEmpty(),
                  !plain.contains(caption))
            << caption.toStdString();
    }
    EXPECT_FALSE(window->panels().lblLoudness->toolTip().isEmpty());
    window->tlbMain_ButtonClick(4);
    const auto *setup = window->findChild<frmSetup *>();
    ASSERT_NE(setup, nullptr);
    for (const char *name : {"updCallback", "ledCallback", "ledCBufsize", "ledCBuf", "cobBitrate"}) {
        const auto *control = setup->findChild<QWidget *>(QString::fromLatin1(name));
        ASSERT_NE(control, nullptr) << name;
        EXPECT_FALSE(control->toolTip().isEmpty()) << name;
    }
}

} // namespace orvel

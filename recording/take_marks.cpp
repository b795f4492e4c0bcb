#include "recording/take_marks.h"

#include "recording/talk_words.h"

#include <QCoreApplication>
#include <QStringList>

namespace orvel {

QString marksInWords(const TakeMarks &marks) {
    constexpr std::size_t most = 5;
    QStringList sentences;
    if (const auto speech = wholeOf(marks.speech)) {
        sentences << QCoreApplication::translate("TakeMarks", "⊔ gesproken: %1 tot %2 s")
                         .arg(inSeconds(speech->begin), inSeconds(speech->end));
    }
    QStringList clips;
    for (std::size_t i = 0; i < marks.clips.size() && i < most; ++i) {
        clips << inSeconds(marks.clips.at(i)) + QStringLiteral(" s");
    }
    if (marks.clips.size() > most) {
        clips << QCoreApplication::translate("TakeMarks", "en nog %1 keer").arg(marks.clips.size() - most);
    }
    if (!clips.isEmpty()) {
        sentences
            << QCoreApplication::translate("TakeMarks", "▼ te luid bij: %1").arg(clips.join(QStringLiteral(", ")));
    }
    return sentences.join(QStringLiteral(". "));
}

} // namespace orvel

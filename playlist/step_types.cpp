#include "playlist/step_types.h"

#include <QObject>

namespace orvel {

namespace {

bool within(int type, int first, int last) {
    return type >= first && type <= last;
}

bool isEvent(int type) {
    return type == 4 || within(type, 20, 25) || within(type, 30, 34) || within(type, 40, 47) || within(type, 50, 52);
}

} // namespace

QString styleName(int type) {
    switch (type) {
    case TrackStep:
        return QStringLiteral("Track");
    case PresStep:
        return QStringLiteral("Pres");
    case JingleStep:
        return QStringLiteral("Jingle");
    case 5:
        return QStringLiteral("Tijd");
    default:
        break;
    }
    if (isEvent(type)) {
        return QStringLiteral("Event");
    }
    return within(type, 10, 15) ? QStringLiteral("Promo") : QString();
}

QString kindLabel(int type) {
    static const std::map<QString, QString> labels = {
        {QStringLiteral("Track"), QObject::tr("♪ Muziek")},  {QStringLiteral("Pres"), QObject::tr("◉ Link")},
        {QStringLiteral("Jingle"), QObject::tr("★ Jingle")}, {QStringLiteral("Tijd"), QObject::tr("◷ Tijd")},
        {QStringLiteral("Event"), QObject::tr("▶ Event")},   {QStringLiteral("Promo"), QObject::tr("€ Reclame")},
    };
    const auto found = labels.find(styleName(type));
    return found == labels.end() ? QString() : found->second;
}

StepStyles applyStepStyles(const Settings &settings) {
    const auto style = [](std::int32_t back, std::int32_t text) { return StepStyle{back, text}; };
    return {
        {QStringLiteral("Track"), style(settings.MusBack, settings.MusTxt)},
        {QStringLiteral("Pres"), style(settings.PresBack, settings.PresTxt)},
        {QStringLiteral("Jingle"), style(settings.JingBack, settings.jingTxt)},
        {QStringLiteral("Tijd"), style(settings.TijdBack, settings.TijdTxt)},
        {QStringLiteral("Event"), style(settings.EventBack, settings.EventTxt)},
        {QStringLiteral("Promo"), style(settings.RecBack, settings.RecTxt)},
    };
}

} // namespace orvel

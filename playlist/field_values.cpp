#include "playlist/field_values.h"

#include "platform/runtime_error.h"

#include <QDateTime>
#include <QLocale>

#include <cmath>
#include <limits>

namespace orvel {

std::int32_t toWholeNumber(const QVariant &value) {
    bool isNumber = value.isValid() && !value.isNull();
    double number = 0;
    if (isNumber && value.typeId() == QMetaType::Bool) {
        number = value.toBool() ? -1 : 0;
    } else if (isNumber) {
        number = value.toDouble(&isNumber);
    }
    if (!isNumber || std::isnan(number)) {
        throw RuntimeError(ErrorNumber::TypeMismatch);
    }
    const double rounded = std::nearbyint(number);
    if (rounded < std::numeric_limits<std::int32_t>::min() || rounded > std::numeric_limits<std::int32_t>::max()) {
        throw RuntimeError(ErrorNumber::Overflow);
    }
    return static_cast<std::int32_t>(rounded);
}

QString toText(const QVariant &value) {
    if (!value.isValid() || value.isNull()) {
        throw RuntimeError(ErrorNumber::TypeMismatch);
    }
    return value.toString();
}

QString asStored(const QVariant &value) {
    if (value.typeId() != QMetaType::QDateTime) {
        return value.toString();
    }
    const QDate dayZero(1899, 12, 30);
    constexpr qint64 halfASecond = 500; // a stored moment is a fraction of a day
    const QDateTime moment = value.toDateTime().addMSecs(halfASecond);
    const QString date = moment.date() == dayZero ? QString() : moment.toString(QStringLiteral("dd-MM-yyyy "));
    return date + moment.toString(moment.time().second() == 0 ? QStringLiteral("HH:mm") : QStringLiteral("HH:mm:ss"));
}

QString secondsOneDecimal(std::int32_t milliseconds) {
    const double tenths = std::round(milliseconds / 100.0);
    return QLocale().toString(tenths / 10.0, 'f', 1);
}

QString secondsAsRead(const QVariant &value) {
    bool isNumber = false;
    const int milliseconds = value.toInt(&isNumber);
    return isNumber && !value.isNull() ? secondsOneDecimal(milliseconds) : asStored(value);
}

QString secondsGeneral(std::int32_t milliseconds) {
    QLocale locale;
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    return locale.toString(milliseconds / 1000.0, 'g', 15);
}

} // namespace orvel

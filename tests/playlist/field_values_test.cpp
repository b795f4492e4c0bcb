// Fields of a step as numbers and as texts.
#include "platform/runtime_error.h"
#include "playlist/field_values.h"

#include <QDateTime>
#include <QLocale>

#include <gtest/gtest.h>
#include <limits>

namespace orvel {

namespace {

QVariant moment(const QDate &date, const QTime &time) {
    return QDateTime(date, time, Qt::UTC);
}

const QDate dayZero(1899, 12, 30);

/// The user's locale while a test runs.
class Locale {
  public:
    explicit Locale(const char *name) { QLocale::setDefault(QLocale(QString::fromLatin1(name))); }
    Locale(const Locale &) = delete;
    Locale(Locale &&) = delete;
    Locale &operator=(const Locale &) = delete;
    Locale &operator=(Locale &&) = delete;
    ~Locale() { QLocale::setDefault(before_); }

  private:
    QLocale before_;
};

} // namespace

// A time with seconds, or a moment of another day, was shown as hours and minutes only.
TEST(FieldValues, AMomentIsShownAsItIsStored) {
    EXPECT_EQ(asStored(moment(dayZero, QTime(7, 3))), QStringLiteral("07:03"));
    EXPECT_EQ(asStored(moment(dayZero, QTime(0, 0))), QStringLiteral("00:00"));
    EXPECT_EQ(asStored(moment(dayZero, QTime(23, 59, 30))), QStringLiteral("23:59:30"));
    EXPECT_EQ(asStored(moment(QDate(2001, 2, 1), QTime(7, 3))), QStringLiteral("01-02-2001 07:03"));
    EXPECT_EQ(asStored(moment(QDate(2001, 2, 1), QTime(0, 0, 5))), QStringLiteral("01-02-2001 00:00:05"));
    EXPECT_EQ(asStored(moment(dayZero, QTime(7, 2, 59, 999))), QStringLiteral("07:03")) << "a fraction of a day";
}

TEST(FieldValues, WhatIsNoMomentStaysAsItIs) {
    EXPECT_EQ(asStored(QStringLiteral("7u03 ongeveer")), QStringLiteral("7u03 ongeveer"));
    EXPECT_EQ(asStored(qint32{-12}), QStringLiteral("-12"));
    EXPECT_EQ(asStored(2.5), QStringLiteral("2.5"));
    EXPECT_EQ(asStored({}), QString());
}

TEST(FieldValues, SecondsFollowTheUsersLocale) {
    {
        const Locale dutch("nl_BE");
        EXPECT_EQ(secondsOneDecimal(12345), QStringLiteral("12,3"));
        EXPECT_EQ(secondsGeneral(12345), QStringLiteral("12,345"));
        EXPECT_EQ(secondsOneDecimal(1234567), QStringLiteral("1.234,6"));
        EXPECT_EQ(secondsGeneral(1234567), QStringLiteral("1234,567"));
    }
    const Locale plain("C");
    EXPECT_EQ(secondsOneDecimal(12345), QStringLiteral("12.3"));
    EXPECT_EQ(secondsOneDecimal(12350), QStringLiteral("12.4")) << "halves away from zero";
    EXPECT_EQ(secondsOneDecimal(-12350), QStringLiteral("-12.4"));
    EXPECT_EQ(secondsOneDecimal(400), QStringLiteral("0.4"));
    EXPECT_EQ(secondsGeneral(12345), QStringLiteral("12.345"));
    EXPECT_EQ(secondsGeneral(2000), QStringLiteral("2"));
}

TEST(FieldValues, MillisecondsAreReadAsSeconds) {
    const Locale dutch("nl_BE");
    EXPECT_EQ(secondsAsRead(12345), QStringLiteral("12,3"));
    EXPECT_EQ(secondsAsRead(0), QStringLiteral("0,0"));
    EXPECT_EQ(secondsAsRead(QStringLiteral("6200")), QStringLiteral("6,2"));
    EXPECT_EQ(secondsAsRead(QStringLiteral("kort")), QStringLiteral("kort"));
    EXPECT_EQ(secondsAsRead({}), QString());
}

TEST(FieldValues, WholeNumbersAreRoundedToTheEvenNeighbourAndBounded) {
    EXPECT_EQ(toWholeNumber(2.5), 2);
    EXPECT_EQ(toWholeNumber(3.5), 4);
    EXPECT_EQ(toWholeNumber(QStringLiteral("12")), 12);
    EXPECT_EQ(toWholeNumber(true), -1);
    const auto number = [](const QVariant &value) {
        try {
            static_cast<void>(toWholeNumber(value));
        } catch (const RuntimeError &error) {
            return static_cast<int>(error.number());
        }
        return 0;
    };
    EXPECT_EQ(number({}), 13);
    EXPECT_EQ(number(QStringLiteral("twaalf")), 13);
    EXPECT_EQ(number(std::numeric_limits<double>::quiet_NaN()), 13);
    EXPECT_EQ(number(2147483648.0), 6);
}

} // namespace orvel

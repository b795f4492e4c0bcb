#include "widgets/desktop_theme.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>

namespace orvel {

namespace {

// A desktop that does not answer must not hold up the start.
constexpr int answerMillis = 300;

QVariant unwrapped(QVariant value) {
    while (value.canConvert<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

} // namespace

// The settings portal of freedesktop.org, which GNOME, KDE and others answer: 1 prefers dark, 2 prefers light.
std::optional<ThemeVariant> desktopTheme() {
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return std::nullopt;
    }
    QDBusMessage question = QDBusMessage::createMethodCall(
        "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop", "org.freedesktop.portal.Settings", "Read");
    question << QStringLiteral("org.freedesktop.appearance") << QStringLiteral("color-scheme");
    const QDBusMessage answer = bus.call(question, QDBus::Block, answerMillis);
    if (answer.type() != QDBusMessage::ReplyMessage || answer.arguments().isEmpty()) {
        return std::nullopt;
    }
    switch (unwrapped(answer.arguments().constFirst()).toUInt()) {
    case 1:
        return ThemeVariant::Dark;
    case 2:
        return ThemeVariant::Light;
    default:
        return std::nullopt;
    }
}

} // namespace orvel

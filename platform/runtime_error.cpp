#include "platform/runtime_error.h"

namespace orvel {

QString describe(ErrorNumber number) {
    switch (number) {
    case ErrorNumber::Overflow:
        return QStringLiteral("Overloop");
    case ErrorNumber::SubscriptOutOfRange:
        return QStringLiteral("Subscript valt buiten het bereik");
    case ErrorNumber::TypeMismatch:
        return QStringLiteral("Typen komen niet met elkaar overeen");
    case ErrorNumber::InternalError:
        return QStringLiteral("Interne fout");
    case ErrorNumber::BadFileName:
        return QStringLiteral("Onjuiste bestandsnaam");
    case ErrorNumber::FileNotFound:
        return QStringLiteral("Het bestand is niet gevonden");
    case ErrorNumber::DeviceError:
        return QStringLiteral("Fout van het apparaat");
    case ErrorNumber::FileExists:
        return QStringLiteral("Het bestand bestaat al");
    case ErrorNumber::DiskFull:
        return QStringLiteral("De schijf is vol");
    case ErrorNumber::PermissionDenied:
        return QStringLiteral("Geen toegang");
    case ErrorNumber::DiskNotReady:
        return QStringLiteral("De schijf is niet gereed");
    case ErrorNumber::PathAccess:
        return QStringLiteral("Fout bij toegang tot pad of bestand");
    case ErrorNumber::PathNotFound:
        return QStringLiteral("De map is niet gevonden");
    case ErrorNumber::InvalidProperty:
        return QStringLiteral("Ongeldige waarde");
    case ErrorNumber::NoCurrentRecord:
        return QStringLiteral("Er is geen huidige regel");
    case ErrorNumber::NoSuchTable:
        return QStringLiteral("De tabel is niet gevonden in de database");
    case ErrorNumber::DatabaseDamaged:
        return QStringLiteral("Dit is geen leesbare database");
    case ErrorNumber::DatabaseLocked:
        return QStringLiteral("De database is in gebruik door een ander programma");
    case ErrorNumber::FieldNotUpdatable:
        return QStringLiteral("Dit veld kan niet worden gewijzigd");
    case ErrorNumber::ItemNotFound:
        return QStringLiteral("Dit veld komt niet voor in de database");
    case ErrorNumber::QueryNotSupported:
        return QStringLiteral("Deze zoekopdracht wordt niet ondersteund");
    }
    return {};
}

namespace {

QString withDetail(ErrorNumber number, const QString &detail) {
    return detail.isEmpty() ? describe(number) : describe(number) + QStringLiteral(": ") + detail;
}

} // namespace

RuntimeError::RuntimeError(ErrorNumber number, const QString &file, const QString &detail)
    : std::runtime_error((withDetail(number, detail) + QStringLiteral(" ") + file).toStdString()), number_(number),
      file_(file), description_(withDetail(number, detail)) {}

QString RuntimeError::report() const {
    const QString text =
        QStringLiteral("Fout %1 tijdens de uitvoering:\n\n%2").arg(static_cast<int>(number_)).arg(description_);
    return file_.isEmpty() ? text : text + QStringLiteral("\n\n") + file_;
}

} // namespace orvel

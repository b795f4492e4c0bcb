#pragma once

#include <QString>

#include <stdexcept>

namespace orvel {

/// The numbers of the run-time errors that the program tells apart. The presenter sees number and description.
enum class ErrorNumber {
    Overflow = 6,
    SubscriptOutOfRange = 9,
    TypeMismatch = 13,
    InternalError = 51,
    BadFileName = 52,
    FileNotFound = 53,
    DeviceError = 57,
    FileExists = 58,
    DiskFull = 61,
    PermissionDenied = 70,
    DiskNotReady = 71,
    PathAccess = 75,
    PathNotFound = 76,
    InvalidProperty = 380,
    NoCurrentRecord = 3021,
    NoSuchTable = 3078,
    DatabaseDamaged = 3343,
    DatabaseLocked = 3260,
    FieldNotUpdatable = 3164,
    ItemNotFound = 3265,
    QueryNotSupported = 3075,
};

/// The Dutch one-line description that belongs to a number.
QString describe(ErrorNumber number);

/// A component call that failed. Thrown by platform backends and by rooms; caught in one place, the application's
/// event boundary, which shows number, description and file and ends the handler that let it through.
class RuntimeError : public std::runtime_error {
  public:
    /// file: the file concerned, or empty. detail: what the description of the number does not say, in Dutch, or empty.
    explicit RuntimeError(ErrorNumber number, const QString &file = {}, const QString &detail = {});

    [[nodiscard]] ErrorNumber number() const { return number_; }
    [[nodiscard]] QString file() const { return file_; }
    /// Description, with the detail behind it where there is one.
    [[nodiscard]] QString description() const { return description_; }
    /// What the report box shows: number, description and file.
    [[nodiscard]] QString report() const;

  private:
    ErrorNumber number_;
    QString file_;
    QString description_;
};

/// A failure after which the program must not go on: reported like any other, then the program ends with exit code 1.
class FatalError : public RuntimeError {
  public:
    explicit FatalError(const RuntimeError &cause) : RuntimeError(cause) {}
};

} // namespace orvel

#include "platform/jet/jet_source.h"

#include "platform/runtime_error.h"

#include <QFileInfo>

namespace orvel {

namespace {

ErrorNumber numberOf(jet::Fault fault) {
    switch (fault) {
    case jet::Fault::Protected:
        return ErrorNumber::PermissionDenied;
    case jet::Fault::InOut:
        return ErrorNumber::PathAccess;
    case jet::Fault::Locked:
        return ErrorNumber::DatabaseLocked;
    case jet::Fault::NotUpdatable:
        return ErrorNumber::FieldNotUpdatable;
    case jet::Fault::NotADatabase:
    case jet::Fault::Damaged:
        break;
    }
    return ErrorNumber::DatabaseDamaged;
}

std::filesystem::path toNative(const QString &path) {
    try {
        return QFileInfo(path).filesystemFilePath();
    } catch (const std::exception &) {
        throw RuntimeError(ErrorNumber::BadFileName, path);
    }
}

} // namespace

void throwRuntimeError(const jet::Error &error, const QString &path) {
    throw RuntimeError(numberOf(error.fault()), path, QString::fromUtf8(error.what()));
}

JetSource::JetSource(jet::FileOpener opener, const QString &path)
    : path_(path), nativePath_(toNative(path)), opener_(std::move(opener)), first_(withRuntimeErrors(path, [this] {
          return std::make_shared<jet::PageStore>(opener_, nativePath_, jet::RawFile::Mode::Read);
      })) {}

std::unique_ptr<jet::PageStore> JetSource::read() const {
    return withRuntimeErrors(path_, [this] {
        auto now = std::make_unique<jet::PageStore>(opener_, nativePath_, jet::RawFile::Mode::Read);
        if (now->file().identity() != first_->file().identity()) {
            throw jet::Error(jet::Fault::InOut, "het bestand is vervangen door een ander");
        }
        return now;
    });
}

} // namespace orvel

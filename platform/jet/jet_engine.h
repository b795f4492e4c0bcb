#pragma once

#include "platform/database.h"
#include "platform/jet/raw_file.h"

namespace orvel {

/// Opens Jet and Access files: .mdb of Access 97 to 2003, .accdb. What is written is described in jet/value_writer.h.
/// Besides what the interfaces say, open() throws PermissionDenied for a file with a password or an encryption of its
/// own, and query() and refresh() throw PathAccess when another file has taken the place of the one that was opened.
class JetEngine : public DatabaseEngine {
  public:
    explicit JetEngine(jet::FileOpener opener = jet::storageOpener(systemStorage())) : opener_(std::move(opener)) {}

    [[nodiscard]] std::unique_ptr<Database> open(const QString &path) override;

  private:
    jet::FileOpener opener_;
};

} // namespace orvel

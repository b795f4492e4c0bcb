#include "platform/jet/jet_engine.h"

#include "platform/jet/jet_record_set.h"

namespace orvel {

namespace {

class JetDatabase : public Database {
  public:
    explicit JetDatabase(JetSource source) : source_(std::move(source)) {}

    [[nodiscard]] std::unique_ptr<RecordSet> query(const QString &statement) override {
        return std::make_unique<JetRecordSet>(source_, Query::parse(statement));
    }

  private:
    JetSource source_;
};

} // namespace

std::unique_ptr<Database> JetEngine::open(const QString &path) {
    return std::make_unique<JetDatabase>(JetSource(opener_, path));
}

} // namespace orvel

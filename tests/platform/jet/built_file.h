#pragma once

#include "platform/jet/jet_engine.h"
#include "tests/platform/jet/jet_builder.h"
#include "tests/platform/jet/jet_test_support.h"

namespace orvel::test {

constexpr std::uint16_t movedFlag = 0x4000;
constexpr std::uint16_t hiddenFlag = 0x8000;

/// A built database as a file.
class BuiltFile {
  public:
    explicit BuiltFile(const JetBuilder &builder) : path_(folder_.filePath(QStringLiteral("proef.mdb"))) {
        const Bytes bytes = builder.build();
        writeAll(path_, QByteArray(reinterpret_cast<const char *>(bytes.data()), static_cast<qsizetype>(bytes.size())));
    }
    [[nodiscard]] QString path() const { return path_; }
    [[nodiscard]] QByteArray content() const { return readAll(path_); }
    [[nodiscard]] std::unique_ptr<RecordSet> rows(const char *rest = "") const {
        return JetEngine().open(path_)->query(QStringLiteral("SELECT * FROM Proef ") + QString::fromLatin1(rest));
    }
    [[nodiscard]] QStringList exportedRows() const { return exported(path_, QStringLiteral("Proef")); }

  private:
    QTemporaryDir folder_;
    QString path_;
};

/// A test that holds for both generations of the format.
class BuiltDatabase : public ::testing::TestWithParam<bool> {
  protected:
    JetBuilder builder{GetParam()};

    [[nodiscard]] Bytes text(const std::u16string &value) const {
        return builder.jet3() ? Bytes(value.begin(), value.end()) : utf16(value);
    }
};

inline std::string formatName(const ::testing::TestParamInfo<bool> &parameter) {
    return parameter.param ? "Jet3" : "Jet4";
}

} // namespace orvel::test

// Three tables told three things of one error: a disk that cannot sync ended a take as a full disk, and a copy to it
// was fine.
#include "platform/storage/storage_error.h"

#include <cerrno>
#include <gtest/gtest.h>

namespace orvel {
namespace {

int nameError(int code) {
    return static_cast<int>(storageError(code, QStringLiteral("a"), StorageSubject::Name).number());
}

int contentError(int code) {
    return static_cast<int>(storageError(code, QStringLiteral("a"), StorageSubject::Content).number());
}

TEST(StorageError, IsTheSameForANameAndForContentWhereItMeansTheSame) {
    for (const auto &[code, number] :
         {std::pair(ENOSPC, 61), std::pair(EDQUOT, 61), std::pair(EFBIG, 61), std::pair(EACCES, 70),
          std::pair(EPERM, 70), std::pair(EROFS, 70), std::pair(EIO, 57), std::pair(ENOTCONN, 71),
          std::pair(ESTALE, 71), std::pair(EHOSTDOWN, 71), std::pair(ETIMEDOUT, 71)}) {
        EXPECT_EQ(nameError(code), number) << code;
        EXPECT_EQ(contentError(code), number) << code;
    }
}

TEST(StorageError, TellsABadNameFromBadContent) {
    EXPECT_EQ(nameError(EINVAL), 52);
    EXPECT_EQ(contentError(EINVAL), 57);
    EXPECT_EQ(nameError(ENAMETOOLONG), 52);
    EXPECT_EQ(nameError(ENOENT), 53);
    EXPECT_EQ(nameError(ENOTDIR), 76);
    EXPECT_EQ(nameError(EEXIST), 58);
    EXPECT_EQ(nameError(ELOOP), 75) << "what nobody thought of";
    EXPECT_EQ(contentError(EPIPE), 57);
}

TEST(StorageError, NamesTheFileAndSaysMoreThanItsNumber) {
    const RuntimeError error = storageError(ENOTCONN, QStringLiteral("/s/take.wav"), StorageSubject::Content);
    EXPECT_EQ(error.file(), QStringLiteral("/s/take.wav"));
    EXPECT_TRUE(error.description().contains(QStringLiteral("niet bereikbaar")));
}

TEST(StorageError, ASyncThatADiskCannotDoIsNoFailure) {
    for (const int code : {EINVAL, ENOSYS, ENOTSUP}) {
        EXPECT_TRUE(meansNoSync(code));
    }
    for (const int code : {EIO, ENOSPC, EDQUOT, EROFS, ENOTCONN, ESTALE, EBADF, 0}) {
        EXPECT_FALSE(meansNoSync(code));
    }
}

} // namespace
} // namespace orvel

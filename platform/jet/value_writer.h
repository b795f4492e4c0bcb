#pragma once

#include "platform/jet/row_walk.h"
#include "platform/jet/value.h"

#include <filesystem>
#include <vector>

namespace orvel::jet {

/// A new value for a column of the kind that isWritable names: bool for yes/no, otherwise a number in the column's
/// range.
struct Change {
    const Column *column = nullptr;
    Value value;
};

/// Whether the column's type can be changed in place: yes/no and numbers other than decimals, and not what the engine
/// fills in or an index has copies of.
bool isWritable(const Column &column);

/// Whether a number fits the column's type.
bool fits(ColumnType type, double number);

/// Changes values of one row in the file, in place: nothing moves, and only the bytes of the values differ afterwards.
/// A row that is older than a column, or ends before it, first gets what the value needs: another number of columns
/// where its null mask has a bit to spare, else some bytes out of its page's free space, for which the rows behind it
/// on that page move; rows never leave their page. The file is opened anew, locked, and compared with what read holds
/// of it; the page is written as one piece, synced and read back. Afterwards read holds the new page. Throws Error,
/// with the file as it was: NotUpdatable (also for a row that the page has no room for), Locked (also when the file has
/// changed since it was read), NotFound, AccessDenied, DiskFull, InOut, Damaged.
void writeValues(const FileOpener &open, const std::filesystem::path &path, PageStore &read,
                 const TableDefinition &table, const RowPlace &place, const std::vector<Change> &changes);

} // namespace orvel::jet

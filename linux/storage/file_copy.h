#pragma once

#include <functional>
#include <system_error>

namespace chimewerk {

/// Copies all that follows in one open file to another and brings it to the disk; shares the blocks where the
/// file system can. `goOn` is asked often: false ends the copy with `operation_canceled`.
std::error_code copyFile(int from, int to, const std::function<bool()>& goOn);

}  // namespace chimewerk

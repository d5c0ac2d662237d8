#include "linux/base/posix_file_system.h"

#include <unistd.h>

namespace chimewerk {

bool PosixFileSystem::fileExists(const std::string& path) const {
    return access(path.c_str(), F_OK) == 0;
}

}  // namespace chimewerk

// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/FrozenFolder.h"

#include <algorithm>
#include <vector>

namespace quib {

namespace fs = std::filesystem;

void PruneFrozenFolder(const fs::path& folder, std::uintmax_t most) {
    struct File {
        fs::file_time_type time;
        std::uintmax_t size;
        fs::path path;
    };
    std::vector<File> files;
    std::error_code failure;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, failure)) {
        if (entry.path().extension() != ".frozen" || !entry.is_regular_file(failure)) continue;
        files.push_back({entry.last_write_time(failure), entry.file_size(failure), entry.path()});
    }
    std::ranges::sort(files, std::ranges::greater{}, &File::time);
    std::uintmax_t sum = 0;
    for (const File& file : files) {
        sum += file.size;
        if (sum > most) fs::remove(file.path, failure);
    }
}

}  // namespace quib

// Sees the code constants from a second source file of the same program.
#pragma once

#include <cstdint>
#include <string>

struct CodesSeenElsewhere {
    std::int32_t update_in_progress;
    std::int32_t disk_data_unavailable;
    std::string text_during_initialisation;
};

CodesSeenElsewhere ReadCodesInSecondFile();

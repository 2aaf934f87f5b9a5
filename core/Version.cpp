#include "core/Version.h"

namespace plinket3 {

const char* const programLogVersion = "Plinket3 version " PLINKET3_RELEASE;
const char* const programVersion = "Plinket3 " PLINKET3_RELEASE " beta";
const char* const programVersionLabel = "Version " PLINKET3_RELEASE " beta";

} // namespace plinket3
